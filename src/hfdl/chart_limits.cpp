#include "hfdl/chart_limits.h"

#include <functional>

namespace vel {
namespace {

constexpr std::size_t kHighestCount = 10000;

std::string counted(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

}  // namespace

void Excess::add(std::string_view name) {
  if (names_.size() < kHighestCount) names_.insert(std::hash<std::string_view>{}(name));
}

std::string excessMessage(std::size_t stations, std::size_t frequencies) {
  if (stations == 0 && frequencies == 0) return {};
  std::string english;
  std::string japanese;
  if (stations > 0) {
    english = counted(stations, "station", "stations");
    japanese = std::to_string(stations) + "局";
  }
  if (frequencies > 0) {
    english += (stations > 0 ? " and " : "") + counted(frequencies, "frequency", "frequencies");
    japanese += (stations > 0 ? "と" : "") + std::to_string(frequencies) + "周波数";
  }
  return english + (stations + frequencies == 1 ? " is" : " are") + " not shown. " + japanese +
         "は表示されません。";
}

}  // namespace vel
