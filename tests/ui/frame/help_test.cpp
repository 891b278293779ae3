#include "app/ui/help.h"

#include <QDialog>
#include <QLineEdit>
#include <QVBoxLayout>
#include <filesystem>

#include <gmock/gmock.h>

#include "core/file.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "tests/ui/support/window_driver.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class HelpTest : public testing::Test {
 protected:
  HelpTest() {
    fs::create_directories(folder_ / "help/guide/ja");
    for (const char* page : {"README", "hfdl", "ja/hfdl"}) {
      test::writeBytes(folder_.path() / "help/guide" / (std::string(page) + ".html"), "x");
    }
    window_.setObjectName(QStringLiteral("Form2"));
    box_ = new QLineEdit(&window_);
    window_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
  }
  [[nodiscard]] std::string page(const std::string& name) const {
    return toUtf8((folder_.path() / "help/guide" / (name + ".html")).make_preferred());
  }

  test::TemporaryFolder folder_;
  test::RecordingDesktop desktop_;
  QWidget window_;
  QLineEdit* box_;
};

TEST_F(HelpTest, F1OpensTheWindowsPageInTheUsersLanguage) {
  const Help help(desktop_, folder_.path(), "ja");
  QTest::keyClick(box_, Qt::Key_F1);
  EXPECT_THAT(desktop_.opened, ElementsAre(page("ja/hfdl")));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(HelpTest, F1InADialogOfTheWindowOpensTheWindowsPage) {
  const Help help(desktop_, folder_.path(), "en");
  QDialog dialog(&window_);
  dialog.setObjectName(QStringLiteral("Unknown"));
  dialog.open();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
  QTest::keyClick(&dialog, Qt::Key_F1);
  EXPECT_THAT(desktop_.opened, ElementsAre(page("hfdl")));
}

TEST_F(HelpTest, AWindowWithoutAPageOpensTheFirstOne) {
  const Help help(desktop_, folder_.path(), "en");
  window_.setObjectName(QStringLiteral("Unknown"));
  QTest::keyClick(&window_, Qt::Key_F1);
  EXPECT_THAT(desktop_.opened, ElementsAre(page("README")));
}

TEST_F(HelpTest, F1WithAnotherKeyIsNoHelp) {
  const Help help(desktop_, folder_.path(), "en");
  QTest::keyClick(box_, Qt::Key_F1, Qt::ShiftModifier);
  QTest::keyClick(box_, Qt::Key_F2);
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

TEST_F(HelpTest, TellsWhereTheGuideIsWhereNothingOpensIt) {
  Help help(desktop_, folder_.path(), "en");
  desktop_.openResults = {31};
  help.open("hfdl");
  EXPECT_THAT(desktop_.messages, ElementsAre("The guide cannot be opened. It is in " +
                                             page("hfdl") + "\nガイドを開けませんでした。"));
}

TEST_F(HelpTest, TellsThatNoGuideIsInstalled) {
  Help help(desktop_, folder_.path() / "else" / "where", "en");
  help.open("hfdl");
  EXPECT_THAT(desktop_.opened, IsEmpty());
  EXPECT_THAT(desktop_.messages,
              ElementsAre("The guide is not installed. ガイドがインストールされていません。"));
}

TEST(GuidePages, EveryWindowHasItsOwnInBothLanguages) {
  for (const char* name :
       {"Form1", "Form2", "Form3", "ActivityChart", "FrequencyChart", "Magnifier", "HistoryWindow",
        "ReportWindow", "TourWindow", "AirportDialog", "ConffigDialog", "FirstStart"}) {
    QWidget window;
    window.setObjectName(QString::fromLatin1(name));
    const std::string page = Help::pageOf(window);
    EXPECT_NE(page, "README") << name;
    const fs::path guide = toPath(VEL_GUIDE_FOLDER);
    EXPECT_TRUE(fileExists(guide / (page + ".md"))) << page;
    EXPECT_TRUE(fileExists(guide / "ja" / (page + ".md"))) << page;
  }
}

}  // namespace
}  // namespace vel
