#include "app/ui/help.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QWidget>
#include <utility>

#include "app/installed_files.h"
#include "core/file.h"
#include "core/helpers.h"

namespace vel {
namespace {

struct WindowPage {
  const char* window;  // object name
  const char* page;
};

constexpr WindowPage kPages[] = {
    {"Form1", "acars"},
    {"Form2", "hfdl"},
    {"Form3", "raw_log"},
    {"ActivityChart", "activity"},
    {"FrequencyChart", "frequencies"},
    {"Magnifier", "frequencies"},
    {"HistoryWindow", "history"},
    {"ReportWindow", "report"},
    {"TourWindow", "tour"},
    {"AirportDialog", "airports"},
    {"ConffigDialog", "conffig"},
    {"FirstStart", "start"},
};

constexpr const char* kFirstPage = "README";
// The opener's results from here on are success.
constexpr int kOpened = 33;

}  // namespace

Help::Help(Desktop& desktop, std::filesystem::path executableFolder, std::string language)
    : desktop_(desktop),
      executableFolder_(std::move(executableFolder)),
      language_(std::move(language)) {
  qApp->installEventFilter(this);
}

std::string Help::sessionLanguage() {
  return QLocale::system().language() == QLocale::Japanese ? "ja" : "en";
}

std::string Help::pageOf(const QWidget& window) {
  // A dialog without a page of its own belongs to the window that opened it.
  for (const QWidget* each = &window; each != nullptr; each = each->parentWidget()) {
    for (const WindowPage& known : kPages) {
      if (each->objectName() == QLatin1String(known.window)) return known.page;
    }
  }
  return kFirstPage;
}

void Help::open(const std::string& page) {
  const auto file = guidePage(executableFolder_, page, language_);
  if (file && ShellOpen(desktop_, toUtf8(*file)) >= kOpened) return;
  desktop_.showMessage(file ? "The guide cannot be opened. It is in " + toUtf8(*file) +
                                  "\nガイドを開けませんでした。"
                            : "The guide is not installed. ガイドがインストールされていません。");
}

bool Help::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  const auto* key = static_cast<const QKeyEvent*>(event);
  if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier) return false;
  if (QApplication::activePopupWidget() != nullptr) return false;
  open(pageOf(static_cast<const QWidget&>(*watched)));
  return true;
}

}  // namespace vel
