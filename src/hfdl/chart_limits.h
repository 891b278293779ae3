#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

namespace vel {

/// The charts' tables are of fixed size: stations, and frequencies of each.
constexpr std::size_t kMostStations = 31;
constexpr std::size_t kMostFrequencies = 11;

/// Counts the different names for which a table has no place. The count stops
/// at 10,000, so that no log can make it grow for ever.
class Excess {
 public:
  void add(std::string_view name);
  [[nodiscard]] std::size_t count() const { return names_.size(); }

 private:
  std::unordered_set<std::uint64_t> names_;  // their hashes
};

/// What the user is told after a load that left something out; empty when
/// nothing was.
[[nodiscard]] std::string excessMessage(std::size_t stations, std::size_t frequencies);

}  // namespace vel
