#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <memory>
#include <variant>

#include "acars/ui/acars_browser.h"
#include "app/callers_console.h"
#include "app/options.h"
#include "app/ui/end_by_system.h"
#include "app/ui/help.h"
#include "app/ui/program.h"
#include "app/ui/program_icon.h"
#include "app/ui/station_choice.h"
#include "app/ui/system_theme.h"
#include "app/ui/unattended_desktop.h"
#include "core/platform.h"
#include "core/program_files.h"
#include "core/ui/japanese_fonts.h"
#include "core/ui/readable_colours.h"
#include "core/version.h"
#include "exchange/import_command.h"
#include "exchange/ui/import_dialog.h"
#include "exchange/ui/list_saver.h"
#include "hfdl/ui/activity_window.h"
#include "hfdl/ui/frequency_window.h"
#include "hfdl/ui/hfdl_browser.h"
#include "history/ui/history_wiring.h"
#include "tables/rewrite.h"
#include "tour/ui/tour_window.h"
#include "tour/ui/window_tour_host.h"

namespace {

// True where the station's text can be read: without a converter no table can.
bool canReadText(vel::Desktop& desktop, const vel::Folders& folders) {
  const auto encoding = vel::Services::load(vel::servicesFile(folders)).textEncoding();
  if (!encoding) desktop.showMessage(encoding.error().text());
  return encoding.ok();
}

// The windows that the browsers open beside themselves.
struct SideWindows {
  SideWindows(const vel::Context& context, vel::Help& guide)
      : help(guide), history(context), lists(context) {}

  vel::Help& help;
  vel::HistoryWindows history;
  vel::ListSaver lists;
  vel::TourState tour;
  std::unique_ptr<vel::ActivityWindow> activity;
  std::unique_ptr<vel::FrequencyWindow> frequencies;
};

// Ctrl+S saves a browser's list under its log's name.
void offerSaving(vel::LogBrowser& browser, vel::ListSaver& lists) {
  browser.saveList = [&browser, &lists] {
    const QString log = vel::toQString(browser.shownLog());
    lists.save(*browser.list(), log.section(QLatin1Char('.'), 0, 0));
  };
}

// Imports, and has both browsers show what the tables say then.
void offerImport(vel::LogBrowser& browser, vel::BrowserFrame& frame) {
  browser.showImport = [&browser, &frame](const QString& file) {
    vel::ImportDialog dialog(frame.context(), &browser);
    QObject::connect(&dialog, &vel::ImportDialog::tablesChanged, &dialog,
                     [&frame] { frame.tablesChanged(); });
    if (!file.isEmpty()) dialog.setFile(file);
    dialog.exec();
  };
}

void offerHelp(vel::LogBrowser& browser, vel::Help& help) {
  browser.showHelp = [&help, window = &browser] { help.open(vel::Help::pageOf(*window)); };
}

// What both browsers open.
void offerWindows(vel::LogBrowser& browser, vel::ReportKind kind, vel::BrowserFrame& frame,
                  SideWindows& windows) {
  offerHelp(browser, windows.help);
  vel::offerHistory(browser, kind, windows.history);
  offerSaving(browser, windows.lists);
  offerImport(browser, frame);
}

std::unique_ptr<vel::BrowserWindow> makeAcarsBrowser(vel::BrowserFrame& frame, vel::WebAccess& web,
                                                     SideWindows& windows) {
  auto browser = std::make_unique<vel::AcarsBrowser>(frame, web);
  offerWindows(*browser, vel::ReportKind::list, frame, windows);
  browser->prepareTour = [&windows](int step) { windows.tour.step = step; };
  browser->showTour = [&windows, window = browser.get()] {
    const vel::WindowTourHost host(window);
    vel::TourWindow(host, windows.tour).exec();
  };
  return browser;
}

std::unique_ptr<vel::BrowserWindow> makeHfdlBrowser(vel::BrowserFrame& frame, vel::WebAccess& web,
                                                    SideWindows& windows) {
  auto browser = std::make_unique<vel::HfdlBrowser>(frame, web);
  offerWindows(*browser, vel::ReportKind::hfdl, frame, windows);
  browser->showActivityChart = [&windows, &frame, window = browser.get()] {
    if (!windows.activity) {
      windows.activity = std::make_unique<vel::ActivityWindow>(
          frame.context(), [window] { return window->shownLog(); });
    }
    windows.activity->open();
  };
  browser->showFrequencyChart = [&windows, &frame] {
    if (!windows.frequencies) {
      windows.frequencies = std::make_unique<vel::FrequencyWindow>(frame.context());
    }
    windows.frequencies->open();
  };
  return browser;
}

// Saves a picture of the window, then ends the program.
void saveScreenshot(vel::Desktop& desktop, QWidget& window, const QString& file) {
  const bool saved = window.grab().save(file);
  if (!saved) qCritical("Can't write %s", qPrintable(file));
  desktop.endProgram(saved ? 0 : 1);
}

int run(const vel::Options& options) {
  const bool unattended = !options.screenshot.empty();
  const std::unique_ptr<vel::QtDesktop> desktop =
      unattended ? std::make_unique<vel::UnattendedDesktop>() : std::make_unique<vel::QtDesktop>();
  vel::Help help(*desktop, vel::platform::executableFolder(), vel::Help::sessionLanguage());
  const auto programFolder = vel::chooseProgramFolder(options, *desktop);
  if (!programFolder) return desktop->exitStatus();
  const vel::Folders folders = vel::Folders::of(*programFolder);
  if (!canReadText(*desktop, folders)) return 1;

  vel::Program program(*desktop, folders);
  vel::WebAccess web(program.context());
  SideWindows windows(program.context(), help);
  windows.history.saveList = [&windows](QTableView& list, const QString& title) {
    windows.lists.save(list, title);
  };
  vel::openFromHistory(windows.history, program, web.rawLogs());
  program.addUnloadStep([&web] { web.rawLogs().close(); });
  program.addUnloadStep([&windows] { windows.history.close(); });
  program.setBrowsers(
      [&](vel::BrowserFrame& frame) { return makeAcarsBrowser(frame, web, windows); },
      [&](vel::BrowserFrame& frame) { return makeHfdlBrowser(frame, web, windows); });
  if (unattended) {
    program.onShown = [&desktop, file = vel::toQString(vel::toUtf8(options.screenshot))](
                          vel::BrowserWindow& window) {
      // Leaves the window the time to be laid out and painted once.
      constexpr int kPaintMilliseconds = 300;
      QTimer::singleShot(kPaintMilliseconds, &window,
                         [&desktop, &window, file] { saveScreenshot(*desktop, window, file); });
    };
  }
  vel::onEndBySystem(program, [&program] { program.endBySystem(); });
  if (!program.Main()) return desktop->exitStatus();
  if (!vel::canShowJapanese()) desktop->showMessage(vel::kNoJapaneseFont);
  vel::recoverTables(program.context().folders);
  if (desktop->isEnding()) return desktop->exitStatus();
  return QApplication::exec();
}

// Fills the tables without a window.
int import(const vel::Options& options, const vel::CallersConsole& console) {
  const std::filesystem::path folder =
      options.programFolder.empty() ? vel::platform::executableFolder() : options.programFolder;
  return vel::runImport(vel::Folders::of(folder),
                        {options.importFile,
                         {options.importTable, options.importAll, options.importReplaces},
                         options.importTells},
                        console.output(), console.errors());
}

}  // namespace

int main(int argc, char** argv) {
  // Help, version, errors of the command line and imports need no display.
  auto console = std::make_unique<const vel::CallersConsole>();
  const auto options = vel::readOptions(vel::commandLine(argc, argv));
  if (const auto* exit = std::get_if<vel::ExitAtOnce>(&options)) {
    static_cast<void>(std::fputs(exit->output.c_str(), console->output()));
    static_cast<void>(std::fputs(exit->errors.c_str(), console->errors()));
    return exit->status;
  }
  if (const auto& asked = std::get<vel::Options>(options); !asked.importFile.empty()) {
    return import(asked, *console);
  }
  // Windows are shown long after the console belongs to others again.
  if (std::get<vel::Options>(options).screenshot.empty()) console.reset();
  vel::followSystemTheme();
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("vel"));
  QApplication::setApplicationDisplayName(QString());
  QApplication::setApplicationVersion(QString::fromLatin1(vel::kVersion));
  // Which entry of the desktop's menu these windows belong to.
  QApplication::setDesktopFileName(QStringLiteral("vel"));
  QApplication::setWindowIcon(vel::programIcon());
  QApplication::setQuitOnLastWindowClosed(false);
  const vel::ReadableColours colours;
  return run(std::get<vel::Options>(options));
}
