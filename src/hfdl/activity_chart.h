#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "hfdl/activity_load.h"
#include "hfdl/shapes.h"

namespace vel {

/// What the full height of the plot stands for: 100, 150, 200, 300, 500 or 1000.
[[nodiscard]] int fullScale(int largestTotal);

/// Where the bars stand on a surface of that size, in logical pixels. All
/// edges lie on edges of device pixels.
class ActivityPlot {
 public:
  /// `ratio`: device pixels to a logical one.
  ActivityPlot(double width, double height, double ratio = 1);

  [[nodiscard]] double left() const { return left_; }
  [[nodiscard]] double right() const { return right_; }
  [[nodiscard]] double top() const { return top_; }
  [[nodiscard]] double base() const { return base_; }

  /// Left edge of a slot; that of slot 145 is the right edge of the last bar.
  [[nodiscard]] double slotLeft(std::size_t slot) const;

  /// Upper edge of a bar of that value; a value past the full scale is cut off
  /// at the top of the plot.
  [[nodiscard]] double barTop(int value, int scale) const;

  /// The slot that is drawn at a point, or nothing outside the plot.
  [[nodiscard]] std::optional<std::size_t> slotAt(double x, double y) const;

 private:
  double ratio_;
  double left_;
  double right_;
  double top_;
  double base_;
};

/// What the chart shows: the station ("ALL" for all) and the time.
struct ActivityTitle {
  std::string station;
  std::string time;
};

/// The day that ends at the reference time: "2026/11/17" from midnight to
/// midnight, else "24h to 2026/11/17 12:05".
[[nodiscard]] std::string chartedTime(std::chrono::local_seconds reference);

/// drowGraph: the chart of the counts on a surface of that size. A title that is
/// too long for it loses the end of the station's name.
[[nodiscard]] Drawing drowGraph(const ActivityCounts& counts, std::chrono::local_seconds reference,
                                double width, double height, double ratio = 1,
                                const ActivityTitle& title = {});

/// The tool tip of a slot: its time and its counts.
[[nodiscard]] std::string slotTip(const ActivityCounts& counts, std::size_t slot,
                                  std::chrono::local_seconds reference);

}  // namespace vel
