#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "history/found_messages.h"

namespace vel {

/// Names with how often each was heard.
class NameCounts {
 public:
  /// One more of it; an empty name does not count.
  void add(std::string_view name, std::size_t count = 1);
  [[nodiscard]] std::size_t size() const { return counts_.size(); }
  [[nodiscard]] std::size_t of(std::string_view name) const;
  /// The most frequent first, equal ones by name; at most so many.
  [[nodiscard]] std::vector<std::pair<std::string, std::size_t>> mostFirst(
      std::size_t most = SIZE_MAX) const;
  void clear() { counts_.clear(); }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>{}(text);
    }
  };
  std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>> counts_;
};

/// What the found messages amount to: when, under which flights, with which
/// aircraft, on which routes.
class HistoryTally {
 public:
  /// Counts the messages that were found since the last call.
  void countNew(const FoundMessages& found);
  void clear();

  [[nodiscard]] std::size_t messages() const { return counted_; }
  /// Messages of each day on which there were any.
  [[nodiscard]] const std::map<std::chrono::local_days, std::size_t>& days() const { return days_; }
  /// Messages of each hour of the day, over all days.
  [[nodiscard]] const std::array<std::size_t, 24>& hours() const { return hours_; }

  /// "yyyy/mm/dd hh:mm:ss" of the first and of the last message that has a
  /// date; empty when none has.
  [[nodiscard]] const std::string& firstHeard() const { return firstHeard_; }
  [[nodiscard]] const std::string& lastHeard() const { return lastHeard_; }

  [[nodiscard]] const NameCounts& flights() const { return flights_; }
  [[nodiscard]] const NameCounts& aircraft() const { return aircraft_; }
  /// "RJTT-RJAA"; only of messages with both airports.
  [[nodiscard]] const NameCounts& routes() const { return routes_; }

 private:
  std::size_t counted_ = 0;
  std::map<std::chrono::local_days, std::size_t> days_;
  std::array<std::size_t, 24> hours_{};
  std::string firstHeard_;
  std::string lastHeard_;
  NameCounts flights_;
  NameCounts aircraft_;
  NameCounts routes_;
  std::string stamp_;
};

}  // namespace vel
