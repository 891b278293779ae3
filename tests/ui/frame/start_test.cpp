#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/support/recording_desktop.h"
#include "tests/support/system_files.h"
#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/plain_browser.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class ProgramStart : public test::AcarsWindowTest {
 protected:
  /// Starts the program with a second browser.
  void startBoth() {
    program_ = std::make_unique<Program>(desktop_, base_.folders);
    web_ = std::make_unique<WebAccess>(program_->context());
    program_->setBrowsers(
        [this](BrowserFrame& owner) { return std::make_unique<AcarsBrowser>(owner, *web_); },
        [](BrowserFrame& owner) { return std::make_unique<test::PlainBrowser>(owner); });
    ASSERT_TRUE(program_->Main());
  }
  static QWidget* splash() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == QLatin1String("Splash") && widget->isVisible()) return widget;
    }
    return nullptr;
  }
  [[nodiscard]] bool mainShown() const {
    return program_->mainWindow() != nullptr && program_->mainWindow()->isVisible();
  }
};

TEST_F(ProgramStart, TheSplashShowsTheVersionAndAsksToWaitWhenLoadingBegins) {
  startBoth();
  QWidget* shown = splash();
  ASSERT_NE(shown, nullptr);
  EXPECT_EQ(program_->stage(), Program::Stage::splashShown);
  EXPECT_EQ(test::control<QLabel>(*shown, "Version").text(), QStringLiteral("Version 1.0.0"));
  const auto& wait = test::control<QLabel>(*shown, "PleaseWait");
  EXPECT_EQ(wait.text(), QStringLiteral("Please wait for a while."));
  EXPECT_FALSE(wait.isVisible());
  bool seen = false;
  const test::BetweenSteps look([&] {
    if (splash() == nullptr || program_->stage() == Program::Stage::splashShown) return;
    seen = true;
    EXPECT_TRUE(wait.isVisible());
    EXPECT_FALSE(mainShown());
  });
  ASSERT_TRUE(QTest::qWaitFor([this] { return mainShown(); }, test::kPatience));
  EXPECT_TRUE(seen);
  EXPECT_EQ(splash(), nullptr);
}

TEST_F(ProgramStart, TheSplashCountsTheRowsOfBothBrowsersDuringTheFirstRead) {
  std::string log;
  for (int i = 0; i < 358; ++i) log += "A1,O,R,D,E,Q,M,01:00:00\r\n";
  test::writeBytes(base_.folders.logs / kLog, log);
  startBoth();
  std::vector<std::string> texts;
  const test::BetweenSteps look([&] {
    if (splash() == nullptr) return;
    texts.push_back(test::control<QLabel>(*splash(), "Progress").text().toStdString());
  });
  ASSERT_TRUE(QTest::qWaitFor([this] { return mainShown(); }, test::kPatience));
  EXPECT_EQ(texts.front(), "");
  EXPECT_THAT(texts, Contains("FMT:120 LIST:358"));
}

TEST_F(ProgramStart, TheReadersAreCountedDownAndTheSplashCountsNoMore) {
  startBoth();
  EXPECT_EQ(program_->readsToEnd(), 2);
  ASSERT_TRUE(QTest::qWaitFor([this] { return mainShown(); }, test::kPatience));
  EXPECT_EQ(program_->readsToEnd(), 1);
  EXPECT_EQ(program_->stage(), Program::Stage::loaded);
  EXPECT_TRUE(program_->place().isRecording());
  EXPECT_TRUE(program_->place().awaitsFirstUnload());
}

TEST_F(ProgramStart, ALogThatCannotBeReadIsCountedDownToo) {
  fs::permissions(base_.path(), fs::perms::all);
  const test::RefusedFile refused(base_.folders.logs / kLog, test::RefusedFile::Refuses::opening);
  startBoth();
  ASSERT_TRUE(QTest::qWaitFor([this] { return mainShown(); }, test::kPatience));
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #70"));
  EXPECT_EQ(program_->readsToEnd(), 1);
}

TEST_F(ProgramStart, BothBrowsersLoadHiddenAndOnlyTheFirstIsShown) {
  startBoth();
  ASSERT_TRUE(QTest::qWaitFor([this] { return mainShown(); }, test::kPatience));
  auto* other = dynamic_cast<test::PlainBrowser*>(program_->otherWindow());
  ASSERT_NE(other, nullptr);
  EXPECT_THAT(other->loads, ElementsAre(false));
  EXPECT_FALSE(other->isVisible());
}

TEST_F(ProgramStart, ASecondCopyIsRefusedAndTouchesNothing) {
  start();
  test::RecordingDesktop second;
  Program again(second, base_.folders);
  again.setBrowsers(
      [this](BrowserFrame& owner) { return std::make_unique<AcarsBrowser>(owner, *web_); },
      nullptr);
  const auto files = listFolder(base_.folders.program).value();
  EXPECT_FALSE(again.Main());
  EXPECT_THAT(second.messages, ElementsAre("既に起動されています。"));
  EXPECT_TRUE(second.ended);
  EXPECT_THAT(second.runLogLines, IsEmpty());
  QCoreApplication::processEvents();
  EXPECT_EQ(again.mainWindow(), nullptr);
  EXPECT_EQ(splash(), nullptr);
  EXPECT_EQ(listFolder(base_.folders.program).value(), files);
}

TEST_F(ProgramStart, ACopyForAnotherProgramFolderStarts) {
  start();
  test::TemporaryBase other;
  test::RecordingDesktop second;
  Program again(second, other.folders);
  again.setBrowsers([](BrowserFrame& owner) { return std::make_unique<test::PlainBrowser>(owner); },
                    nullptr);
  EXPECT_TRUE(again.Main());
  EXPECT_THAT(second.messages, IsEmpty());
}

TEST_F(ProgramStart, AfterTheFirstCopyHasEndedTheNextOneStarts) {
  start();
  window().close();
  program_.reset();
  desktop_.ended = false;
  start();
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(ProgramStart, AMissingAirportTableEndsTheStartWithItsMessageAndNothingSaved) {
  fs::remove(base_.folders.data / "airport.csv");
  startAndEnd();
  EXPECT_THAT(desktop_.messages, ElementsAre("Not found data\\airport.csv"));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(splash(), nullptr);
  EXPECT_FALSE(fileExists(base_.folders.program / "vel.env"));
  EXPECT_THAT(desktop_.runLogLines, Not(Contains("End Form_Load")));
}

TEST_F(ProgramStart, AnEndedStartDoesNotLoadTheOtherBrowser) {
  fs::remove(base_.folders.data / "airport.csv");
  startBoth();
  ASSERT_TRUE(QTest::qWaitFor([this] { return desktop_.ended; }));
  // Its next look ends the start.
  ASSERT_TRUE(QTest::qWaitFor([] { return splash() == nullptr; }));
  auto* other = dynamic_cast<test::PlainBrowser*>(program_->otherWindow());
  ASSERT_NE(other, nullptr);
  EXPECT_THAT(other->loads, IsEmpty());
  EXPECT_FALSE(mainShown());
}

TEST_F(ProgramStart, TheButtonOfTheOtherBrowserSwitchesAndCtrlTabToo) {
  startBoth();
  ASSERT_TRUE(QTest::qWaitFor([this] { return mainShown(); }, test::kPatience));
  BrowserWindow& first = *program_->mainWindow();
  BrowserWindow& second = *program_->otherWindow();
  auto& toOther = test::control<QPushButton>(first, "Command11");
  EXPECT_TRUE(toOther.isVisible());
  test::press(toOther);
  EXPECT_FALSE(first.isVisible());
  EXPECT_TRUE(second.isVisible());
  program_->switchBrowser(second);
  EXPECT_TRUE(first.isVisible());
  EXPECT_FALSE(second.isVisible());
  ASSERT_TRUE(QTest::qWaitForWindowActive(&first));
  QTest::keyClick(&first, Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_FALSE(first.isVisible());
  EXPECT_TRUE(second.isVisible());
}

TEST_F(ProgramStart, WithoutAnotherBrowserItsButtonIsHidden) {
  start();
  EXPECT_FALSE(button("Command11").isVisible());
}

}  // namespace
}  // namespace vel
