#include "hfdl/frequency_chart.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vel::test {
namespace {

using namespace frequency_chart;
using std::chrono::local_days;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
using namespace std::chrono_literals;

constexpr local_days kStart{2026y / 11 / 14};
// One logical pixel to twelve minutes.
constexpr double kWidth = kLeftMargin + 840 + kRightMargin;
constexpr Colour kMark{30, 30, 30};

class FrequencyChartTest : public ::testing::Test {
 protected:
  void announce(std::string_view station, std::string_view stamp,
                std::initializer_list<std::string_view> frequencies) {
    const std::size_t number = tables_.enterStation(station).value();
    const std::size_t point = tables_.enterTimePoint(number, stamp);
    for (const auto frequency : frequencies) tables_.addFrq2Ary(number, frequency, point);
  }

  template <typename Kind>
  static std::vector<Kind> shapesOf(const Drawing& drawing) {
    std::vector<Kind> found;
    for (const Shape& shape : drawing.shapes) {
      if (const auto* kind = std::get_if<Kind>(&shape)) found.push_back(*kind);
    }
    return found;
  }

  // The marks, without the legend's.
  static std::vector<Rect> marks(const Drawing& drawing) {
    const auto rects = shapesOf<Rect>(drawing);
    EXPECT_FALSE(rects.empty());
    return rects.empty() ? rects : std::vector<Rect>(rects.begin() + 1, rects.end());
  }

  static Text textOf(const Drawing& drawing, std::string_view wanted) {
    for (const Text& text : shapesOf<Text>(drawing)) {
      if (text.text == wanted) return text;
    }
    ADD_FAILURE() << "no text " << wanted;
    return {};
  }

  FrequencyTables tables_{Encoding::codePage932()};
};

TEST_F(FrequencyChartTest, EmptyTablesDrawOnlyTheGridAndItsLabels) {
  const Drawing drawing = DrawGraph(tables_, kStart, kWidth, 300);
  EXPECT_EQ(drawing.width, kWidth);
  EXPECT_EQ(drawing.height, 300);
  EXPECT_EQ(drawing.font, ChartFont::gothic);
  EXPECT_EQ(shapesOf<Rect>(drawing).size(), 1U) << "the legend's mark";
  const auto lines = shapesOf<Line>(drawing);
  EXPECT_EQ(lines.size(), 85U + 8U);
  EXPECT_THAT(lines, Contains(Line{kLeftMargin + 10, 20, kLeftMargin + 10, 290, {240, 240, 240}}));
  EXPECT_THAT(lines, Contains(Line{kLeftMargin + 30, 20, kLeftMargin + 30, 290, {100, 150, 100}}));
  EXPECT_THAT(lines, Contains(Line{kLeftMargin, 20, kLeftMargin, 290, {60, 60, 150}}));
  EXPECT_THAT(lines, Contains(Line{kLeftMargin + 840, 20, kLeftMargin + 840, 290, {60, 60, 150}}));
  EXPECT_THAT(lines,
              Not(Contains(Line{kLeftMargin + 30, 20, kLeftMargin + 30, 290, {240, 240, 240}})));
}

TEST_F(FrequencyChartTest, DatesAndHoursStandAboveTheirLines) {
  const Drawing drawing = DrawGraph(tables_, kStart, kWidth, 300);
  std::vector<std::string> dates;
  std::vector<std::string> hours;
  for (const Text& text : shapesOf<Text>(drawing)) {
    EXPECT_EQ(text.points, 8);
    if (text.colour == Colour{60, 60, 150}) dates.push_back(text.text);
    if (text.colour == Colour{100, 150, 100}) hours.push_back(text.text);
    if (text.text == "11/16") {
      EXPECT_EQ(text.x, kLeftMargin + 240);
    }
    EXPECT_LE(text.y + textHeight(text.points), 20);
  }
  EXPECT_THAT(dates,
              ElementsAre("11/14", "11/15", "11/16", "11/17", "11/18", "11/19", "11/20", "11/21"));
  ASSERT_EQ(hours.size(), 29U);
  EXPECT_THAT(std::vector<std::string>(hours.begin(), hours.begin() + 5),
              ElementsAre("00", "06", "12", "18", "00"));
}

TEST_F(FrequencyChartTest, DayLinesLieOverTheHourLines) {
  const auto lines = shapesOf<Line>(DrawGraph(tables_, kStart, kWidth, 300));
  const auto at = [&](const Colour& colour) {
    return std::find(lines.begin(), lines.end(),
                     Line{kLeftMargin + 120, 20, kLeftMargin + 120, 290, colour}) -
           lines.begin();
  };
  EXPECT_LT(at({100, 150, 100}), at({60, 60, 150}));
  EXPECT_LT(at({60, 60, 150}), static_cast<std::ptrdiff_t>(lines.size()));
}

TEST_F(FrequencyChartTest, MarkStandsAtItsMinuteOnTheRowOfItsFrequency) {
  announce("Shannon", "2026/11/15 12:00:00", {"2998", "11348"});
  announce("Shannon", "2026/11/16 00:00:00", {"11348"});
  const Drawing drawing = DrawGraph(tables_, kStart, kWidth, 300);
  const Text first = textOf(drawing, "    2998");
  const Text second = textOf(drawing, "   11348");
  const double noon = kLeftMargin + 36 * 60 / 12;
  const double midnight = kLeftMargin + 240;
  EXPECT_THAT(marks(drawing),
              ElementsAre(Rect{noon, first.y + kMarkTop, 1, kMarkHeight, kMark},
                          Rect{noon, second.y + kMarkTop, 1, kMarkHeight, kMark},
                          Rect{midnight, second.y + kMarkTop, 1, kMarkHeight, kMark}));
}

TEST_F(FrequencyChartTest, NamesAreBlueAndRowsTakeTurnsInTheTwoReds) {
  announce("Shannon", "2026/11/15 12:00:00", {"2998", "6532", "8843"});
  announce("Hat Yai", "2026/11/15 12:00:00", {"5655"});
  const Drawing drawing = DrawGraph(tables_, kStart, kWidth, 0);
  const Text name = textOf(drawing, "Shannon");
  EXPECT_EQ(name.x, 20);
  EXPECT_EQ(name.points, 9);
  EXPECT_EQ(name.colour, (Colour{0, 0, 255}));
  const Text first = textOf(drawing, "    2998");
  EXPECT_EQ(first.x, 40);
  EXPECT_EQ(first.points, 8);
  EXPECT_EQ(first.y, name.y + kStationHeight);
  EXPECT_EQ(first.colour, (Colour{200, 0, 0}));
  EXPECT_EQ(textOf(drawing, "    6532").colour, (Colour{255, 100, 100}));
  EXPECT_EQ(textOf(drawing, "    8843").colour, (Colour{200, 0, 0}));
  EXPECT_EQ(textOf(drawing, "    5655").colour, (Colour{200, 0, 0}));
  const Text next = textOf(drawing, "Hat Yai");
  EXPECT_EQ(next.y, name.y + kStationHeight + 3 * kRowHeight + kStationGap);
}

TEST_F(FrequencyChartTest, LongFrequencyKeepsItsLastEightCharacters) {
  announce("Shannon", "2026/11/15 12:00:00", {"123456789"});
  EXPECT_EQ(textOf(DrawGraph(tables_, kStart, kWidth, 0), "23456789").x, 40);
}

TEST_F(FrequencyChartTest, DrawingIsAsHighAsItsStationsNeed) {
  for (int s = 0; s < 31; ++s) {
    const std::string name = "Station " + std::to_string(s);
    for (int f = 0; f < 11; ++f) {
      announce(name, "2026/11/15 12:00:00", {std::to_string(1000 + f)});
    }
  }
  const Drawing drawing = DrawGraph(tables_, kStart, kWidth, 300);
  EXPECT_EQ(drawing.height, neededHeight(tables_));
  EXPECT_EQ(drawing.height,
            kFirstStation + kGridBottom + 31 * (kStationHeight + 11 * kRowHeight + kStationGap));
  for (const Rect& mark : marks(drawing)) {
    EXPECT_LE(mark.y + mark.height, drawing.height - kGridBottom);
  }
}

TEST_F(FrequencyChartTest, TimesOutsideTheSevenDaysAndUnreadableOnesHaveNoMark) {
  announce("Shannon", "2026/11/13 23:59:59", {"2998"});
  announce("Shannon", "2026/11/21 00:00:00", {"2998"});
  announce("Shannon", "2026/99/15 00:00:00", {"2998"});
  announce("Shannon", "", {"2998"});
  EXPECT_TRUE(marks(DrawGraph(tables_, kStart, kWidth, 0)).empty());
  announce("Shannon", "2026/11/14 00:00:00", {"2998"});
  announce("Shannon", "2026/11/20 23:59:59", {"2998"});
  const auto found = marks(DrawGraph(tables_, kStart, kWidth, 0));
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].x, kLeftMargin);
  EXPECT_EQ(found[1].x, kLeftMargin + 840);
}

TEST_F(FrequencyChartTest, MarksOfNeighbouringPixelsAreOneRectangle) {
  announce("Shannon", "2026/11/15 12:00:00", {"2998"});
  announce("Shannon", "2026/11/15 12:00:10", {"2998"});
  announce("Shannon", "2026/11/15 12:12:00", {"2998"});
  announce("Shannon", "2026/11/15 12:36:00", {"2998"});
  const auto found = marks(DrawGraph(tables_, kStart, kWidth, 0));
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].width, 2);
  EXPECT_EQ(found[1].x, found[0].x + 3);
  EXPECT_EQ(found[1].width, 1);
}

TEST_F(FrequencyChartTest, DoubleScalePlacesMarksToHalfAPixel) {
  announce("Shannon", "2026/11/15 12:06:00", {"2998"});
  const auto found = marks(DrawGraph(tables_, kStart, kWidth, 0, 2));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].x, kLeftMargin + 180.5);
  EXPECT_EQ(found[0].width, 1);
}

TEST_F(FrequencyChartTest, SurfaceNarrowerThanItsMarginsDoesNoHarm) {
  announce("Shannon", "2026/11/15 12:06:00", {"2998"});
  for (const double width : {0.0, 1.0, 60.0, 104.0}) {
    const Drawing drawing = DrawGraph(tables_, kStart, width, 0);
    for (const Rect& mark : marks(drawing)) EXPECT_LE(mark.x, width) << width;
  }
}

TEST_F(FrequencyChartTest, TimeAxisIsTheUpperPartOfTheChart) {
  announce("Shannon", "2026/11/15 12:06:00", {"2998"});
  const Drawing chart = DrawGraph(tables_, kStart, kWidth, 300);
  const Drawing axis = timeAxis(kStart, kWidth);
  EXPECT_EQ(axis.height, kAxisHeight);
  EXPECT_LE(kAxisHeight, kFirstStation) << "no row begins above its lower edge";
  std::vector<Text> above;
  for (const Text& text : shapesOf<Text>(chart)) {
    if (text.y < kAxisHeight) above.push_back(text);
  }
  EXPECT_EQ(shapesOf<Text>(axis), above);
  std::vector<Line> lines = shapesOf<Line>(chart);
  for (Line& line : lines) line.y2 = kAxisHeight;
  EXPECT_EQ(shapesOf<Line>(axis), lines);
}

TEST_F(FrequencyChartTest, EnlargedTimeAxisTellsTheHoursAndTheDateOfThatPart) {
  // From 12 hours after the start, and 25 hours wide.
  const Drawing axis = enlargedTimeAxis(kStart, kWidth, kLeftMargin + 60, 125, 4);
  EXPECT_EQ(axis.width, 500);
  std::vector<std::pair<double, std::string>> hours;
  std::vector<std::pair<double, std::string>> dates;
  for (const Text& text : shapesOf<Text>(axis)) {
    (text.text.size() == 2 ? hours : dates).emplace_back(text.x, text.text);
  }
  ASSERT_EQ(hours.size(), 12U);
  EXPECT_EQ(hours.front(), std::pair(42.0, std::string("14")));
  EXPECT_EQ(hours[5], std::pair(242.0, std::string("00")));
  EXPECT_THAT(dates, ElementsAre(std::pair(242.0, std::string("11/15")),
                                 std::pair(0.0, std::string("11/14"))));
  // Where midnight follows at once there is room for its date alone.
  for (const Text& text :
       shapesOf<Text>(enlargedTimeAxis(kStart, kWidth, kLeftMargin + 115, 150, 4))) {
    EXPECT_NE(text.text, "11/14");
  }
}

TEST_F(FrequencyChartTest, EnlargedTimeAxisOutsideTheSevenDaysIsEmpty) {
  EXPECT_TRUE(enlargedTimeAxis(kStart, kWidth, -200, 150, 4).shapes.empty());
  EXPECT_TRUE(enlargedTimeAxis(kStart, kWidth, kWidth + 20, 150, 4).shapes.empty());
}

TEST_F(FrequencyChartTest, PointOnARowTellsStationFrequencyDayAndTime) {
  announce("Shannon", "2026/11/15 12:00:00", {"2998", "6532"});
  announce("Hat Yai", "2026/11/15 12:00:00", {"5655"});
  const std::vector<FrequencyRow> rows = frequencyRows(tables_);
  const double top = kFirstStation + kStationHeight;
  ASSERT_THAT(rows,
              ElementsAre(FrequencyRow{0, 0, top}, FrequencyRow{0, 1, top + kRowHeight},
                          FrequencyRow{1, 0, top + 2 * kRowHeight + kStationGap + kStationHeight}));
  const double noon = kLeftMargin + 36 * 60 / 12;
  const auto tip = [&](double x, double y) { return placeTip(tables_, kStart, kWidth, x, y); };
  EXPECT_EQ(tip(noon, rows[1].top), "Shannon\n6532\n2026/11/15 12:00");
  EXPECT_EQ(tip(noon + 1, rows[2].top + kRowHeight - 1), "Hat Yai\n5655\n2026/11/15 12:12");
  EXPECT_EQ(tip(noon, kFirstStation), "2026/11/15 12:00") << "between the rows";
  EXPECT_EQ(tip(kLeftMargin, 0), "2026/11/14 00:00");
  EXPECT_EQ(tip(kLeftMargin - 1, rows[0].top), "");
  EXPECT_EQ(tip(kWidth - kRightMargin, rows[0].top), "");
}

}  // namespace
}  // namespace vel::test
