#include <windows.h>
#include <shellapi.h>

#include "core/ui/qt_desktop.h"

namespace vel {

int openWithDesktop(const std::string& target) {
  const std::wstring wide = toQString(target).toStdWString();
  // Show command 0 is the program's own choice: browsers and image viewers
  // show their window regardless.
  return static_cast<int>(reinterpret_cast<INT_PTR>(
      ShellExecuteW(GetDesktopWindow(), L"Open", wide.c_str(), L"", L"C:\\", 0)));
}

}  // namespace vel
