#include <memory>

#include <gmock/gmock.h>

#include "core/ui/twips.h"
#include "tests/ui/support/hfdl_window.h"
#include "tests/ui/support/layout_checks.h"
#include "tests/ui/support/settled_places.h"

namespace vel {
namespace {

class HfdlLayout : public test::HfdlWindowTest {
 protected:
  void startWithFont(double scale) {
    font_ = std::make_unique<test::ScaledFont>(scale);
    start();
    select(0);
    ASSERT_TRUE(test::placesSettle());
  }

 private:
  std::unique_ptr<test::ScaledFont> font_;
};

TEST_F(HfdlLayout, AtTheDesignedSizeNothingIsClippedAndNothingOverlaps) {
  startWithFont(1.0);
  ASSERT_GT(test::controlsOf(window()).size(), 40U);
  test::expectNothingClipped(window());
  test::expectNoOverlap(window());
}

TEST_F(HfdlLayout, AQuarterLargerFontClipsNothing) {
  startWithFont(1.25);
  test::expectNothingClipped(window());
  test::expectNoOverlap(window());
}

TEST_F(HfdlLayout, AtTheSmallestSizeNothingIsClipped) {
  startWithFont(1.0);
  window().resize(window().minimumSize());
  test::expectNothingClipped(window());
  test::expectNoOverlap(window());
}

TEST_F(HfdlLayout, ThePanelHasRoomForATitleBarAlsoWithALargerFont) {
  startWithFont(1.25);
  constexpr int kTitleBar = 30;
  EXPECT_LE(find<QWidget>("Frame4").minimumSizeHint().height(), toPixels(3010) - kTitleBar);
}

TEST_F(HfdlLayout, TheDesignedSizeIsThatOfTheAcarsBrowser) {
  start();
  EXPECT_EQ(window().designedSize(), program_->mainWindow()->designedSize());
  EXPECT_EQ(window().minimumSize(), program_->mainWindow()->minimumSize());
  EXPECT_GE(toTwips(window().frameGeometry().width()), 12600);
  EXPECT_GE(toTwips(window().frameGeometry().height()), 10500);
}

TEST_F(HfdlLayout, TheListAndThePanelFollowTheWindow) {
  start();
  ASSERT_TRUE(test::placesSettle());
  for (const QSize size : {QSize(1000, 700), QSize(1100, 613), QSize(970, 500)}) {
    window().resize(size);
    const int height = toTwips(window().frameGeometry().height());
    const int width = toTwips(window().frameGeometry().width());
    ASSERT_EQ(window().size(), size);
    EXPECT_EQ(list().height(), (height - 4575 + 950) / 15);
    EXPECT_EQ(list().width(), (width - 345) / 15);
    EXPECT_EQ(find<QWidget>("Frame4").y(), (height - 3630 + 620) / 15);
    EXPECT_EQ(find<QWidget>("Frame4").width(), width / 15);
    EXPECT_LE(list().geometry().bottom(), find<QWidget>("Frame4").y());
  }
}

TEST_F(HfdlLayout, NothingIsLaidOutOrRecordedWhileTheProgramStartsUp) {
  start();
  ASSERT_TRUE(test::placesSettle());
  const double width = settings().env_Form1_Width;
  const int listWidth = list().width();
  program_->place().settingsLoading();
  window().resize(1100, 640);
  EXPECT_EQ(settings().env_Form1_Width, width);
  EXPECT_EQ(list().width(), listWidth);
}

TEST_F(HfdlLayout, ASavedPlaceOfLessThan2000By500TwipsCountsAsNone) {
  test::writeBytes(base_.folders.program / "vel.env",
                   "\"env_Form1_Height\",9000\r\n\"env_Form1_Width\",1999\r\n");
  start();
  ASSERT_TRUE(test::placesSettle());
  EXPECT_EQ(toTwips(window().frameGeometry().width()), window().designedSize().width());
  EXPECT_EQ(toTwips(window().frameGeometry().height()), window().designedSize().height());
}

TEST_F(HfdlLayout, ASavedPlaceIsTaken) {
  test::writeBytes(base_.folders.program / "vel.env",
                   "\"env_Form1_Top\",600\r\n\"env_Form1_Left\",450\r\n"
                   "\"env_Form1_Height\",9000\r\n\"env_Form1_Width\",14700\r\n");
  start();
  ASSERT_TRUE(test::placesSettle());
  EXPECT_EQ(window().frameGeometry(), QRect(30, 40, 980, 600));
}

TEST_F(HfdlLayout, AResizeInNormalStateIsRecordedForBoth) {
  start();
  ASSERT_TRUE(test::placesSettle());
  window().resize(1100, 640);
  window().move(30, 45);
  EXPECT_TRUE(QTest::qWaitFor([this] { return settings().env_Form1_Top == toTwips(45); }));
  const QRect place = window().frameGeometry();
  EXPECT_EQ(settings().env_Form1_Left, toTwips(place.x()));
  EXPECT_EQ(settings().env_Form1_Top, toTwips(place.y()));
  EXPECT_EQ(settings().env_Form1_Width, toTwips(place.width()));
  EXPECT_EQ(settings().env_Form1_Height, toTwips(place.height()));
}

}  // namespace
}  // namespace vel
