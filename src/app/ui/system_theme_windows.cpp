#include <QApplication>

#include <windows.h>

#include "app/ui/system_theme.h"

namespace vel {
namespace {

bool isDark() {
  DWORD light = 1;
  DWORD size = sizeof light;
  return RegGetValueW(HKEY_CURRENT_USER,
                      L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                      L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &light,
                      &size) == ERROR_SUCCESS &&
         light == 0;
}

}  // namespace

// The system's own style is drawn light whatever the user chose; another one
// takes its colours from the palette, which the platform makes dark only when
// told to.
void followSystemTheme() {
  if (!isDark() || qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return;
  qputenv("QT_QPA_PLATFORM", "windows:darkmode=2");
  QApplication::setStyle(QStringLiteral("Fusion"));
}

}  // namespace vel
