#include "hfdl/activity_chart.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

#include "core/text.h"
#include "hfdl/hfdl_lines.h"

namespace vel {
namespace {

using std::chrono::local_seconds;
using std::chrono::minutes;

constexpr std::size_t kDrawnSlots = ActivityCounts::kReferenceSlot + 1;
constexpr std::size_t kSlotsBetweenTimes = 12;  // two hours
constexpr int kScaleParts = 4;

constexpr Colour kAllColour{255, 255, 128};
constexpr Colour kUpColour{128, 128, 255};
constexpr Colour kDownColour{128, 255, 128};
constexpr Colour kSquitterColour{255, 64, 64};
constexpr Colour kGridColour{220, 220, 220};
constexpr Colour kBlack{0, 0, 0};

constexpr double kLabelPoints = 10;
constexpr double kScalePoints = 15;
constexpr double kLeftMargin = 60;  // four digits of the scale
constexpr double kRightMargin = 24;
constexpr double kTopMargin = 32;  // the legend
constexpr double kBottomMargin = 28;
constexpr double kLegendSquare = 10;
constexpr double kLegendStep = 92;
constexpr double kLegendTextTop = 6;
constexpr double kTitleGap = 16;  // between the legend and the title
constexpr double kCutMarkHeight = 6;

local_seconds slotTime(std::size_t slot, local_seconds reference) {
  return reference - minutes(1440) + minutes(10) * static_cast<int>(slot);
}

std::string rightInThree(int value) {
  const std::string text = "   " + std::to_string(value);
  return text.substr(text.size() - 3);
}

void addBars(Drawing& drawing, const ActivityPlot& plot, const ActivityCounts& counts, int scale) {
  for (std::size_t slot = 0; slot < kDrawnSlots; ++slot) {
    const int squitters = counts.squitters[slot];
    const int andDown = squitters + counts.downlinks[slot];
    const int andUp = andDown + counts.uplinks[slot];
    const double left = plot.slotLeft(slot);
    const double width = plot.slotLeft(slot + 1) - left;
    for (const auto& [value, colour] :
         std::initializer_list<std::pair<int, Colour>>{{counts.total(slot), kAllColour},
                                                       {andUp, kUpColour},
                                                       {andDown, kDownColour},
                                                       {squitters, kSquitterColour}}) {
      const double top = plot.barTop(value, scale);
      if (top < plot.base()) {
        drawing.shapes.emplace_back(Rect{left, top, width, plot.base() - top, colour});
      }
    }
  }
}

// Above a bar that is higher than the scale: an arrow that points on upwards.
void addCutMarks(Drawing& drawing, const ActivityPlot& plot, const ActivityCounts& counts,
                 int scale, double ratio) {
  constexpr int kSteps = 3;
  constexpr double kStepHeight = kCutMarkHeight / kSteps;
  for (std::size_t slot = 0; slot < kDrawnSlots; ++slot) {
    if (counts.total(slot) <= scale) continue;
    const double middle = (plot.slotLeft(slot) + plot.slotLeft(slot + 1)) / 2;
    for (int step = 0; step < kSteps; ++step) {
      const double half = 1.0 + step;
      const double left = snapped(middle - half, ratio);
      const double right = snapped(middle + half, ratio);
      drawing.shapes.emplace_back(Rect{left, plot.top() - kCutMarkHeight + step * kStepHeight,
                                       right - left, kStepHeight, kBlack});
    }
  }
}

void addGrid(Drawing& drawing, const ActivityPlot& plot, double ratio) {
  for (std::size_t slot = kSlotsBetweenTimes; slot < kDrawnSlots; slot += kSlotsBetweenTimes) {
    const double x = plot.slotLeft(slot);
    drawing.shapes.emplace_back(Line{x, plot.top(), x, plot.base(), kGridColour});
  }
  for (int part = 1; part <= kScaleParts; ++part) {
    const double y = snapped(plot.base() - (plot.base() - plot.top()) * part / kScaleParts, ratio);
    drawing.shapes.emplace_back(Line{plot.left(), y, plot.right(), y, kGridColour});
  }
  drawing.shapes.emplace_back(Line{plot.left(), plot.top(), plot.left(), plot.base(), kBlack});
  drawing.shapes.emplace_back(Line{plot.left(), plot.base(), plot.right(), plot.base(), kBlack});
}

void addLabels(Drawing& drawing, const ActivityPlot& plot, int scale, local_seconds reference) {
  const double half = textHeight(kScalePoints) / 2;
  const double middle = (plot.top() + plot.base()) / 2;
  for (const auto& [y, text] :
       std::initializer_list<std::pair<double, std::string>>{{plot.top(), std::to_string(scale)},
                                                             {middle, rightInThree(scale / 2)},
                                                             {plot.base(), "  0"}}) {
    drawing.shapes.emplace_back(
        Text{plot.left() - 6, y - half, text, kBlack, kScalePoints, Align::right});
  }
  for (std::size_t slot = 0; slot < kDrawnSlots; slot += kSlotsBetweenTimes) {
    drawing.shapes.emplace_back(Text{plot.slotLeft(slot), plot.base() + 6,
                                     hourAndMinute(slotTime(slot, reference)), kBlack, kLabelPoints,
                                     Align::centre});
  }
}

void addLegend(Drawing& drawing, const ActivityPlot& plot) {
  double x = plot.left() + 8;
  for (const auto& [colour, name] :
       std::initializer_list<std::pair<Colour, const char*>>{{kSquitterColour, "Squitter"},
                                                             {kDownColour, "Downlink"},
                                                             {kUpColour, "Uplink"},
                                                             {kAllColour, "CRC failed"}}) {
    drawing.shapes.emplace_back(Rect{x, 8, kLegendSquare, kLegendSquare, colour});
    drawing.shapes.emplace_back(
        Text{x + kLegendSquare + 4, kLegendTextTop, name, kBlack, kLabelPoints, Align::left});
    x += kLegendStep;
  }
}

// How many cells of half a letter's height a text takes in the chart's font.
std::size_t cellsOf(std::string_view character) { return character.size() > 1 ? 2 : 1; }

std::size_t cellsIn(std::string_view text) {
  std::size_t cells = 0;
  for (; !text.empty(); text.remove_prefix(Left(text, 1).size())) cells += cellsOf(Left(text, 1));
  return cells;
}

std::string elided(std::string_view text, std::size_t cells) {
  if (cellsIn(text) <= cells) return std::string(text);
  constexpr std::string_view kEllipsis = "...";
  std::string kept;
  std::size_t taken = kEllipsis.size();
  for (; !text.empty(); text.remove_prefix(Left(text, 1).size())) {
    const std::string_view character = Left(text, 1);
    taken += cellsOf(character);
    if (taken > cells) break;
    kept += character;
  }
  return kept.append(kEllipsis);
}

void addTitle(Drawing& drawing, const ActivityPlot& plot, double left, const ActivityTitle& title) {
  if (title.station.empty() && title.time.empty()) return;
  const double room = (plot.right() - left - kTitleGap) / (textHeight(kLabelPoints) / 2);
  const std::string time = "  " + title.time;
  const double spare = room - static_cast<double>(cellsIn(time));
  if (spare < 0) return;
  drawing.shapes.emplace_back(Text{plot.right(), kLegendTextTop,
                                   elided(title.station, static_cast<std::size_t>(spare)) + time,
                                   kBlack, kLabelPoints, Align::right});
}

}  // namespace

int fullScale(int largestTotal) {
  constexpr std::array<std::pair<int, int>, 5> kScales{
      {{500, 1000}, {300, 500}, {200, 300}, {150, 200}, {100, 150}}};
  for (const auto& [exceeded, scale] : kScales) {
    if (largestTotal > exceeded) return scale;
  }
  return 100;
}

ActivityPlot::ActivityPlot(double width, double height, double ratio)
    : ratio_(ratio),
      left_(kLeftMargin),
      right_(std::max(left_, snapped(width - kRightMargin, ratio))),
      top_(kTopMargin),
      base_(std::max(top_, snapped(height - kBottomMargin, ratio))) {}

double ActivityPlot::slotLeft(std::size_t slot) const {
  return snapped(
      left_ + (right_ - left_) * static_cast<double>(slot) / static_cast<double>(kDrawnSlots),
      ratio_);
}

double ActivityPlot::barTop(int value, int scale) const {
  const double top = base_ - (base_ - top_) * value / scale;
  return std::max(top_, snapped(top, ratio_));
}

std::optional<std::size_t> ActivityPlot::slotAt(double x, double y) const {
  if (x < left_ || x >= right_ || y < top_ || y > base_) return std::nullopt;
  std::size_t slot = 0;
  while (slot + 1 < kDrawnSlots && slotLeft(slot + 1) <= x) ++slot;
  return slot;
}

std::string chartedTime(local_seconds reference) {
  const auto dated = [](local_seconds moment) {
    std::string day = dayDigits(std::chrono::floor<std::chrono::days>(moment));
    return day.insert(6, 1, '/').insert(4, 1, '/');
  };
  if (reference == std::chrono::floor<std::chrono::days>(reference)) {
    return dated(reference - minutes(1440));
  }
  return "24h to " + dated(reference) + ' ' + hourAndMinute(reference);
}

Drawing drowGraph(const ActivityCounts& counts, local_seconds reference, double width,
                  double height, double ratio, const ActivityTitle& title) {
  Drawing drawing{width, height, ChartFont::mincho, {}};
  const ActivityPlot plot(width, height, ratio);
  const int scale = fullScale(counts.largestTotal);
  addLabels(drawing, plot, scale, reference);
  addBars(drawing, plot, counts, scale);
  addGrid(drawing, plot, ratio);
  addCutMarks(drawing, plot, counts, scale, ratio);
  addTitle(drawing, plot, plot.left() + 8 + 4 * kLegendStep, title);
  addLegend(drawing, plot);
  return drawing;
}

std::string slotTip(const ActivityCounts& counts, std::size_t slot, local_seconds reference) {
  const auto counted = [slot](const char* name, const std::array<int, ActivityCounts::kSlots>& of) {
    return std::string("\n") + name + ": " + std::to_string(of[slot]);
  };
  return hourAndMinute(slotTime(slot, reference)) + " - " +
         hourAndMinute(slotTime(slot + 1, reference)) + counted("Squitter", counts.squitters) +
         counted("Downlink", counts.downlinks) + counted("Uplink", counts.uplinks) +
         counted("CRC failed", counts.failed) + "\nTotal: " + std::to_string(counts.total(slot));
}

}  // namespace vel
