#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/plain_browser.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ProgramEnd : public test::AcarsWindowTest {
 protected:
  [[nodiscard]] fs::path envFile() const { return base_.folders.program / "vel.env"; }
};

TEST_F(ProgramEnd, ClosingTheWindowSavesTheSettingsAndEndsTheProgram) {
  start();
  ASSERT_FALSE(fileExists(envFile()));
  window().close();
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 0);
  const std::string saved = test::readBytes(envFile());
  EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 18);
  EXPECT_TRUE(saved.starts_with("\"env_regDefName0\",\"USER DEF\"\r\n"));
  EXPECT_TRUE(saved.ends_with("\"env_Config\",0\r\n"));
  EXPECT_THAT(listFolder(base_.folders.program).value(), ElementsAre("services.ini", "vel.env"));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(ProgramEnd, TheFirstUnloadRecordsTheWindowsPlace) {
  start();
  settings().env_Form1_Top = -1;
  settings().env_Form1_Left = -1;
  window().close();
  EXPECT_EQ(settings().env_Form1_Top, window().frameGeometry().y() * 15);
  EXPECT_EQ(settings().env_Form1_Left, window().frameGeometry().x() * 15);
  EXPECT_FALSE(program_->place().awaitsFirstUnload());
}

TEST_F(ProgramEnd, OtherWindowsAreUnloadedBeforeTheSettingsAreSaved) {
  start();
  bool unloaded = false;
  program_->addUnloadStep([&] {
    unloaded = true;
    EXPECT_FALSE(fileExists(envFile()));
    settings().env_Form3_Width = 12345;
  });
  window().close();
  EXPECT_TRUE(unloaded);
  EXPECT_THAT(test::readBytes(envFile()), HasSubstr("\"env_Form3_Width\",12345\r\n"));
}

TEST_F(ProgramEnd, AFatalErrorEndsWithStatusOneAndSavesNothing) {
  start();
  fs::remove(base_.folders.data / "aircraft.csv");
  select(0);
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  EXPECT_EQ(desktop_.exitStatus, 1);
  window().close();
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_FALSE(fileExists(envFile()));
}

TEST_F(ProgramEnd, AfterAFatalErrorTheOldSettingsStand) {
  test::writeBytes(envFile(), "\"env_regSchCmb\",1\r\n");
  start();
  test::choose(find<QComboBox>("Combo2"), 3);
  fs::remove(base_.folders.data / "letter.csv");
  select(0);
  window().close();
  EXPECT_EQ(test::readBytes(envFile()), "\"env_regSchCmb\",1\r\n");
}

TEST_F(ProgramEnd, ClosingTheOtherBrowserEndsTheProgramToo) {
  program_ = std::make_unique<Program>(desktop_, base_.folders);
  web_ = std::make_unique<WebAccess>(program_->context());
  program_->setBrowsers(
      [this](BrowserFrame& owner) { return std::make_unique<AcarsBrowser>(owner, *web_); },
      [](BrowserFrame& owner) { return std::make_unique<test::PlainBrowser>(owner); });
  ASSERT_TRUE(program_->Main());
  ASSERT_TRUE(QTest::qWaitFor(
      [this] { return program_->mainWindow() != nullptr && program_->mainWindow()->isVisible(); }));
  program_->switchBrowser(*program_->mainWindow());
  program_->otherWindow()->close();
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 0);
  EXPECT_TRUE(fileExists(envFile()));
  EXPECT_FALSE(program_->mainWindow()->isVisible());
}

TEST_F(ProgramEnd, ARewriteUnderWayIsFinishedWhereTheSystemEndsTheProgram) {
  const std::string before = test::readBytes(base_.folders.data / "aircraft.csv");
  for (const int stepsBefore : {0, 1, 2}) {
    SCOPED_TRACE(stepsBefore);
    desktop_.ended = false;
    test::writeBytes(base_.folders.data / "aircraft.csv", before);
    fs::remove(envFile());
    start();
    select(0);
    test::typeOver(box("Text1"), "B748");
    clickOnly("Command1");
    for (int step = 0; step < stepsBefore; ++step) jobs().turn();
    program_->endBySystem();
    EXPECT_TRUE(desktop_.ended);
    EXPECT_EQ(desktop_.exitStatus, 0);
    EXPECT_TRUE(fileExists(envFile()));
    program_.reset();
    EXPECT_THAT(test::readBytes(base_.folders.data / "aircraft.csv"),
                testing::StartsWith("JA8089,B748\r\n"));
    EXPECT_EQ(test::readBytes(base_.folders.data / "aircraft.bak"), before);
    EXPECT_FALSE(fileExists(base_.folders.data / "aircraft.$$$"));
    EXPECT_THAT(desktop_.messages, IsEmpty());
  }
}

TEST_F(ProgramEnd, SettingsThatCannotBeWrittenEndTheProgramSilently) {
  start();
  fs::remove_all(base_.folders.program);
  window().close();
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 0);
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

}  // namespace
}  // namespace vel
