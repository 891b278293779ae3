#include "history/history_strip.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "history/found_messages.h"

namespace vel {
namespace {

constexpr Colour kBar{0x30, 0x60, 0xA0};
constexpr Colour kChosen{0xD0, 0x60, 0x10};
constexpr Colour kBase{0x80, 0x80, 0x80};
constexpr Colour kLabel{0x20, 0x20, 0x20};
constexpr double kLabelPoints = 8;
constexpr double kMargin = 4;
constexpr double kNarrowest = 2;
// Between bars that are wide enough to be told apart.
constexpr double kGap = 1;
constexpr double kGapFrom = 4;

std::chrono::local_days dayOf(int number) {
  return std::chrono::local_days(std::chrono::days(number));
}

// Draws the bars, whose places are set, up to the height of the fullest one.
Strip drawn(std::vector<StripBar> bars, const std::optional<StripChoice>& chosen, double width,
            double height, double ratio) {
  Strip strip{{width, height, ChartFont::gothic, {}}, std::move(bars)};
  auto& shapes = strip.drawing.shapes;
  std::size_t most = 1;
  for (const StripBar& bar : strip.bars) most = std::max(most, bar.count);
  const double top = textHeight(kLabelPoints) + kMargin;
  const double base = snapped(height - textHeight(kLabelPoints) - kMargin, ratio);
  for (const StripBar& bar : strip.bars) {
    if (bar.count == 0) continue;
    const bool isChosen = chosen && bar.first <= chosen->last && bar.last >= chosen->first;
    const double share = static_cast<double>(bar.count) / static_cast<double>(most);
    // Even a single message can be seen.
    const double barHeight = std::max(1.0, std::floor((base - top) * share));
    const double left = snapped(bar.left, ratio);
    const double gap = bar.right - bar.left >= kGapFrom ? kGap : 0;
    const double right = std::max(snapped(bar.right - gap, ratio), left + 1 / ratio);
    shapes.emplace_back(
        Rect{left, base - barHeight, right - left, barHeight, isChosen ? kChosen : kBar});
  }
  shapes.emplace_back(Line{kMargin, base, width - kMargin, base, kBase});
  shapes.emplace_back(Text{kMargin, 0, std::to_string(most), kLabel, kLabelPoints, Align::left});
  return strip;
}

void label(Strip& strip, double x, const std::string& text, Align align) {
  const double y = strip.drawing.height - textHeight(kLabelPoints);
  strip.drawing.shapes.emplace_back(Text{x, y, text, kLabel, kLabelPoints, align});
}

}  // namespace

Strip dayStrip(const std::map<std::chrono::local_days, std::size_t>& days,
               const std::optional<StripChoice>& chosen, double width, double height,
               double ratio) {
  if (days.empty()) return {{width, height, ChartFont::gothic, {}}, {}};
  const auto first = static_cast<int>(days.begin()->first.time_since_epoch().count());
  const auto last = static_cast<int>(days.rbegin()->first.time_since_epoch().count());
  const double room = std::max(kNarrowest, width - 2 * kMargin);
  const double dayCount = static_cast<double>(last) - first + 1;
  const int daysABar = std::max(1, static_cast<int>(std::ceil(dayCount * kNarrowest / room)));
  const int barCount = static_cast<int>(std::ceil(dayCount / daysABar));
  // Few days do not fill the strip.
  const double barWidth = std::min(room / barCount, room / 7);
  std::vector<StripBar> bars;
  for (int i = 0; i < barCount; ++i) {
    const int from = first + i * daysABar;
    bars.push_back({kMargin + i * barWidth, kMargin + (i + 1) * barWidth, 0, from,
                    std::min(from + daysABar - 1, last)});
  }
  for (const auto& [day, count] : days) {
    const auto number = static_cast<int>(day.time_since_epoch().count());
    bars[static_cast<std::size_t>((number - first) / daysABar)].count += count;
  }
  Strip strip = drawn(std::move(bars), chosen, width, height, ratio);
  label(strip, kMargin, dayText(dayOf(first)), Align::left);
  if (last != first) label(strip, width - kMargin, dayText(dayOf(last)), Align::right);
  return strip;
}

Strip hourStrip(const std::array<std::size_t, 24>& hours, const std::optional<StripChoice>& chosen,
                double width, double height, double ratio) {
  const double barWidth = std::max(1.0, (width - 2 * kMargin) / static_cast<double>(hours.size()));
  std::vector<StripBar> bars;
  bars.reserve(hours.size());
  for (int hour = 0; hour < static_cast<int>(hours.size()); ++hour) {
    bars.push_back({kMargin + hour * barWidth, kMargin + (hour + 1) * barWidth,
                    hours[static_cast<std::size_t>(hour)], hour, hour});
  }
  Strip strip = drawn(std::move(bars), chosen, width, height, ratio);
  for (const int hour : {0, 6, 12, 18}) {
    label(strip, kMargin + hour * barWidth, std::to_string(hour), Align::left);
  }
  return strip;
}

std::optional<StripBar> barAt(const Strip& strip, double x) {
  for (const StripBar& bar : strip.bars) {
    if (x >= bar.left && x < bar.right) return bar;
  }
  return std::nullopt;
}

std::string dayBarText(const StripBar& bar) {
  std::string text = dayText(dayOf(bar.first));
  if (bar.last != bar.first) text += "-" + dayText(dayOf(bar.last));
  return text + ": " + std::to_string(bar.count);
}

std::string hourBarText(const StripBar& bar) {
  char text[64];
  std::snprintf(text, sizeof text, "%02d:00-%02d:59: %zu", bar.first, bar.last, bar.count);
  return text;
}

}  // namespace vel
