#include "hfdl/frequency_chart.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "core/text.h"
#include "hfdl/hfdl_lines.h"

namespace vel {
namespace {

using namespace frequency_chart;
using std::chrono::local_days;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr int kChartMinutes = 7 * 1440;
constexpr int kGridMinutes = 120;
constexpr int kHourMinutes = 360;
constexpr int kDayMinutes = 1440;

constexpr Colour kHourColour{100, 150, 100};
constexpr Colour kGridColour{240, 240, 240};
constexpr Colour kDayColour{60, 60, 150};
constexpr Colour kStationColour{0, 0, 255};
constexpr Colour kEvenRowColour{200, 0, 0};
constexpr Colour kOddRowColour{255, 100, 100};
constexpr Colour kMarkColour{30, 30, 30};

constexpr double kPoints = 8;
constexpr double kStationPoints = 9;
constexpr double kStationLeft = 20;
constexpr double kFrequencyLeft = 40;
constexpr std::size_t kFrequencyWidth = 8;  // characters

// Room for an hour and for a date beside the next one.
constexpr double kHourRoom = 8;
constexpr double kDateRoom = 48;

std::string monthAndDay(local_days day) {
  const std::chrono::year_month_day date(day);
  char text[24];
  std::snprintf(text, sizeof text, "%02u/%02u", static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()));
  return text;
}

std::string hourText(int minute) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d", minute / 60 % 24);
  return text;
}

std::string inEight(const std::string& frequency) {
  return std::string(Right(std::string(kFrequencyWidth, ' ') + frequency, kFrequencyWidth));
}

void addVertical(Drawing& drawing, double x, Colour colour) {
  drawing.shapes.emplace_back(Line{x, kGridTop, x, drawing.height - kGridBottom, colour});
}

void addGrid(Drawing& drawing, local_days start, double ratio) {
  const double hourTop = kGridTop - textHeight(kPoints);
  for (int minute = 0; minute <= kChartMinutes; minute += kGridMinutes) {
    const double x = snapped(xOf(minute, drawing.width), ratio);
    if (minute % kHourMinutes != 0) {
      addVertical(drawing, x, kGridColour);
      continue;
    }
    addVertical(drawing, x, kHourColour);
    drawing.shapes.emplace_back(
        Text{x, hourTop, hourText(minute), kHourColour, kPoints, Align::centre});
  }
  for (int minute = 0; minute <= kChartMinutes; minute += kDayMinutes) {
    const double x = snapped(xOf(minute, drawing.width), ratio);
    addVertical(drawing, x, kDayColour);
    drawing.shapes.emplace_back(Text{x, hourTop - textHeight(kPoints),
                                     monthAndDay(start + std::chrono::days(minute / kDayMinutes)),
                                     kDayColour, kPoints, Align::centre});
  }
}

void addLegend(Drawing& drawing) {
  drawing.shapes.emplace_back(Rect{4, 6, 1, kMarkHeight, kMarkColour});
  drawing.shapes.emplace_back(Text{8, 4, "Announced", kMarkColour, kPoints, Align::left});
}

// The device pixels of a station's rows: which of its frequencies have a mark
// there. Thousands of time points come down to a few runs of pixels.
class MarkRows {
 public:
  MarkRows(double width, double ratio)
      : ratio_(ratio),
        markPixels_(static_cast<std::size_t>(std::max(1.0, std::round(ratio)))),
        pixels_(static_cast<std::size_t>(std::max(0.0, std::ceil(width * ratio))) + markPixels_) {}

  void clear() { std::fill(pixels_.begin(), pixels_.end(), 0U); }

  void mark(double x, std::uint32_t marks) {
    const double pixel = std::floor(x * ratio_ + 0.5);
    if (pixel < 0 ||
        pixel + static_cast<double>(markPixels_) > static_cast<double>(pixels_.size())) {
      return;
    }
    const auto first = static_cast<std::size_t>(pixel);
    for (std::size_t i = first; i < first + markPixels_; ++i) pixels_[i] |= marks;
  }

  void addRow(Drawing& drawing, std::size_t slot, double top) const {
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= pixels_.size(); ++i) {
      if (i < pixels_.size() && (pixels_[i] >> slot & 1U) != 0) continue;
      if (begin < i) {
        drawing.shapes.emplace_back(Rect{static_cast<double>(begin) / ratio_, top + kMarkTop,
                                         static_cast<double>(i - begin) / ratio_, kMarkHeight,
                                         kMarkColour});
      }
      begin = i + 1;
    }
  }

 private:
  double ratio_;
  std::size_t markPixels_;
  std::vector<std::uint32_t> pixels_;
};

void markPoints(MarkRows& rows, const FrequencyTables& tables, std::size_t station,
                local_days start, double width) {
  const auto end = start + minutes(kChartMinutes);
  for (const FrequencyTables::Point& point : tables.points(station)) {
    if (point.moment < start || point.moment >= end) continue;
    const auto sinceStart = static_cast<double>((point.moment - start).count());
    rows.mark(xOf(sinceStart / 60, width), point.marks);
  }
}

}  // namespace

std::chrono::local_seconds frequency_chart::momentAt(double x, local_days start, double width) {
  const double chartWidth = std::max(1.0, width - kLeftMargin - kRightMargin);
  const double sinceStart = (x - kLeftMargin) / chartWidth * kChartMinutes * 60;
  return start + seconds(static_cast<std::int64_t>(std::floor(sinceStart)));
}

double neededHeight(const FrequencyTables& tables) {
  double height = kFirstStation + kGridBottom;
  for (std::size_t station = 0; station < tables.stationCount(); ++station) {
    height += kStationHeight + kStationGap +
              kRowHeight * static_cast<double>(tables.frequencies(station).size());
  }
  return height;
}

std::vector<FrequencyRow> frequencyRows(const FrequencyTables& tables) {
  std::vector<FrequencyRow> rows;
  double y = kFirstStation;
  for (std::size_t station = 0; station < tables.stationCount(); ++station) {
    y += kStationHeight;
    for (std::size_t frequency = 0; frequency < tables.frequencies(station).size(); ++frequency) {
      rows.push_back({station, frequency, y});
      y += kRowHeight;
    }
    y += kStationGap;
  }
  return rows;
}

Drawing DrawGraph(const FrequencyTables& tables, local_days start, double width, double leastHeight,
                  double ratio) {
  Drawing drawing{width, std::max(leastHeight, neededHeight(tables)), ChartFont::gothic, {}};
  addGrid(drawing, start, ratio);
  addLegend(drawing);
  MarkRows marks(width, ratio);
  double y = kFirstStation;
  for (std::size_t station = 0; station < tables.stationCount(); ++station) {
    drawing.shapes.emplace_back(Text{kStationLeft, y, tables.stationName(station), kStationColour,
                                     kStationPoints, Align::left});
    y += kStationHeight;
    marks.clear();
    markPoints(marks, tables, station, start, width);
    const std::vector<std::string>& frequencies = tables.frequencies(station);
    for (std::size_t slot = 0; slot < frequencies.size(); ++slot) {
      drawing.shapes.emplace_back(Text{kFrequencyLeft, y, inEight(frequencies[slot]),
                                       slot % 2 == 0 ? kEvenRowColour : kOddRowColour, kPoints,
                                       Align::left});
      marks.addRow(drawing, slot, y);
      y += kRowHeight;
    }
    y += kStationGap;
  }
  return drawing;
}

Drawing timeAxis(local_days start, double width, double ratio) {
  Drawing drawing{width, kAxisHeight + kGridBottom, ChartFont::gothic, {}};
  addGrid(drawing, start, ratio);
  addLegend(drawing);
  drawing.height = kAxisHeight;
  return drawing;
}

Drawing enlargedTimeAxis(local_days start, double width, double left, double span, double times,
                         double ratio) {
  constexpr double kTick = 6;
  const double hourTop = kTick;
  const double dateTop = hourTop + textHeight(kPoints) + 2;
  Drawing drawing{span * times, dateTop + textHeight(kPoints) + 4, ChartFont::gothic, {}};
  double firstDate = drawing.width;
  const auto addDate = [&](double x, local_days day, Align align) {
    drawing.shapes.emplace_back(Text{x, dateTop, monthAndDay(day), kDayColour, kPoints, align});
    firstDate = std::min(firstDate, x);
  };
  for (int minute = 0; minute <= kChartMinutes; minute += kGridMinutes) {
    const double x = (snapped(xOf(minute, width), ratio) - left) * times;
    if (x < 0 || x >= drawing.width) continue;
    const bool midnight = minute % kDayMinutes == 0;
    const Colour colour = midnight ? kDayColour : kHourColour;
    drawing.shapes.emplace_back(Rect{x, 0, times, kTick, colour});
    const double middle = x + times / 2;
    if (x < kHourRoom || x + kHourRoom > drawing.width) continue;
    drawing.shapes.emplace_back(
        Text{middle, hourTop, hourText(minute), colour, kPoints, Align::centre});
    if (midnight) addDate(middle, start + std::chrono::days(minute / kDayMinutes), Align::centre);
  }
  const auto from = momentAt(left, start, width);
  if (from >= start && from < start + minutes(kChartMinutes) && firstDate >= kDateRoom) {
    addDate(0, std::chrono::floor<std::chrono::days>(from), Align::left);
  }
  return drawing;
}

std::string placeTip(const FrequencyTables& tables, local_days start, double width, double x,
                     double y) {
  const std::chrono::local_seconds moment = momentAt(x, start, width);
  if (moment < start || moment >= start + minutes(kChartMinutes)) return {};
  std::string tip;
  for (const FrequencyRow& row : frequencyRows(tables)) {
    if (y < row.top || y >= row.top + kRowHeight) continue;
    tip = tables.stationName(row.station) + '\n' + tables.frequencies(row.station)[row.frequency] +
          '\n';
  }
  const local_days day = std::chrono::floor<std::chrono::days>(moment);
  return tip + dayDigits(day).substr(0, 4) + '/' + monthAndDay(day) + ' ' + hourAndMinute(moment);
}

}  // namespace vel
