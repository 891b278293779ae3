#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "hfdl/frequency_tables.h"
#include "hfdl/shapes.h"

namespace vel {

/// Where things stand on the frequency chart, in logical pixels.
namespace frequency_chart {

constexpr double kLeftMargin = 104;  ///< x of the chart's start
constexpr double kRightMargin = 20;  ///< right of its end
constexpr double kGridTop = 20;
constexpr double kGridBottom = 10;  ///< above the lower edge of the surface
constexpr double kFirstStation = 26;
/// Dates, hours and the beginning of the grid: what stays in sight above the
/// rows when these are scrolled.
constexpr double kAxisHeight = 24;
constexpr double kStationHeight = 15;  ///< of a station's name
constexpr double kRowHeight = 12;      ///< of a frequency
constexpr double kStationGap = 5;
constexpr double kMarkTop = 2;  ///< below the row's top
constexpr double kMarkHeight = 8;

/// x of a moment so many minutes after the start, on a surface of that width.
[[nodiscard]] constexpr double xOf(double minutes, double width) {
  return kLeftMargin + minutes * (width - kLeftMargin - kRightMargin) / (7 * 1440);
}

/// The moment at that x; it may lie outside the seven days.
[[nodiscard]] std::chrono::local_seconds momentAt(double x, std::chrono::local_days start,
                                                  double width);

}  // namespace frequency_chart

/// The height that all stations of the tables need.
[[nodiscard]] double neededHeight(const FrequencyTables& tables);

/// DrawGraph: the seven days from `start` on a surface of that width. The
/// drawing is as high as its stations need, and at least `leastHeight`.
/// `ratio`: device pixels to a logical one; marks that fall on the same or on
/// neighbouring device pixels are one rectangle.
[[nodiscard]] Drawing DrawGraph(const FrequencyTables& tables, std::chrono::local_days start,
                                double width, double leastHeight, double ratio = 1);

/// The upper kAxisHeight pixels of that chart.
[[nodiscard]] Drawing timeAxis(std::chrono::local_days start, double width, double ratio = 1);

/// The time axis of the part of the chart from `left` on that is `span` wide,
/// enlarged so many times, as its lines are: a tick and its hour every two hours, the date at the
/// left edge and at each midnight.
[[nodiscard]] Drawing enlargedTimeAxis(std::chrono::local_days start, double width, double left,
                                       double span, double times, double ratio = 1);

/// A row of the chart: a frequency of a station.
struct FrequencyRow {
  std::size_t station;
  std::size_t frequency;
  double top;  ///< its y
  friend bool operator==(const FrequencyRow&, const FrequencyRow&) = default;
};

/// All rows from top to bottom.
[[nodiscard]] std::vector<FrequencyRow> frequencyRows(const FrequencyTables& tables);

/// What stands at a point of the chart: station and frequency where it is on a
/// row, and day and time; a line each. Empty left and right of the seven days.
[[nodiscard]] std::string placeTip(const FrequencyTables& tables, std::chrono::local_days start,
                                   double width, double x, double y);

}  // namespace vel
