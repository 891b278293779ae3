#include "tests/ui/monkey/whole_program.h"

#include <QApplication>
#include <QDir>
#include <QTest>
#include <QTimer>
#include <array>

#include "exchange/ui/import_dialog.h"
#include "exchange/ui/list_saver.h"
#include "hfdl/ui/activity_window.h"
#include "hfdl/ui/frequency_window.h"
#include "history/ui/history_wiring.h"
#include "tables/rewrite.h"
#include "tour/ui/tour_window.h"
#include "tour/ui/window_tour_host.h"

namespace vel::test {

int EnclosedDesktop::open(const std::string&) {
  constexpr int kOpened = 42;
  ++opened_;
  return kOpened;
}

struct WholeProgram::SideWindows {
  explicit SideWindows(const Context& context) : history(context), lists(context) {}

  HistoryWindows history;
  ListSaver lists;
  std::size_t askedForFile = 0;
  std::size_t imports = 0;
  std::size_t savedLists = 0;
  TourState tour;
  std::unique_ptr<ActivityWindow> activity;
  std::unique_ptr<FrequencyWindow> frequencies;
};

WholeProgram::WholeProgram(const Folders& folders)
    : program_(std::make_unique<Program>(desktop_, folders)),
      // There is no companion beside a test: that it cannot be started is what
      // the windows then say.
      web_(std::make_unique<WebAccess>(program_->context(), QStringLiteral("/nowhere/velweb"))),
      side_(std::make_unique<SideWindows>(program_->context())) {
  openFromHistory(side_->history, *program_, web_->rawLogs());
  side_->lists.chooseFile = [this](QWidget*, const QString&) {
    constexpr std::array kFormats = {ListFormat::spreadsheet, ListFormat::station,
                                     ListFormat::html};
    const std::size_t number = side_->savedLists++ % kFormats.size();
    const QDir base(QString::fromStdString(program_->context().folders.base.string()));
    return ListSaver::Choice{base.filePath(QStringLiteral("saved/list%1").arg(number)),
                             kFormats[number]};
  };
  side_->history.saveList = [this](QTableView& list, const QString& title) {
    side_->lists.save(list, title);
  };
  program_->addUnloadStep([this] { web_->rawLogs().close(); });
  program_->addUnloadStep([this] { side_->history.close(); });
  const auto makeAcars = [this](BrowserFrame& frame) {
    auto browser = std::make_unique<AcarsBrowser>(frame, *web_);
    offerHistory(*browser, ReportKind::list, side_->history);
    offerExchange(*browser, frame);
    browser->prepareTour = [this](int step) { side_->tour.step = step; };
    browser->showTour = [this, window = browser.get()] {
      const WindowTourHost host(window);
      TourWindow(host, side_->tour).exec();
    };
    return browser;
  };
  const auto makeHfdl = [this](BrowserFrame& frame) {
    auto browser = std::make_unique<HfdlBrowser>(frame, *web_);
    offerHistory(*browser, ReportKind::hfdl, side_->history);
    offerExchange(*browser, frame);
    browser->showActivityChart = [this, window = browser.get()] {
      if (!side_->activity) {
        side_->activity = std::make_unique<ActivityWindow>(program_->context(),
                                                           [window] { return window->shownLog(); });
      }
      side_->activity->open();
    };
    browser->showFrequencyChart = [this] {
      if (!side_->frequencies) {
        side_->frequencies = std::make_unique<FrequencyWindow>(program_->context());
      }
      side_->frequencies->open();
    };
    return browser;
  };
  program_->setBrowsers(makeAcars, makeHfdl);
}

QString WholeProgram::nextFile() {
  const QDir folder(
      QString::fromStdString((program_->context().folders.base / "imports").string()));
  const QStringList files = folder.entryList(QDir::Files, QDir::Name);
  if (files.isEmpty()) return {};
  const auto number = side_->askedForFile++ % static_cast<std::size_t>(files.size());
  return folder.filePath(files[static_cast<qsizetype>(number)]);
}

void WholeProgram::offerExchange(LogBrowser& browser, BrowserFrame& frame) {
  browser.saveList = [this, &browser] {
    side_->lists.save(*browser.list(), QString::fromStdString(browser.shownLog()));
  };
  browser.showImport = [this, &browser, &frame](const QString& file) {
    ImportDialog dialog(frame.context(), &browser);
    dialog.chooseFile = [this](QWidget*) { return nextFile(); };
    QObject::connect(&dialog, &ImportDialog::tablesChanged, &dialog, [this, &frame] {
      ++side_->imports;
      frame.tablesChanged();
    });
    if (!file.isEmpty()) dialog.setFile(file);
    dialog.exec();
  };
}

std::size_t WholeProgram::imports() const { return side_->imports; }

std::size_t WholeProgram::savedLists() const { return side_->savedLists; }

WholeProgram::~WholeProgram() {
  // In the order in which main() leaves them.
  side_.reset();
  web_.reset();
  program_.reset();
  // What was to be deleted later.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  // A program that ended while it started has told Qt so: without a loop that
  // ends for it the dialogs of the next one would not wait for anybody.
  QMetaObject::invokeMethod(
      qApp, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
  QApplication::exec();
}

bool WholeProgram::start() {
  // What the program has to say at its start waits for somebody to read it.
  QTimer reader;
  QObject::connect(&reader, &QTimer::timeout, &reader, [] {
    if (QWidget* box = QApplication::activeModalWidget()) box->close();
  });
  reader.start(1);
  if (!program_->Main()) return false;
  recoverTables(program_->context().folders);
  constexpr int kLongEnough = 60'000;
  return QTest::qWaitFor(
             [this] {
               return hasEnded() ||
                      (program_->mainWindow() != nullptr && program_->mainWindow()->isVisible());
             },
             kLongEnough) &&
         !hasEnded();
}

AcarsBrowser& WholeProgram::acars() const {
  return dynamic_cast<AcarsBrowser&>(*program_->mainWindow());
}

HfdlBrowser& WholeProgram::hfdl() const {
  return dynamic_cast<HfdlBrowser&>(*program_->otherWindow());
}

}  // namespace vel::test
