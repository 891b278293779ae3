#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hfdl/shapes.h"

namespace vel {

/// One bar of a strip: its place from left to right, and what it stands for.
struct StripBar {
  double left = 0;
  double right = 0;
  std::size_t count = 0;
  int first = 0;  ///< days since 1970, or the hour
  int last = 0;   ///< of several days that share a bar
  friend bool operator==(const StripBar&, const StripBar&) = default;
};

/// A strip of bars over its labels.
struct Strip {
  Drawing drawing;
  std::vector<StripBar> bars;
};

/// What a strip marks as chosen.
struct StripChoice {
  int first = 0;
  int last = 0;
};

/// A bar for each day from the first to the last one with messages; where there
/// is no room for so many, for as many days as take the width of a pixel or
/// two together. Empty without any day.
[[nodiscard]] Strip dayStrip(const std::map<std::chrono::local_days, std::size_t>& days,
                             const std::optional<StripChoice>& chosen, double width, double height,
                             double ratio);

/// A bar for each hour of the day.
[[nodiscard]] Strip hourStrip(const std::array<std::size_t, 24>& hours,
                              const std::optional<StripChoice>& chosen, double width, double height,
                              double ratio);

/// The bar whose column holds the place; nothing between the ends.
[[nodiscard]] std::optional<StripBar> barAt(const Strip& strip, double x);

/// "2026/11/20: 12", "2026/11/20-2026/11/22: 12" or "09:00-09:59: 12".
[[nodiscard]] std::string dayBarText(const StripBar& bar);
[[nodiscard]] std::string hourBarText(const StripBar& bar);

}  // namespace vel
