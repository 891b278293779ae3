#include <memory>

#include <gmock/gmock.h>

#include "core/ui/twips.h"
#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/layout_checks.h"

namespace vel {
namespace {

class AcarsLayout : public test::AcarsWindowTest {
 protected:
  void startWithFont(double scale) {
    font_ = std::make_unique<test::ScaledFont>(scale);
    base_.writeData("letter.csv", {"JL,JAL,Japan Airlines,Japan Airlines Company Limited"});
    start();
    select(0);
  }

 private:
  std::unique_ptr<test::ScaledFont> font_;
};

TEST_F(AcarsLayout, AtTheDesignedSizeNothingIsClippedAndNothingOverlaps) {
  startWithFont(1.0);
  ASSERT_GT(test::controlsOf(window()).size(), 50U);
  test::expectNothingClipped(window());
  test::expectNoOverlap(window());
}

TEST_F(AcarsLayout, AQuarterLargerFontClipsNothing) {
  startWithFont(1.25);
  test::expectNothingClipped(window());
  test::expectNoOverlap(window());
}

TEST_F(AcarsLayout, AtTheSmallestSizeNothingOfThePanelIsClipped) {
  startWithFont(1.0);
  window().resize(window().minimumSize().width(), window().height());
  test::expectNothingClipped(window());
  test::expectNoOverlap(window());
}

TEST_F(AcarsLayout, ATitleBarLeavesThePanelsControlsInTheWindow) {
  startWithFont(1.0);
  test::expectRoomForTitleBar(find<QWidget>("Frame4"), window());
}

TEST_F(AcarsLayout, TheDesignedSizeIsLargeEnough) {
  start();
  EXPECT_GE(toTwips(window().frameGeometry().width()), 12600);
  EXPECT_GE(toTwips(window().frameGeometry().height()), 10500);
}

TEST_F(AcarsLayout, TheFramesFollowTheWindow) {
  start();
  for (const QSize size : {QSize(1000, 700), QSize(1100, 613), QSize(970, 500)}) {
    window().resize(size);
    const int height = toTwips(window().frameGeometry().height());
    const int width = toTwips(window().frameGeometry().width());
    ASSERT_EQ(window().size(), size);
    EXPECT_EQ(find<QWidget>("Frame6").height(), (height - 3615) / 15);
    EXPECT_EQ(list().height(), (height - 4815) / 15);
    EXPECT_EQ(find<QWidget>("Frame4").y(), (height - 3630) / 15);
    EXPECT_EQ(find<QWidget>("Frame4").width(), width / 15);
    EXPECT_EQ(find<QWidget>("Frame6").width(), width / 15);
    EXPECT_EQ(list().width(), (width - 345) / 15);
    EXPECT_EQ(find<QWidget>("Frame7").width(), (width - 345) / 15);
  }
}

TEST_F(AcarsLayout, BelowItsHeightTheListIsGoneAndNotNegative) {
  start();
  window().resize(1000, 0);
  const int height = toTwips(window().frameGeometry().height());
  ASSERT_LT(height, 4815);
  EXPECT_EQ(list().height(), 0);
  EXPECT_EQ(find<QWidget>("Frame6").height(), (height - 3615) / 15);
  EXPECT_EQ(find<QWidget>("Frame4").y(), (height - 3630) / 15);
  window().resize(1000, 700);
  EXPECT_GT(list().height(), 300);
}

TEST_F(AcarsLayout, TheMainWindowCarriesItsCaptionAndItsVersion) {
  start();
  EXPECT_EQ(window().windowTitle(), QStringLiteral("VEL LIST.csv Browser"));
  EXPECT_EQ(text("Label4"), "Ver1.0.0");
}

}  // namespace
}  // namespace vel
