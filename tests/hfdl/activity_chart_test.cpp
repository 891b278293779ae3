#include "hfdl/activity_chart.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vel::test {
namespace {

using std::chrono::local_days;
using std::chrono::local_seconds;
using ::testing::Contains;
using ::testing::ElementsAre;
using namespace std::chrono_literals;

constexpr Colour kYellow{255, 255, 128};
constexpr Colour kBlue{128, 128, 255};
constexpr Colour kGreen{128, 255, 128};
constexpr Colour kRed{255, 64, 64};

const local_seconds kReference = local_days(2026y / 11 / 18);

template <typename Kind>
std::vector<Kind> shapesOf(const Drawing& drawing) {
  std::vector<Kind> found;
  for (const Shape& shape : drawing.shapes) {
    if (const auto* kind = std::get_if<Kind>(&shape)) found.push_back(*kind);
  }
  return found;
}

// The bars of a slot, in the order of painting.
std::vector<Rect> bars(const Drawing& drawing, const ActivityPlot& plot, std::size_t slot) {
  std::vector<Rect> found;
  for (const Rect& rect : shapesOf<Rect>(drawing)) {
    if (rect.x == plot.slotLeft(slot) && rect.y + rect.height == plot.base()) found.push_back(rect);
  }
  return found;
}

std::vector<std::string> texts(const Drawing& drawing) {
  std::vector<std::string> found;
  for (const Text& text : shapesOf<Text>(drawing)) found.push_back(text.text);
  return found;
}

TEST(FullScale, StandsForTheNextOfSixSteps) {
  EXPECT_EQ(fullScale(0), 100);
  EXPECT_EQ(fullScale(100), 100);
  EXPECT_EQ(fullScale(101), 150);
  EXPECT_EQ(fullScale(150), 150);
  EXPECT_EQ(fullScale(151), 200);
  EXPECT_EQ(fullScale(200), 200);
  EXPECT_EQ(fullScale(201), 300);
  EXPECT_EQ(fullScale(300), 300);
  EXPECT_EQ(fullScale(301), 500);
  EXPECT_EQ(fullScale(500), 500);
  EXPECT_EQ(fullScale(501), 1000);
  EXPECT_EQ(fullScale(5000), 1000);
}

TEST(ActivityChart, StacksFourLayersWithTheTallestBehind) {
  ActivityCounts counts;
  counts.squitters[10] = 10;
  counts.downlinks[10] = 20;
  counts.uplinks[10] = 30;
  counts.failed[10] = 40;
  counts.largestTotal = 100;
  const ActivityPlot plot(800, 460);
  ASSERT_EQ(plot.base() - plot.top(), 400);
  const Drawing drawing = drowGraph(counts, kReference, 800, 460);
  const double x = plot.slotLeft(10);
  const double width = plot.slotLeft(11) - x;
  EXPECT_GT(width, 0);
  EXPECT_THAT(bars(drawing, plot, 10), ElementsAre(Rect{x, plot.base() - 400, width, 400, kYellow},
                                                   Rect{x, plot.base() - 240, width, 240, kBlue},
                                                   Rect{x, plot.base() - 120, width, 120, kGreen},
                                                   Rect{x, plot.base() - 40, width, 40, kRed}));
}

TEST(ActivityChart, DrawsSlots0To144AndNoneAfterThem) {
  ActivityCounts counts;
  counts.squitters[0] = counts.squitters[144] = counts.squitters[145] = counts.squitters[240] = 50;
  counts.largestTotal = 50;
  const ActivityPlot plot(800, 460);
  const Drawing drawing = drowGraph(counts, kReference, 800, 460);
  EXPECT_EQ(bars(drawing, plot, 0).size(), 4U);
  EXPECT_EQ(bars(drawing, plot, 144).size(), 4U);
  for (const Rect& rect : shapesOf<Rect>(drawing)) {
    EXPECT_LE(rect.x + rect.width, plot.right());
    EXPECT_GE(rect.x, plot.left());
  }
  EXPECT_EQ(shapesOf<Rect>(drawing).size(), 8U + 4U) << "two slots and the legend";
}

TEST(ActivityChart, LabelsTheScaleItsHalfAndTheBase) {
  ActivityCounts counts;
  EXPECT_THAT(texts(drowGraph(counts, kReference, 800, 460)), Contains("100"));
  EXPECT_THAT(texts(drowGraph(counts, kReference, 800, 460)), Contains(" 50"));
  EXPECT_THAT(texts(drowGraph(counts, kReference, 800, 460)), Contains("  0"));
  counts.largestTotal = 101;
  EXPECT_THAT(texts(drowGraph(counts, kReference, 800, 460)), Contains("150"));
  EXPECT_THAT(texts(drowGraph(counts, kReference, 800, 460)), Contains(" 75"));
  counts.largestTotal = 501;
  const Drawing drawing = drowGraph(counts, kReference, 800, 460);
  EXPECT_THAT(texts(drawing), Contains("1000"));
  EXPECT_THAT(texts(drawing), Contains("500"));
  for (const Text& text : shapesOf<Text>(drawing)) {
    EXPECT_EQ(text.points,
              text.text == "1000" || text.text == "500" || text.text == "  0" ? 15 : 10)
        << text.text;
  }
  EXPECT_EQ(drawing.font, ChartFont::mincho);
}

TEST(ActivityChart, TimesReachBackADayFromTheReference) {
  const ActivityPlot plot(800, 460);
  const Drawing drawing = drowGraph({}, local_days(2026y / 11 / 17) + 12h + 5min, 800, 460);
  std::vector<std::pair<double, std::string>> times;
  for (const Text& text : shapesOf<Text>(drawing)) {
    if (text.y > plot.base()) times.emplace_back(text.x, text.text);
  }
  ASSERT_EQ(times.size(), 13U);
  EXPECT_EQ(times.front(), std::pair(plot.left(), std::string("12:05")));
  EXPECT_EQ(times[1], std::pair(plot.slotLeft(12), std::string("14:05")));
  EXPECT_EQ(times[6].second, "00:05");
  EXPECT_EQ(times.back(), std::pair(plot.slotLeft(144), std::string("12:05")));
}

TEST(ActivityChart, GridIsGreyAxesAreBlackAndBothLieOverTheBars) {
  ActivityCounts counts;
  counts.squitters[3] = counts.largestTotal = 20;
  const ActivityPlot plot(800, 460);
  const Drawing drawing = drowGraph(counts, kReference, 800, 460);
  const auto lines = shapesOf<Line>(drawing);
  const Colour grey{220, 220, 220};
  const Colour black{0, 0, 0};
  EXPECT_THAT(lines, Contains(Line{plot.left(), plot.base(), plot.right(), plot.base(), black}));
  EXPECT_THAT(lines, Contains(Line{plot.left(), plot.top(), plot.left(), plot.base(), black}));
  EXPECT_THAT(lines, Contains(Line{plot.left(), plot.top(), plot.right(), plot.top(), grey}));
  EXPECT_THAT(lines,
              Contains(Line{plot.slotLeft(12), plot.top(), plot.slotLeft(12), plot.base(), grey}));
  const auto isBar = [&](const Shape& shape) {
    const auto* rect = std::get_if<Rect>(&shape);
    return rect != nullptr && rect->y + rect->height == plot.base();
  };
  const auto isLine = [](const Shape& shape) { return std::holds_alternative<Line>(shape); };
  const auto firstLine = std::find_if(drawing.shapes.begin(), drawing.shapes.end(), isLine);
  EXPECT_TRUE(std::any_of(drawing.shapes.begin(), firstLine, isBar));
  EXPECT_TRUE(std::none_of(firstLine, drawing.shapes.end(), isBar));
}

TEST(ActivityChart, LegendNamesTheFourColours) {
  const Drawing drawing = drowGraph({}, kReference, 800, 460);
  std::vector<Colour> colours;
  for (const Rect& rect : shapesOf<Rect>(drawing)) colours.push_back(rect.colour);
  EXPECT_THAT(colours, ElementsAre(kRed, kGreen, kBlue, kYellow));
  const auto names = texts(drawing);
  EXPECT_THAT(std::vector<std::string>(names.end() - 4, names.end()),
              ElementsAre("Squitter", "Downlink", "Uplink", "CRC failed"));
}

TEST(ActivityChart, BarPastTheLargestScaleIsCutOffAtTheTop) {
  ActivityCounts counts;
  counts.failed[5] = counts.largestTotal = 2500;
  const ActivityPlot plot(800, 460);
  const auto found = bars(drowGraph(counts, kReference, 800, 460), plot, 5);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].y, plot.top());
}

TEST(ActivityChart, EdgesLieOnDevicePixelsAtEveryScale) {
  ActivityCounts counts;
  for (std::size_t slot = 0; slot <= 144; ++slot) counts.squitters[slot] = static_cast<int>(slot);
  counts.largestTotal = 144;
  for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
    const Drawing drawing = drowGraph(counts, kReference, 777, 333, ratio);
    const ActivityPlot plot(777, 333, ratio);
    for (std::size_t slot = 0; slot <= 144; ++slot) {
      for (const Rect& bar : bars(drawing, plot, slot)) {
        for (const double edge : {bar.x, bar.y, bar.x + bar.width, bar.y + bar.height}) {
          EXPECT_NEAR(edge * ratio, std::round(edge * ratio), 1e-6) << ratio << ' ' << slot;
        }
      }
    }
  }
}

TEST(ActivityChart, SurfaceTooSmallForThePlotDrawsNoBars) {
  ActivityCounts counts;
  counts.squitters[5] = counts.largestTotal = 10;
  for (const double size : {0.0, 1.0, 50.0}) {
    EXPECT_EQ(shapesOf<Rect>(drowGraph(counts, kReference, size, size)).size(), 4U) << size;
  }
}

TEST(ActivityChart, PointInThePlotBelongsToTheSlotDrawnThere) {
  const ActivityPlot plot(800, 460);
  EXPECT_EQ(plot.slotAt(plot.left(), plot.base() - 1), 0U);
  EXPECT_EQ(plot.slotAt(plot.slotLeft(73), plot.top()), 73U);
  EXPECT_EQ(plot.slotAt(plot.slotLeft(73) - 0.5, plot.top()), 72U);
  EXPECT_EQ(plot.slotAt(plot.right() - 1, plot.base()), 144U);
  EXPECT_EQ(plot.slotAt(plot.right(), plot.base()), std::nullopt);
  EXPECT_EQ(plot.slotAt(plot.left() - 1, plot.base()), std::nullopt);
  EXPECT_EQ(plot.slotAt(plot.left(), plot.top() - 1), std::nullopt);
  EXPECT_EQ(plot.slotAt(plot.left(), plot.base() + 1), std::nullopt);
}

TEST(ActivityChart, ToolTipTellsTheSlotsTimeAndCounts) {
  ActivityCounts counts;
  counts.squitters[143] = 1;
  counts.downlinks[143] = 2;
  counts.uplinks[143] = 3;
  counts.failed[143] = 4;
  EXPECT_EQ(slotTip(counts, 143, local_days(2026y / 11 / 17) + 12h + 5min),
            "11:55 - 12:05\nSquitter: 1\nDownlink: 2\nUplink: 3\nCRC failed: 4\nTotal: 10");
}

TEST(ActivityChart, BarCutOffAtTheTopHasAMarkAboveThePlotAndOthersHaveNone) {
  ActivityCounts counts;
  counts.failed[5] = counts.largestTotal = 1001;
  counts.failed[6] = 1000;
  const ActivityPlot plot(800, 460);
  std::vector<Rect> above;
  for (const Rect& rect : shapesOf<Rect>(drowGraph(counts, kReference, 800, 460))) {
    if (rect.y + rect.height <= plot.top() && rect.y > 20) above.push_back(rect);
  }
  ASSERT_FALSE(above.empty());
  for (const Rect& rect : above) {
    EXPECT_EQ(rect.colour, (Colour{0, 0, 0}));
    EXPECT_NEAR(rect.x + rect.width / 2, (plot.slotLeft(5) + plot.slotLeft(6)) / 2, 1);
  }
  counts.failed[5] = 1000;
  EXPECT_EQ(shapesOf<Rect>(drowGraph(counts, kReference, 800, 460)).size(), 4U + 2U);
}

TEST(ActivityChart, TitleSaysStationAndTimeAndKeepsTheTimeWhereItIsTooLong) {
  const auto titleOf = [](const std::string& station, double width) {
    const Drawing drawing =
        drowGraph({}, kReference, width, 460, 1, {station, chartedTime(kReference)});
    for (const Text& text : shapesOf<Text>(drawing)) {
      if (text.text.find("2026/11/17") == std::string::npos) continue;
      EXPECT_EQ(text.align, Align::right);
      EXPECT_LE(text.y + textHeight(text.points), ActivityPlot(width, 460).top());
      return text.text;
    }
    return std::string();
  };
  EXPECT_EQ(titleOf("Agana, Guam", 960), "Agana, Guam  2026/11/17");
  EXPECT_EQ(titleOf("東京", 960), "東京  2026/11/17");
  const std::string cut = titleOf("Agana, Guam, " + std::string(250, 'G'), 960);
  EXPECT_TRUE(cut.starts_with("Agana, Guam, GGG")) << cut;
  EXPECT_TRUE(cut.ends_with("...  2026/11/17")) << cut;
  EXPECT_LT(cut.size(), 100U);
  EXPECT_EQ(titleOf("Agana, Guam", 520), "") << "no room beside the legend";
}

TEST(ActivityChart, ChartedTimeIsTheDayOrTheDayUpToNow) {
  EXPECT_EQ(chartedTime(local_days(2026y / 3 / 1)), "2026/02/28");
  EXPECT_EQ(chartedTime(local_days(2026y / 11 / 17) + 12h + 5min), "24h to 2026/11/17 12:05");
}

}  // namespace
}  // namespace vel::test
