#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "samples/sample_data.h"

namespace vel::samples {

/// All times are those of the receiving station's clock.
using Day = std::chrono::local_days;
using Moment = std::chrono::local_seconds;

/// Where the sample station stands: the shore of Tokyo Bay, nine hours ahead
/// of UTC.
inline constexpr Place kStation{35.6, 139.9};
inline constexpr std::chrono::hours kStationOffset{9};

/// One flight of one aircraft on one day.
struct Flight {
  const Route* route = nullptr;
  const Airport* from = nullptr;
  const Airport* to = nullptr;
  const Aircraft* aircraft = nullptr;
  Moment departure;
  Moment arrival;
  std::string remark;

  bool airborneAt(Moment time) const { return departure <= time && time <= arrival; }
  /// True where every table knows what flies, and its airline's photos can be
  /// drawn.
  bool isKnown(const SampleData& data) const;
  /// The departure airport before the departure, the destination after the
  /// arrival.
  Place placeAt(Moment time) const;
};

/// Who flies where and when: every route on most days, each aircraft on one
/// flight at a time, and from where its last flight took it where that can be.
class Schedule {
 public:
  /// Covers `first` to `last`, with the long flights still in the air at the
  /// beginning. `data` must outlive the schedule.
  Schedule(const SampleData& data, Day first, Day last, std::uint64_t seed);

  /// Sorted by departure.
  const std::vector<Flight>& flights() const { return flights_; }
  /// The flights between push-back and parking at that time.
  std::vector<const Flight*> activeAt(Moment time) const;

 private:
  void planDay(const SampleData& data, Day day, std::uint64_t seed);
  void assignAircraft(const SampleData& data, std::uint64_t seed);

  std::vector<Flight> flights_;
};

/// How many of a day's messages fall into each hour: quiet from one to five,
/// busy in the morning and in the evening.
const std::vector<double>& hourlyActivity();

/// "yyyymmdd"
std::string compactDate(Day day);
/// "yyyy/mm/dd hh:mm:ss"
std::string timeStamp(Moment time);
/// "h:mm:ss"
std::string clockTime(Moment time);

}  // namespace vel::samples
