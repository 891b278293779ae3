#pragma once

#include <chrono>
#include <cstddef>

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
constexpr double kStationHeight = 15;  ///< of a station's name
constexpr double kRowHeight = 12;      ///< of a frequency
constexpr double kStationGap = 5;
constexpr double kMarkTop = 2;  ///< below the row's top
constexpr double kMarkHeight = 8;

/// x of a moment so many minutes after the start, on a surface of that width.
[[nodiscard]] constexpr double xOf(double minutes, double width) {
  return kLeftMargin + minutes * (width - kLeftMargin - kRightMargin) / (7 * 1440);
}

}  // namespace frequency_chart

/// The height that all stations of the tables need.
[[nodiscard]] double neededHeight(const FrequencyTables& tables);

/// DrawGraph: the seven days from `start` on a surface of that width. The
/// drawing is as high as its stations need, and at least `leastHeight`.
/// `ratio`: device pixels to a logical one; marks that fall on the same or on
/// neighbouring device pixels are one rectangle.
[[nodiscard]] Drawing DrawGraph(const FrequencyTables& tables, std::chrono::local_days start,
                                double width, double leastHeight, double ratio = 1);

}  // namespace vel
