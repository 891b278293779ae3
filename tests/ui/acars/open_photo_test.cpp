#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OpenPhoto : public test::AcarsWindowTest {
 protected:
  void clickPhoto() const { QTest::mouseClick(&find<QWidget>("Image1"), Qt::LeftButton); }
  [[nodiscard]] std::string picture(const char* name) const {
    return (base_.folders.pics / name).string();
  }
};

TEST_F(OpenPhoto, AClickOpensThePhotoAndMarksTheLine) {
  start();
  select(0);
  clickPhoto();
  EXPECT_THAT(desktop_.opened, ElementsAre(picture("JA8089.jpg")));
  EXPECT_THAT(column(kListPict), ElementsAre("*", "X", "○", "×"));
}

TEST_F(OpenPhoto, TheEnterKeyOpensItToo) {
  start();
  select(0);
  find<QWidget>("Image1").setFocus();
  QTest::keyClick(&find<QWidget>("Image1"), Qt::Key_Return);
  QTest::keyClick(&find<QWidget>("Image1"), Qt::Key_Space);
  EXPECT_THAT(desktop_.opened, ElementsAre(picture("JA8089.jpg"), picture("JA8089.jpg")));
}

TEST_F(OpenPhoto, ARegistrationWithoutAPhotoOpensNoimage) {
  start();
  select(1);
  desktop_.openResults = {2};
  clickPhoto();
  EXPECT_THAT(desktop_.opened, ElementsAre(picture("JA731A.jpg"), picture("noimage.jpg")));
  EXPECT_EQ(column(kListPict)[1], "*");
}

TEST_F(OpenPhoto, ResultsUpToThirtyTwoAreFailures) {
  start();
  select(0);
  desktop_.openResults = {32};
  clickPhoto();
  EXPECT_THAT(desktop_.opened, ElementsAre(picture("JA8089.jpg"), picture("noimage.jpg")));
  desktop_.opened.clear();
  desktop_.openResults = {33};
  clickPhoto();
  EXPECT_THAT(desktop_.opened, ElementsAre(picture("JA8089.jpg")));
}

TEST_F(OpenPhoto, AFallbackThatFailsIsNotReported) {
  start();
  select(1);
  desktop_.openResults = {31, 31};
  clickPhoto();
  EXPECT_EQ(desktop_.opened.size(), 2U);
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(column(kListPict)[1], "*");
}

TEST_F(OpenPhoto, ARegistrationThatLeavesTheFolderOpensOnlyNoimage) {
  test::writePhoto(base_.folders.base / "x.jpg", 10, 10);
  base_.writeLog(kLog, {"A1,O,../x,D,E,Q,M,01:00:00", "A2,O,..\\x,D,E,Q,M,01:00:00",
                        "A3,O,a:b,D,E,Q,M,01:00:00", "A4,O,/etc/x,D,E,Q,M,01:00:00",
                        "A5,O,a\x01z,D,E,Q,M,01:00:00"});
  start();
  for (int line = 0; line < 5; ++line) {
    desktop_.opened.clear();
    select(line);
    clickPhoto();
    EXPECT_THAT(desktop_.opened, ElementsAre(picture("noimage.jpg"))) << line;
    EXPECT_EQ(column(kListPict)[static_cast<std::size_t>(line)], "*");
  }
}

TEST_F(OpenPhoto, APhotoIsOpenedUnderTheNameThatItsFileHas) {
  test::giveName(base_.folders.pics / "JA8089.jpg", "Ja8089.JPG");
  start();
  select(0);
  clickPhoto();
  EXPECT_THAT(desktop_.opened, ElementsAre(picture("Ja8089.JPG")));
}

TEST_F(OpenPhoto, WithoutASelectedLineNothingHappens) {
  start();
  clickPhoto();
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

TEST_F(OpenPhoto, AnotherMouseButtonOpensNothing) {
  start();
  select(0);
  QTest::mouseClick(&find<QWidget>("Image1"), Qt::RightButton);
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

TEST_F(OpenPhoto, TheMarkStaysUntilTheListIsReadAgain) {
  start();
  select(0);
  clickPhoto();
  clickTitle(kListFlight);
  select(0);
  EXPECT_THAT(column(kListPict), ElementsAre("○", "*", "X", "×"));
  click("Command5");
  EXPECT_THAT(column(kListPict), ElementsAre("○", "O", "X", "×"));
}

}  // namespace
}  // namespace vel
