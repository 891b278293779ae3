#include "tour/tour_logic.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numbers>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace vel {
namespace {

constexpr TourSize kTour{4300, 1900};
const std::vector<TourRect> kWideScreen = {{0, 0, 60000, 40000}};

TEST(TourNavigation, NextGoesOneStepForwardAndEndsAfterTheLast) {
  EXPECT_EQ(TourState{}.step, 1);
  EXPECT_EQ(stepAfter(1), 2);
  EXPECT_EQ(stepAfter(28), 29);
  EXPECT_EQ(stepAfter(29), kTourOver);
  EXPECT_EQ(kTourOver, 30);
}

TEST(TourNavigation, PrevOnStepOneShowsStepTwentyNine) {
  EXPECT_EQ(stepBefore(1), 29);
  EXPECT_EQ(stepBefore(2), 1);
  EXPECT_EQ(stepBefore(29), 28);
  EXPECT_EQ(stepBefore(-7), 29);
}

TEST(TourNavigation, TheThanksStepAndNumbersThatAreNoStepShowNoPointer) {
  EXPECT_EQ(pointersOf(1), (PointerSet{true, false, false, false}));
  EXPECT_EQ(pointersOf(22), (PointerSet{false, true, true, false}));
  for (const int step : {29, 0, 30, 99}) EXPECT_EQ(pointersOf(step), PointerSet{}) << step;
}

TEST(TourBlink, ShowsTheStepsPointersOnEverySecondTickOnly) {
  const PointerSet both{false, true, true, false};
  EXPECT_EQ(visiblePointers(Blink::on, both), both);
  EXPECT_EQ(visiblePointers(Blink::off, both), PointerSet{});
  EXPECT_EQ(visiblePointers(Blink::on, PointerSet{}), PointerSet{});
}

TEST(TourPosition, IsTheMainWindowsCornerPlusTheStepsOffsets) {
  const TourRect main{1500, 750, 12600, 10500};
  EXPECT_EQ(tourPosition(1, main, 6870, kTour, kWideScreen, {}),
            (TourPoint{1500 + 3705, 750 + 90}));
  EXPECT_EQ(tourPosition(27, main, 6870, kTour, kWideScreen, {}),
            (TourPoint{1500 + 5565, 750 + 630}));
  EXPECT_EQ(tourPosition(8, main, 6870, kTour, kWideScreen, {}),
            (TourPoint{1500 + 510, 750 + 6870 + 3075}));
}

TEST(TourPosition, OfStepsMarkedPanelFollowsTheDetailPanel) {
  const TourRect small{0, 0, 12600, 10500};
  const TourRect tall{0, 0, 12600, 15000};
  for (int step = 1; step <= 29; ++step) {
    const auto before = tourPosition(step, small, 10500 - 3630, kTour, kWideScreen, {});
    const auto after = tourPosition(step, tall, 15000 - 3630, kTour, kWideScreen, {});
    ASSERT_TRUE(before && after);
    const bool panel = (step >= 8 && step <= 22) || step == 28;
    const int moved = step == 29 ? 4500 / 2 : panel ? 4500 : 0;
    EXPECT_EQ(after->top - before->top, moved) << step;
    EXPECT_EQ(after->left, before->left) << step;
  }
}

TEST(TourPosition, OfStepTwentyTwoIsRightOfTheMainWindow) {
  const TourRect main{300, 450, 12600, 10500};
  EXPECT_EQ(tourPosition(22, main, 6870, kTour, kWideScreen, {}),
            (TourPoint{300 + 12600 + 100, 450 + 6870 + 15}));
}

TEST(TourPosition, OfTheThanksStepIsTheMiddleOfTheMainWindow) {
  const TourRect main{300, 450, 12600, 10500};
  EXPECT_EQ(tourPosition(29, main, 6870, kTour, kWideScreen, {}),
            (TourPoint{300 + (12600 - 4300) / 2, 450 + (10500 - 1900) / 2}));
  EXPECT_EQ(tourPosition(29, {6000, 6000, 2300, 900}, 0, kTour, kWideScreen, {}),
            (TourPoint{5000, 5500}));
}

TEST(TourPosition, ThatFallsOffTheScreenIsTheNearestPlaceOnIt) {
  const std::vector<TourRect> screen = {{0, 0, 19200, 12000}};
  const TourRect maximised{0, 0, 19200, 12000};
  EXPECT_EQ(tourPosition(22, maximised, 8370, kTour, screen, {}),
            (TourPoint{19200 - 4300, 8370 + 15}));
  EXPECT_EQ(tourPosition(8, maximised, 8370, kTour, screen, {}), (TourPoint{510, 12000 - 1900}));
  EXPECT_EQ(tourPosition(1, {-9000, -3000, 12600, 10500}, 6870, kTour, screen, {}),
            (TourPoint{0, 0}));
  EXPECT_EQ(tourPosition(1, {19000, 11900, 12600, 10500}, 6870, kTour, screen, {}),
            (TourPoint{19200 - 4300, 12000 - 1900}));
}

TEST(TourPosition, LeavesRoomForATaskBarAtTheScreensTop) {
  const std::vector<TourRect> screen = {{600, 450, 18600, 11550}};
  EXPECT_EQ(tourPosition(1, {-6000, -600, 12600, 10500}, 6870, kTour, screen, {}),
            (TourPoint{600, 450}));
}

TEST(TourPosition, MayBeOnASecondScreenBesideTheMainWindow) {
  const std::vector<TourRect> screens = {{0, 0, 19200, 12000}, {19200, 0, 19200, 12000}};
  const TourRect maximised{0, 0, 19200, 12000};
  EXPECT_EQ(tourPosition(22, maximised, 8370, kTour, screens, {}), (TourPoint{19300, 8385}));
}

TEST(TourPosition, OnAScreenSmallerThanTheTourWindowIsTheScreensCorner) {
  const std::vector<TourRect> screen = {{150, 300, 3000, 1500}};
  EXPECT_EQ(tourPosition(1, {0, 0, 12600, 10500}, 6870, kTour, screen, {}), (TourPoint{150, 300}));
}

/// Step 9 at the designed size on a screen of 1,280 x 800 pixels.
constexpr TourRect kLowWindow{2100, 405, 15000, 10800};
constexpr int kLowPanelTop = 10800 - 3630;
const std::vector<TourRect> kLowScreen = {{0, 0, 19200, 12000}};

std::optional<TourPoint> placeOnLowScreen(const std::vector<TourRect>& controls) {
  return tourPosition(9, kLowWindow, kLowPanelTop, kTour, kLowScreen, controls);
}

TEST(TourPosition, OnAScreenTooLowForItStandsBesideTheControlInsteadOfCoveringIt) {
  const TourPoint wanted{2100 + 1965, 405 + 7170 + 2760};
  const TourPoint nearest{wanted.left, 12000 - 1900};
  ASSERT_EQ(placeOnLowScreen({}), nearest);
  EXPECT_EQ(placeOnLowScreen({{3000, 10105, 1000, 300}}), nearest);

  const TourRect wide{3900, 9750, 4800, 375};
  EXPECT_EQ(placeOnLowScreen({wide}), (TourPoint{wanted.left, 9750 - 1900}));
  const TourRect atTheLeftEnd{3900, 9750, 960, 375};
  EXPECT_EQ(placeOnLowScreen({atTheLeftEnd}), (TourPoint{3900 + 960, 12000 - 1900}));
  const TourRect atTheRightEnd{wanted.left + 4200, 9750, 960, 375};
  EXPECT_EQ(placeOnLowScreen({atTheRightEnd}), (TourPoint{wanted.left - 100, 12000 - 1900}));
}

TEST(TourPosition, OnAScreenTooLowForItKeepsClearOfEveryControlOfTheStep) {
  const TourRect left{3900, 10300, 700, 300};
  const TourRect right{6000, 9900, 3000, 400};
  const std::optional<TourPoint> place = placeOnLowScreen({left, right});
  ASSERT_TRUE(place);
  // Right of the left one it would cover the right one: above both.
  EXPECT_EQ(*place, (TourPoint{2100 + 1965, 9900 - 1900}));
}

TEST(TourPosition, ThatIsOnTheScreenHoldsEvenOverAControl) {
  const std::vector<TourRect> under = {{2100 + 3705, 405 + 90, 1500, 300}};
  EXPECT_EQ(tourPosition(1, kLowWindow, kLowPanelTop, kTour, kLowScreen, under),
            (TourPoint{2100 + 3705, 405 + 90}));
}

TEST(TourPosition, WithoutAnyClearPlaceIsTheNearestOneOnTheScreen) {
  const std::vector<TourRect> maximised = {{0, 0, 19200, 12000}};
  EXPECT_EQ(tourPosition(22, maximised[0], 8370, kTour, kLowScreen, maximised),
            (TourPoint{19200 - 4300, 8370 + 15}));
}

TEST(TourPosition, BesideTheMainWindowMayBeBelowItOrOnAnotherScreen) {
  const TourRect atTheRight{4200, 0, 15000, 9000};
  const std::vector<TourRect> window = {atTheRight};
  EXPECT_EQ(tourPosition(22, atTheRight, 9000 - 3630, kTour, kLowScreen, window),
            (TourPoint{19200 - 4300, 9000}));
  const std::vector<TourRect> two = {kLowScreen[0], {19200, 0, 19200, 12000}};
  EXPECT_EQ(tourPosition(22, {0, 0, 19200, 12000}, 8370, kTour, two, kLowScreen),
            (TourPoint{19300, 8385}));
}

TEST(TourPosition, IsAlwaysTheNearestOfAllClearPlacesOnTheScreen) {
  const std::vector<TourRect> screen = {{0, 0, 60, 40}};
  const TourSize small{20, 10};
  int covered = 0;
  for (int left = -3; left <= 58; left += 4) {
    for (int top = 1; top <= 36; top += 3) {
      const std::vector<TourRect> controls = {{left, top, 9, 4}, {left + 14, top + 3, 5, 9}};
      const TourRect main{20 - 1965, 38 - 2760, 100, 100};
      const auto place = tourPosition(9, main, 0, small, screen, controls);
      ASSERT_TRUE(place);
      int nearest = 100000;
      bool plainIsClear = true;
      for (int x = 0; x <= 40; ++x) {
        for (int y = 0; y <= 30; ++y) {
          const bool clear =
              std::all_of(controls.begin(), controls.end(), [&](const TourRect& control) {
                return x + 20 <= control.left || control.right() <= x || y + 10 <= control.top ||
                       control.bottom() <= y;
              });
          if (x == 20 && y == 30) plainIsClear = clear;
          if (clear) nearest = std::min(nearest, (x - 20) * (x - 20) + (y - 38) * (y - 38));
          if (x == place->left && y == place->top) {
            ASSERT_TRUE(clear) << left << ", " << top;
          }
        }
      }
      if (!plainIsClear) ++covered;
      const int dx = place->left - 20;
      const int dy = place->top - 38;
      ASSERT_EQ(dx * dx + dy * dy, nearest) << left << ", " << top;
      ASSERT_TRUE(place->left >= 0 && place->left <= 40 && place->top >= 0 && place->top <= 30);
    }
  }
  EXPECT_GT(covered, 30);
}

TEST(TourPosition, WithoutAScreenIsTheStepsPlace) {
  EXPECT_EQ(tourPosition(1, {-9000, 0, 12600, 10500}, 6870, kTour, {}, {}),
            (TourPoint{-9000 + 3705, 90}));
}

TEST(TourPosition, OfANumberThatIsNoStepIsNothing) {
  for (const int step : {-1, 0, 30, 31}) {
    EXPECT_EQ(tourPosition(step, {0, 0, 12600, 10500}, 6870, kTour, kWideScreen, {}), std::nullopt);
  }
}

constexpr TourRect kBox{1000, 1000, 280, 130};
constexpr int kPicture = 16;
constexpr PointerSet kOne{false, false, true, false};

/// True when a ray from the pointer's middle in its direction meets the control.
bool hits(const TourPointer& pointer, const TourRect& control) {
  const TourPoint from = pointerMiddle(kBox, pointer, kPicture);
  const double angle = pointer.angle * std::numbers::pi / 180;
  for (double distance = 0; distance < 20000; distance += 0.5) {
    const double x = from.left + distance * std::cos(angle);
    const double y = from.top + distance * std::sin(angle);
    if (x > control.left && x < control.right() && y > control.top && y < control.bottom()) {
      return true;
    }
  }
  return false;
}

/// The one pointer (index 2) at a control.
TourPointer pointerAt(const TourRect& control) {
  const std::vector<TourRect> controls = {control};
  const auto placed = placePointers(kOne, kBox, controls, kPicture);
  EXPECT_FALSE(placed[0] || placed[1] || placed[3]);
  return placed[2].value_or(TourPointer{});
}

TEST(TourPointers, StandOnTheEdgeTowardsTheControlAndPointStraightAtIt) {
  EXPECT_EQ(pointerAt({700, 1040, 200, 20}), (TourPointer{TourEdge::left, 50, 180}));
  EXPECT_EQ(pointerAt({1400, 1040, 200, 20}), (TourPointer{TourEdge::right, 50, 0}));
  EXPECT_EQ(pointerAt({1100, 900, 40, 20}), (TourPointer{TourEdge::top, 120, 270}));
  EXPECT_EQ(pointerAt({1100, 1200, 40, 20}), (TourPointer{TourEdge::bottom, 120, 90}));
}

TEST(TourPointers, OfAControlBesideOnlyAPartOfTheEdgeStandInThatPart) {
  EXPECT_EQ(pointerAt({700, 800, 200, 240}), (TourPointer{TourEdge::left, 20, 180}));
  EXPECT_EQ(pointerAt({1200, 900, 900, 20}), (TourPointer{TourEdge::top, 240, 270}));
}

TEST(TourPointers, OfAControlLargerThanTheEdgeStandInItsMiddle) {
  EXPECT_EQ(pointerAt({0, 0, 900, 4000}), (TourPointer{TourEdge::left, 65, 180}));
}

TEST(TourPointers, AtACornerStandAtTheEndOfTheFurtherSideAndPointAslant) {
  const TourRect aboveLeft{600, 940, 100, 40};
  const TourPointer pointer = pointerAt(aboveLeft);
  EXPECT_EQ(pointer.edge, TourEdge::left);
  EXPECT_EQ(pointer.along, kPicture / 2);
  EXPECT_GT(pointer.angle, 180);
  EXPECT_LT(pointer.angle, 270);
  EXPECT_TRUE(hits(pointer, aboveLeft));

  const TourRect highAbove{940, 300, 40, 40};
  EXPECT_EQ(pointerAt(highAbove).edge, TourEdge::top);
  EXPECT_EQ(pointerAt(highAbove).along, kPicture / 2);
  EXPECT_TRUE(hits(pointerAt(highAbove), highAbove));

  const TourRect deepBelow{1300, 1900, 40, 40};
  EXPECT_EQ(pointerAt(deepBelow).edge, TourEdge::bottom);
  EXPECT_EQ(pointerAt(deepBelow).along, kBox.width - kPicture / 2);
  EXPECT_TRUE(hits(pointerAt(deepBelow), deepBelow));
}

TEST(TourPointers, TouchingTheControlStillStandOnTheSharedEdge) {
  EXPECT_EQ(pointerAt({800, 1040, 200, 20}), (TourPointer{TourEdge::left, 50, 180}));
  EXPECT_EQ(pointerAt({1100, 980, 40, 20}), (TourPointer{TourEdge::top, 120, 270}));
}

/// The distance between a control and a line from one corner of the tour
/// window to the next, squared.
long long distanceToEdge(TourEdge edge, const TourRect& control) {
  TourRect line = kBox;
  if (edge == TourEdge::left || edge == TourEdge::right) {
    line.width = 0;
    if (edge == TourEdge::right) line.left = kBox.right();
  } else {
    line.height = 0;
    if (edge == TourEdge::bottom) line.top = kBox.bottom();
  }
  const long long dx = std::max({0, line.left - control.right(), control.left - line.right()});
  const long long dy = std::max({0, line.top - control.bottom(), control.top - line.bottom()});
  return dx * dx + dy * dy;
}

TEST(TourPointers, AlwaysStandOnTheNearestEdgeAndPointAtTheControl) {
  int places = 0;
  for (int left = 400; left <= 1900; left += 37) {
    for (int top = 500; top <= 1700; top += 23) {
      for (const TourSize size : {TourSize{20, 20}, TourSize{300, 16}, TourSize{18, 200}}) {
        const TourRect control{left, top, size.width, size.height};
        const bool apart = control.right() <= kBox.left || control.left >= kBox.right() ||
                           control.bottom() <= kBox.top || control.top >= kBox.bottom();
        if (!apart) continue;
        ++places;
        const TourPointer pointer = pointerAt(control);
        for (const TourEdge edge :
             {TourEdge::left, TourEdge::top, TourEdge::right, TourEdge::bottom}) {
          ASSERT_LE(distanceToEdge(pointer.edge, control), distanceToEdge(edge, control))
              << left << ", " << top;
        }
        ASSERT_TRUE(hits(pointer, control)) << left << ", " << top << " angle " << pointer.angle;
      }
    }
  }
  EXPECT_GT(places, 4000);
}

TEST(TourPointers, OfAPartlyCoveredControlPointAtWhatIsInSight) {
  EXPECT_EQ(pointerAt({600, 1040, 500, 20}), (TourPointer{TourEdge::left, 50, 180}));
  EXPECT_EQ(pointerAt({1100, 1100, 40, 900}), (TourPointer{TourEdge::bottom, 120, 90}));
  // A list all around the tour window: most of it is below.
  EXPECT_EQ(pointerAt({900, 900, 500, 2000}).edge, TourEdge::bottom);
}

TEST(TourPointers, OfAWhollyCoveredControlPointInwards) {
  const TourPointer pointer = pointerAt({1030, 1040, 20, 20});
  EXPECT_EQ(pointer.edge, TourEdge::left);
  EXPECT_EQ(pointer.angle, 0);
}

TEST(TourPointers, ASinglePointerTakesTheNearestOfSeveralControls) {
  const std::vector<TourRect> controls = {{1100, 400, 40, 20}, {1100, 900, 40, 20}};
  const auto placed = placePointers(kOne, kBox, controls, kPicture);
  ASSERT_TRUE(placed[2]);
  EXPECT_TRUE(hits(*placed[2], controls[1]));
  const std::vector<TourRect> farther = {{1100, 900, 40, 20}, {1400, 1010, 40, 20}};
  EXPECT_EQ(placePointers(kOne, kBox, farther, kPicture)[2]->edge, TourEdge::top);
}

TEST(TourPointers, TwoPointersAtOneControlStandSideBySideAndBothPointAtIt) {
  const std::vector<TourRect> window = {{0, 0, 900, 2000}};
  const auto placed = placePointers({false, true, true, false}, kBox, window, kPicture);
  ASSERT_TRUE(placed[1] && placed[2]);
  EXPECT_FALSE(placed[0] || placed[3]);
  EXPECT_EQ(*placed[1], (TourPointer{TourEdge::left, 55, 180}));
  EXPECT_EQ(*placed[2], (TourPointer{TourEdge::left, 75, 180}));
}

TEST(TourPointers, TwoPointersNeverLieOnEachOtherOrLeaveTheirEdge) {
  for (int top = 700; top <= 1400; top += 9) {
    const std::vector<TourRect> control = {{700, top, 100, 20}};
    const auto placed = placePointers({false, true, true, false}, kBox, control, kPicture);
    ASSERT_TRUE(placed[1] && placed[2]);
    ASSERT_EQ(placed[1]->edge, placed[2]->edge);
    EXPECT_GE(std::abs(placed[1]->along - placed[2]->along), kPicture);
    const int length = placed[1]->edge == TourEdge::left ? kBox.height : kBox.width;
    for (const auto& pointer : {*placed[1], *placed[2]}) {
      EXPECT_GE(pointer.along, kPicture / 2);
      EXPECT_LE(pointer.along, length - kPicture / 2);
      EXPECT_TRUE(hits(pointer, control[0])) << top;
    }
  }
}

TEST(TourPointers, TwoPointersTakeTwoControlsWhereThereAreTwo) {
  const std::vector<TourRect> controls = {{700, 1040, 200, 20}, {1400, 1040, 200, 20}};
  const auto placed = placePointers({true, false, false, true}, kBox, controls, kPicture);
  EXPECT_EQ(placed[0], (TourPointer{TourEdge::left, 50, 180}));
  EXPECT_EQ(placed[3], (TourPointer{TourEdge::right, 50, 0}));
}

TEST(TourPointers, WithoutAControlInSightPointOutOfTheWindow) {
  const auto placed = placePointers({true, true, true, true}, kBox, {}, kPicture);
  EXPECT_EQ(placed[0], (TourPointer{TourEdge::left, 32, 180}));
  EXPECT_EQ(placed[1], (TourPointer{TourEdge::right, 32, 0}));
  EXPECT_EQ(placed[2], (TourPointer{TourEdge::left, 98, 180}));
  EXPECT_EQ(placed[3], (TourPointer{TourEdge::right, 98, 0}));
}

TEST(TourPointers, OfAnEmptySetAreNone) {
  const std::vector<TourRect> controls = {{700, 1040, 200, 20}};
  for (const auto& pointer : placePointers({}, kBox, controls, kPicture)) EXPECT_FALSE(pointer);
}

/// A text of that many twips squared, whatever the width.
TourHeight areaOf(int width, int height) {
  return [=](const TourRect& given) {
    return static_cast<int>(std::int64_t{width} * height / given.width) + 1;
  };
}

TEST(TourSizes, ATextThatFitsLeavesTheLeastSize) {
  const TourRect main{1500, 750, 12600, 10500};
  for (int step = 1; step <= 29; ++step) {
    EXPECT_EQ(tourSize(step, main, 6870, kTour, kWideScreen, {}, areaOf(4300, 1000)), kTour)
        << step;
  }
  EXPECT_EQ(tourSize(30, main, 6870, kTour, kWideScreen, {}, areaOf(9000, 9000)), kTour);
}

TEST(TourSizes, ALongTextGetsALargerWindowOfAboutTheSameShapeAtTheSamePlace) {
  const TourRect main{1500, 750, 12600, 10500};
  for (const int step : {1, 7, 8, 21, 28}) {
    const TourSize size =
        tourSize(step, main, 6870, kTour, kWideScreen, {}, areaOf(2 * 4300, 2 * 1900));
    EXPECT_NEAR(size.width, 2 * 4300, 240) << step;
    EXPECT_NEAR(size.height, 2 * 1900, 240) << step;
    EXPECT_EQ(tourPosition(step, main, 6870, size, kWideScreen, {}),
              tourPosition(step, main, 6870, kTour, kWideScreen, {}));
  }
}

TEST(TourSizes, GrowsAwayFromTheControlAndNeverOverIt) {
  const TourRect main{0, 0, 12600, 10500};
  const TourPoint place{3705, 90};
  // A control right of the window leaves only height, one below it only width.
  const std::vector<TourRect> right = {{place.left + 4400, 0, 1000, 9000}};
  const TourSize high = tourSize(1, main, 6870, kTour, kWideScreen, right, areaOf(4300, 4000));
  EXPECT_LE(high.width, 4400);
  EXPECT_GE(high.height, 3900);
  const std::vector<TourRect> below = {{0, place.top + 2000, 9000, 500}};
  const TourSize wide = tourSize(1, main, 6870, kTour, kWideScreen, below, areaOf(4300, 3000));
  EXPECT_LE(wide.height, 2000);
  EXPECT_GE(wide.width, 6400);
}

TEST(TourSizes, WhatDoesNotFitGetsAsMuchAsThereIs) {
  const TourRect main{0, 0, 12600, 10500};
  const std::vector<TourRect> screen = {{0, 0, 8200, 2500}};
  const TourSize size = tourSize(1, main, 6870, kTour, screen, {}, areaOf(9000, 9000));
  EXPECT_EQ(tourPosition(1, main, 6870, size, screen, {}), (TourPoint{3705, 90}));
  EXPECT_LE(size.height, 2410);
  EXPECT_GE(size.height, 2410 - 120);
  EXPECT_LE(size.width, 8200 - 3705);
}

TEST(TourSizes, TheThanksStepStaysInTheMiddle) {
  const TourRect main{1500, 750, 12600, 10500};
  const TourSize size = tourSize(29, main, 6870, kTour, kWideScreen, {}, areaOf(8000, 3500));
  EXPECT_GT(size.width, kTour.width);
  EXPECT_EQ(tourPosition(29, main, 6870, size, kWideScreen, {}),
            (TourPoint{1500 + (12600 - size.width) / 2, 750 + (10500 - size.height) / 2}));
}

TEST(TourReport, OfTheLabelNamesTheStepAndTheDifferencesFromWindowAndPanel) {
  EXPECT_EQ(positionReport(12, {3990, 8580}, {150, 150}, 6870),
            "P=12 Top=8430 / Left=3840 / Form1+Frame4-Top=1560");
  EXPECT_EQ(positionReport(1, {0, 0}, {1500, 750}, 6870),
            "P=1 Top=-750 / Left=-1500 / Form1+Frame4-Top=-7620");
}

TEST(TourReport, OfTheNextButtonNamesLeftAndTopDifference) {
  EXPECT_EQ(nextButtonReport({5205, 840}, {1500, 750}), "3705<-left top->90");
  EXPECT_EQ(nextButtonReport({0, 0}, {1500, 750}), "-1500<-left top->-750");
}

}  // namespace
}  // namespace vel
