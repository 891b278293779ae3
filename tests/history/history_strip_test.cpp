#include "history/history_strip.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vel {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using namespace std::chrono_literals;

constexpr local_days kDay{2026y / 11 / 20};

std::size_t rectsIn(const Strip& strip) {
  std::size_t count = 0;
  for (const Shape& shape : strip.drawing.shapes) count += std::holds_alternative<Rect>(shape);
  return count;
}

TEST(HistoryStrip, EachDayHasABarAsHighAsItsMessagesAreMany) {
  const Strip strip = dayStrip({{kDay, 10}, {kDay + days(2), 5}}, {}, 300, 100, 1);
  ASSERT_EQ(strip.bars.size(), 3U);
  EXPECT_EQ(strip.bars[1].count, 0U);
  EXPECT_EQ(dayBarText(strip.bars[0]), "2026/11/20: 10");
  EXPECT_EQ(dayBarText(strip.bars[2]), "2026/11/22: 5");
  ASSERT_EQ(rectsIn(strip), 2U);
  const auto& full = std::get<Rect>(strip.drawing.shapes[0]);
  const auto& half = std::get<Rect>(strip.drawing.shapes[1]);
  EXPECT_NEAR(half.height, full.height / 2, 1);
  EXPECT_EQ(full.y + full.height, half.y + half.height);
  EXPECT_GE(full.y, 0);
}

TEST(HistoryStrip, DaysShareABarWhereThereIsNoRoomForAll) {
  std::map<local_days, std::size_t> years;
  for (int i = 0; i < 3650; ++i) years[kDay + days(i)] = 1;
  const Strip strip = dayStrip(years, {}, 400, 60, 1);
  EXPECT_LE(strip.bars.size(), 200U);
  EXPECT_LE(strip.bars.back().right, 400);
  std::size_t count = 0;
  for (const StripBar& bar : strip.bars) {
    EXPECT_GE(bar.right - bar.left, 1.9);
    count += bar.count;
  }
  EXPECT_EQ(count, 3650U);
  EXPECT_EQ(strip.bars.back().last - strip.bars.front().first, 3649);
  const std::string text = dayBarText(strip.bars[0]);
  EXPECT_EQ(text, "2026/11/20-2026/12/08: 19");
}

TEST(HistoryStrip, TheChosenBarHasItsOwnColour) {
  const int day = static_cast<int>(kDay.time_since_epoch().count());
  const Strip strip =
      dayStrip({{kDay, 1}, {kDay + days(1), 1}}, StripChoice{day, day}, 300, 100, 2);
  const auto& chosen = std::get<Rect>(strip.drawing.shapes[0]);
  const auto& other = std::get<Rect>(strip.drawing.shapes[1]);
  EXPECT_NE(chosen.colour, other.colour);
}

TEST(HistoryStrip, APlaceGivesTheBarOfItsColumn) {
  std::array<std::size_t, 24> hours{};
  hours[9] = 7;
  const Strip strip = hourStrip(hours, {}, 248, 60, 1);
  ASSERT_EQ(strip.bars.size(), 24U);
  const auto bar = barAt(strip, 4 + 9 * 10 + 5);
  ASSERT_TRUE(bar.has_value());
  EXPECT_EQ(hourBarText(*bar), "09:00-09:59: 7");
  EXPECT_FALSE(barAt(strip, 1).has_value());
  EXPECT_FALSE(barAt(strip, 247).has_value());
  EXPECT_EQ(rectsIn(strip), 1U);
}

TEST(HistoryStrip, WithoutMessagesItIsEmptyAndTinySizesDoNoHarm) {
  EXPECT_TRUE(dayStrip({}, {}, 300, 100, 1).bars.empty());
  for (const double size : {0.0, 1.0, 5.0}) {
    EXPECT_FALSE(dayStrip({{kDay, 1}, {kDay + days(5000), 1}}, {}, size, size, 1).bars.empty());
    EXPECT_EQ(hourStrip({}, {}, size, size, 1).bars.size(), 24U);
  }
}

}  // namespace
}  // namespace vel
