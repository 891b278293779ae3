// Every window and dialog as it looks on a real station, in the colours, the
// letters and the scale that the environment asks for:
//   VEL_LOOKS_DARK=1           dark colours
//   VEL_LOOKS_FONT=150         letters in percent of the usual ones
//   VEL_LOOKS_PICTURES=FOLDER  where a picture of each window is left

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QAction>
#include <QDir>
#include <QProcess>
#include <QScreen>
#include <QStyleFactory>
#include <filesystem>
#include <iostream>
#include <set>

#include <gmock/gmock.h>

#include "acars/ui/acars_browser.h"
#include "app/ui/first_start_dialog.h"
#include "app/ui/program.h"
#include "core/file.h"
#include "core/ui/readable_colours.h"
#include "hfdl/ui/activity_window.h"
#include "hfdl/ui/frequency_window.h"
#include "hfdl/ui/hfdl_browser.h"
#include "history/ui/history_wiring.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "tests/ui/looks/contrast.h"
#include "tests/ui/support/layout_checks.h"
#include "tests/ui/support/window_driver.h"
#include "tour/ui/tour_window.h"
#include "tour/ui/window_tour_host.h"
#include "web/ui/web_access.h"

namespace vel::test {
namespace {

using namespace std::chrono_literals;

constexpr int kLongEnough = 120'000;
// What normal text needs to be read by everybody.
constexpr double kReadable = 4.5;

QPalette darkPalette() {
  QPalette dark;
  const QColor window(0x2b, 0x2b, 0x2b);
  const QColor base(0x1e, 0x1e, 0x1e);
  const QColor text(0xe6, 0xe6, 0xe6);
  dark.setColor(QPalette::Window, window);
  dark.setColor(QPalette::WindowText, text);
  dark.setColor(QPalette::Base, base);
  dark.setColor(QPalette::AlternateBase, QColor(0x2a, 0x2a, 0x2a));
  dark.setColor(QPalette::Text, text);
  dark.setColor(QPalette::PlaceholderText, QColor(0xa0, 0xa0, 0xa0));
  dark.setColor(QPalette::Button, QColor(0x38, 0x38, 0x38));
  dark.setColor(QPalette::ButtonText, text);
  dark.setColor(QPalette::Highlight, QColor(0x1d, 0x5f, 0xa8));
  dark.setColor(QPalette::HighlightedText, Qt::white);
  dark.setColor(QPalette::ToolTipBase, base);
  dark.setColor(QPalette::ToolTipText, text);
  dark.setColor(QPalette::Link, QColor(0x7a, 0xb8, 0xff));
  dark.setColor(QPalette::Light, QColor(0x50, 0x50, 0x50));
  dark.setColor(QPalette::Midlight, QColor(0x44, 0x44, 0x44));
  dark.setColor(QPalette::Mid, QColor(0x24, 0x24, 0x24));
  dark.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x18));
  dark.setColor(QPalette::Shadow, Qt::black);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    dark.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
  }
  return dark;
}

class EveryWindow : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (qEnvironmentVariableIsSet("VEL_LOOKS_DARK")) QApplication::setPalette(darkPalette());
    static const ReadableColours readable;
    if (const int percent = qEnvironmentVariableIntValue("VEL_LOOKS_FONT"); percent > 0) {
      QFont larger = QApplication::font();
      larger.setPointSizeF(larger.pointSizeF() * percent / 100);
      QApplication::setFont(larger);
    }
  }

  void SetUp() override {
    pictures_ = qEnvironmentVariable("VEL_LOOKS_PICTURES");
    ASSERT_TRUE(pictures_.isEmpty() || QDir().mkpath(pictures_));
    QProcess maker;
    maker.start(QStringLiteral(VEL_SAMPLE_MAKER),
                {QStringLiteral("--today"), QStringLiteral("2026-11-20"),
                 QString::fromStdString(toUtf8(folder_.path() / "station"))});
    ASSERT_TRUE(maker.waitForFinished(kLongEnough));
    ASSERT_EQ(maker.exitCode(), 0) << maker.readAllStandardError().toStdString();
    desktop_.time = std::chrono::local_days(2026y / 11 / 20) + 18h;
    program_ = std::make_unique<Program>(desktop_, Folders::of(folder_.path() / "station/vel"));
    drivenJobs = &program_->context().jobs;
    web_ = std::make_unique<WebAccess>(program_->context(), QStringLiteral(VEL_WEB));
    history_ = std::make_unique<HistoryWindows>(program_->context());
    program_->setBrowsers(
        [this](BrowserFrame& owner) {
          auto browser = std::make_unique<AcarsBrowser>(owner, *web_);
          offerHistory(*browser, ReportKind::list, *history_);
          browser->showTour = [this] { showTour(); };
          acars_ = browser.get();
          return browser;
        },
        [this](BrowserFrame& owner) {
          auto browser = std::make_unique<HfdlBrowser>(owner, *web_);
          offerHistory(*browser, ReportKind::hfdl, *history_);
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
  void TearDown() override { drivenJobs = nullptr; }

  void showTour() {
    const WindowTourHost host(acars_);
    TourWindow(host, tour_).exec();
  }

  static void settle() {
    finishJobs();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    finishJobs();
  }

  static QWidget& shown(const char* name) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == QLatin1String(name) && widget->isVisible()) return *widget;
    }
    throw std::runtime_error(std::string("not open: ") + name);
  }

  void look(const char* name, QWidget& window) {
    settle();
    SCOPED_TRACE(name);
    const QImage picture = window.grab().toImage();
    if (!pictures_.isEmpty()) {
      EXPECT_TRUE(picture.save(pictures_ + QLatin1Char('/') + QLatin1String(name) + ".png"));
    }
    expectReadable(name, window, picture);
    expectNothingCut(window);
    expectOnScreen(window);
    expectKeysAndNames(window);
  }

  static void expectReadable(const char* name, const QWidget& window, const QImage& picture) {
    const std::vector<TextContrast> texts = contrastsOf(window, picture);
    double least = 21;
    for (const TextContrast& text : texts) {
      EXPECT_GE(text.ratio, kReadable) << text.what;
      least = std::min(least, text.ratio);
    }
    std::cout << name << ": " << texts.size() << " texts, contrast at least " << least << '\n';
  }

  /// Every control has room for its words: at least the height of its letters,
  /// and the width that it says it needs.
  static void expectNothingCut(const QWidget& window) {
    for (const QWidget* widget : controlsOf(window)) {
      if (widget->parentWidget()->inherits("QAbstractSpinBox")) continue;
      const QSize needed = neededBy(*widget);
      EXPECT_GE(widget->height(), qMin(needed.height(), widget->fontMetrics().height() + 2))
          << nameOf(*widget);
      EXPECT_GE(widget->width(), needed.width()) << nameOf(*widget);
      for (const QWidget* parent = widget->parentWidget(); parent != nullptr;
           parent = parent->parentWidget()) {
        const QRect place(widget->mapTo(parent, QPoint()), widget->size());
        EXPECT_TRUE(parent->rect().contains(place))
            << nameOf(*widget) << " leaves " << nameOf(*parent);
      }
    }
  }

  static void expectOnScreen(const QWidget& window) {
    const QSize screen = window.screen()->availableSize();
    EXPECT_LE(window.minimumSize().width(), screen.width());
    EXPECT_LE(window.minimumSize().height(), screen.height());
    if (qobject_cast<const QDialog*>(&window) == nullptr) return;
    EXPECT_LE(window.width(), screen.width());
    EXPECT_LE(window.height(), screen.height());
  }

  /// Every control that can be used is reached by Tab, and a screen reader has a
  /// name for it.
  static void expectKeysAndNames(const QWidget& window) {
    std::set<const QWidget*> reached;
    const QWidget* next = window.nextInFocusChain();
    for (int count = 0; next != &window && count < 1000; ++count) {
      reached.insert(next);
      next = next->nextInFocusChain();
    }
    for (QWidget* widget : controlsOf(window)) {
      if (qobject_cast<QLabel*>(widget) != nullptr || !widget->isEnabled()) continue;
      if ((widget->focusPolicy() & Qt::TabFocus) != 0) {
        EXPECT_TRUE(reached.contains(widget)) << nameOf(*widget) << " is left out by Tab";
      } else {
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        const bool isMarked = button != nullptr && button->inherits("QRadioButton");
        EXPECT_TRUE(isMarked || button == nullptr) << nameOf(*widget) << " takes no keys";
      }
      QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
      ASSERT_NE(spoken, nullptr) << nameOf(*widget);
      EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty()) << nameOf(*widget) << " has no name";
    }
  }

  /// Looks at a dialog that an action opens, at once or a moment later.
  void lookAtDialog(const char* name, const char* objectName, const std::function<void()>& open) {
    bool isOver = false;
    const auto openAndWait = [&] {
      open();
      EXPECT_TRUE(QTest::qWaitFor([&] { return isOver; }, kLongEnough));
    };
    inDialog(objectName, openAndWait, [&](QWidget& dialog) {
      isOver = true;
      look(name, dialog);
    });
  }

  void selectLine(LogBrowser& browser, int line) {
    browser.list()->setFocus();
    browser.list()->setListIndex(line);
    settle();
  }

  TemporaryFolder folder_;
  RecordingDesktop desktop_;
  QString pictures_;
  std::unique_ptr<Program> program_;
  std::unique_ptr<WebAccess> web_;
  std::unique_ptr<HistoryWindows> history_;
  std::unique_ptr<ActivityWindow> activity_;
  std::unique_ptr<FrequencyWindow> frequencies_;
  TourState tour_;
  AcarsBrowser* acars_ = nullptr;
  HfdlBrowser* hfdl_ = nullptr;
};

TEST_F(EveryWindow, CanBeReadAndUsed) {
  {
    FirstStartDialog dialog({.sampleMaker = "/usr/libexec/vel/vel-sample-base",
                             .sampleParent = "/home/user/Documents",
                             .chooseFolder = nullptr});
    dialog.open();
    look("first-start", dialog);
  }
  look("acars-nothing-selected", *acars_);
  selectLine(*acars_, 0);
  look("acars-browser", *acars_);
  const std::string registration = acars_->list()->selectedText(kListRegistration);
  bool isMenuOver = false;
  inDialog(
      "mainMenu",
      [&] {
        press(control<QPushButton>(*acars_, "menuButton"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return isMenuOver; }));
      },
      [&](QWidget& menu) {
        isMenuOver = true;
        if (!pictures_.isEmpty()) {
          EXPECT_TRUE(menu.grab().save(pictures_ + QStringLiteral("/menu.png")));
        }
      });
  lookAtDialog("airport", "AirportDialog", [this] {
    auto& name = control<QWidget>(*acars_, "Label2(4)");
    name.setFocus();
    QTest::keyClick(&name, Qt::Key_Return);
  });
  lookAtDialog("conffig", "ConffigDialog", [this] {
    for (QAction* entry : acars_->menu().entries().actions()) {
      if (entry->text().contains(QLatin1String("engines"))) entry->trigger();
    }
  });
  lookAtDialog("tour", "TourWindow", [this] { acars_->showTour(); });
  web_->rawLogs().open(registration);
  look("raw-log", shown("Form3"));
  web_->rawLogs().close();
  history_->find().openWith(SearchMeaning::registration, registration);
  look("find", shown("HistoryWindow"));
  history_->find().close();
  history_->report().open(ReportKind::list, acars_->shownLog());
  look("report", shown("ReportWindow"));
  history_->report().close();
  press(control<QPushButton>(*acars_, "Command11"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return hfdl_->isVisible(); }));
  selectLine(*hfdl_, 0);
  look("hfdl-browser", *hfdl_);
  activity_->open();
  look("activity-chart", shown("ActivityChart"));
  activity_->close();
  frequencies_->open();
  look("frequency-chart", shown("FrequencyChart"));
  frequencies_->picture()->setPoint(QPoint(frequencies_->picture()->width() / 2, 200));
  auto* enlarge = frequencies_->findChild<QAction*>(QStringLiteral("EnlargeChart"));
  ASSERT_NE(enlarge, nullptr);
  lookAtDialog("magnifier", "Magnifier", [&] { enlarge->trigger(); });
  for (const std::string& message : desktop_.messages) std::cout << "message: " << message << '\n';
  EXPECT_THAT(desktop_.messages, testing::IsEmpty());
}

}  // namespace
}  // namespace vel::test
