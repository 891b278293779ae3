#include "tests/ui/looks/looks_fixture.h"

#include <QAction>
#include <QMenu>
#include <QProcess>
#include <stdexcept>

#include "core/file.h"
#include "tour/ui/window_tour_host.h"

namespace vel::test {

using namespace std::chrono_literals;

std::unique_ptr<TemporaryFolder> LooksTest::folder_;

namespace {

// The whole menu, as the program has it.
void offerTheRest(LogBrowser& browser) {
  browser.showImport = [](const QString&) {};
  browser.saveList = [] {};
  browser.showHelp = [] {};
}

}  // namespace

void LooksTest::SetUpTestSuite() {
  useLooksOfEnvironment();
  folder_ = std::make_unique<TemporaryFolder>();
  QProcess maker;
  maker.start(QStringLiteral(VEL_SAMPLE_MAKER),
              {QStringLiteral("--today"), QStringLiteral("2026-11-20"),
               QString::fromStdString(toUtf8(sampleStation()))});
  ASSERT_TRUE(maker.waitForFinished(kLongEnough));
  ASSERT_EQ(maker.exitCode(), 0) << maker.readAllStandardError().toStdString();
}

void LooksTest::TearDownTestSuite() { folder_.reset(); }

std::filesystem::path LooksTest::sampleStation() { return folder_->path() / "station"; }

void LooksTest::start(const std::filesystem::path& station) {
  desktop_.time = std::chrono::local_days(2026y / 11 / 20) + 18h;
  program_ = std::make_unique<Program>(desktop_, Folders::of(station / "vel"));
  drivenJobs = &program_->context().jobs;
  web_ = std::make_unique<WebAccess>(program_->context(), QStringLiteral(VEL_WEB));
  history_ = std::make_unique<HistoryWindows>(program_->context());
  program_->setBrowsers(
      [this](BrowserFrame& owner) {
        auto browser = std::make_unique<AcarsBrowser>(owner, *web_);
        offerHistory(*browser, ReportKind::list, *history_);
        browser->showTour = [this] {
          const WindowTourHost host(acars_);
          TourWindow(host, tour_).exec();
        };
        offerTheRest(*browser);
        acars_ = browser.get();
        return browser;
      },
      [this](BrowserFrame& owner) {
        auto browser = std::make_unique<HfdlBrowser>(owner, *web_);
        offerHistory(*browser, ReportKind::hfdl, *history_);
        offerTheRest(*browser);
        browser->showActivityChart = [this] { activity_->open(); };
        browser->showFrequencyChart = [this] { frequencies_->open(); };
        hfdl_ = browser.get();
        return browser;
      });
  activity_ =
      std::make_unique<ActivityWindow>(program_->context(), [this] { return hfdl_->shownLog(); });
  frequencies_ = std::make_unique<FrequencyWindow>(program_->context());
  ASSERT_TRUE(program_->Main());
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return acars_ != nullptr && acars_->isVisible(); }, kLongEnough));
  settle();
}

void LooksTest::settle() {
  finishJobs();
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents();
  finishJobs();
}

QWidget& LooksTest::shown(const char* name) {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == QLatin1String(name) && widget->isVisible()) return *widget;
  }
  throw std::runtime_error(std::string("not open: ") + name);
}

void LooksTest::look(const char* name, QWidget& window) const {
  settle();
  looks_.at(name, window);
}

void LooksTest::inWindow(const char* objectName, const std::function<void()>& open,
                         const std::function<void(QWidget&)>& action) {
  bool isOver = false;
  const auto openAndWait = [&] {
    open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isOver; }, kLongEnough));
  };
  inDialog(objectName, openAndWait, [&](QWidget& window) {
    isOver = true;
    settle();
    action(window);
  });
}

void LooksTest::lookAtMenu(const char* name, const char* objectName,
                           const std::function<void()>& open) const {
  constexpr int kTries = 20;
  constexpr int kUntilOpen = 2000;
  bool isOver = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (isOver || menu == nullptr || menu->objectName() != QLatin1String(objectName)) return;
    isOver = true;
    looks_.atMenu(name, *menu);
    menu->close();
  });
  timer.start(0);
  // A compositor that is still giving the keys back after the last menu closes
  // the next one at once: nobody's hand is that fast.
  for (int tries = 0; tries < kTries; ++tries) {
    const auto hasKeys = [] { return QApplication::activeWindow() != nullptr; };
    if (QTest::qWaitFor(hasKeys, kUntilOpen)) open();
    if (QTest::qWaitFor([&] { return isOver; }, kUntilOpen)) return;
  }
  ADD_FAILURE() << objectName << " did not open";
}

void LooksTest::lookAtDialog(const char* name, const char* objectName,
                             const std::function<void()>& open) {
  inWindow(objectName, open, [&](QWidget& dialog) { look(name, dialog); });
}

void LooksTest::selectLine(LogBrowser& browser, int line) {
  browser.list()->setFocus();
  browser.list()->setListIndex(line);
  settle();
}

QAction& LooksTest::entry(LogBrowser& browser, const char* words) {
  for (QAction* each : browser.menu().entries().actions()) {
    if (each->text().contains(QLatin1String(words))) return *each;
  }
  throw std::runtime_error(std::string("no entry ") + words);
}

}  // namespace vel::test
