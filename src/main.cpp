#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QTimer>
#include <cstdlib>
#include <memory>

#include "acars/ui/acars_browser.h"
#include "app/ui/program.h"
#include "core/platform.h"
#include "core/program_files.h"
#include "core/ui/qt_desktop.h"
#include "core/version.h"
#include "hfdl/ui/activity_window.h"
#include "hfdl/ui/frequency_window.h"
#include "hfdl/ui/hfdl_browser.h"
#include "tables/rewrite.h"
#include "tour/ui/tour_window.h"
#include "tour/ui/window_tour_host.h"

namespace {

// Saves a picture of the window, then ends the program.
void saveScreenshot(vel::Desktop& desktop, QWidget& window, const QString& file) {
  const bool saved = window.grab().save(file);
  if (!saved) qCritical("Can't write %s", qPrintable(file));
  desktop.endProgram(saved ? 0 : 1);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("vel"));
  QApplication::setApplicationDisplayName(QString());
  QApplication::setApplicationVersion(QString::fromLatin1(vel::kVersion));
  QApplication::setQuitOnLastWindowClosed(false);

  QCommandLineParser parser;
  parser.setApplicationDescription(QString::fromLatin1(vel::kProgramTitle));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption programFolder(
      QStringLiteral("program-folder"),
      QStringLiteral(
          "Use DIR as the program folder: ../data, ../logs and ../pics stand beside it."),
      QStringLiteral("DIR"));
  const QCommandLineOption screenshot(
      QStringLiteral("screenshot"),
      QStringLiteral("Load as usual, save a picture of the window to FILE, and exit."),
      QStringLiteral("FILE"));
  parser.addOptions({programFolder, screenshot});
  parser.process(application);

  const std::filesystem::path folder = parser.isSet(programFolder)
                                           ? vel::toPath(parser.value(programFolder).toStdString())
                                           : vel::platform::executableFolder();

  vel::QtDesktop desktop;
  const vel::Folders folders = vel::Folders::of(folder);
  if (const auto encoding = vel::Services::load(vel::servicesFile(folders)).textEncoding();
      !encoding) {
    desktop.showMessage(encoding.error().text());
    return EXIT_FAILURE;
  }
  vel::Program program(desktop, folders);
  vel::WebAccess web(program.context());
  program.addUnloadStep([&web] { web.rawLogs().close(); });
  vel::TourState tour;
  std::unique_ptr<vel::ActivityWindow> activity;
  std::unique_ptr<vel::FrequencyWindow> frequencies;
  program.setBrowsers(
      [&](vel::Program& owner) {
        auto browser = std::make_unique<vel::AcarsBrowser>(owner, web);
        browser->prepareTour = [&tour](int step) { tour.step = step; };
        browser->showTour = [&tour, window = browser.get()] {
          const vel::WindowTourHost host(window);
          vel::TourWindow(host, tour).exec();
        };
        return browser;
      },
      [&](vel::Program& owner) {
        auto browser = std::make_unique<vel::HfdlBrowser>(owner, web);
        browser->showActivityChart = [&activity, &owner, window = browser.get()] {
          if (!activity) {
            activity = std::make_unique<vel::ActivityWindow>(
                owner.context(), [window] { return window->shownLog(); });
          }
          activity->open();
        };
        browser->showFrequencyChart = [&frequencies, &owner] {
          if (!frequencies) frequencies = std::make_unique<vel::FrequencyWindow>(owner.context());
          frequencies->open();
        };
        return browser;
      });
  if (parser.isSet(screenshot)) {
    const QString file = parser.value(screenshot);
    program.onShown = [&desktop, file](vel::BrowserWindow& window) {
      // Leaves the window the time to be laid out and painted once.
      QTimer::singleShot(300, &window,
                         [&desktop, &window, file] { saveScreenshot(desktop, window, file); });
    };
  }
  if (!program.Main()) return desktop.exitStatus();
  vel::recoverTables(program.folders());
  if (desktop.isEnding()) return desktop.exitStatus();
  return QApplication::exec();
}
