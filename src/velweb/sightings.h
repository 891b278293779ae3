#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "tables/tables.h"

namespace vel {

/// One reception of a flight in the dated logs. Texts are UTF-8, as logged.
struct Sighting {
  std::string time;    ///< yyyy-mm-dd hh:mm:ss
  std::string source;  ///< "ACARS" or "HFDL"
  std::string registration;
  std::string departure;    ///< ACARS only
  std::string destination;  ///< ACARS only
  std::string equipment;    ///< ACARS only
  std::string remark;       ///< the remark, or HFDL's direction and ground station
};

/// So many of the newest logs of each decoder are read,
constexpr std::size_t kSightingLogs = 7;
/// for so long at most, one decoder's after the other's,
constexpr std::chrono::seconds kSightingTime{5};
/// and so many sightings are given at most.
constexpr std::size_t kMostSightings = 30;

/// The latest sightings of a flight, the newest first, in the logs that the
/// browsers list, read as the browsers read them. The flight has to equal the
/// logged one, blanks around it aside; an HFDL flight ID of fewer than five
/// characters also counts as the flight to which ICAO24.csv completes it. Logs
/// and tables that cannot be read give none. `longest` is how long each
/// decoder's logs are read.
[[nodiscard]] std::vector<Sighting> latestSightings(
    const Tables& tables, std::string_view flight,
    std::chrono::steady_clock::duration longest = kSightingTime);

}  // namespace vel
