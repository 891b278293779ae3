#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/folders.h"
#include "core/text.h"

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
/// no further into one of them than so many bytes,
constexpr std::size_t kSightingLogBytes = std::size_t{128} << 20;
/// and so many sightings are given at most.
constexpr std::size_t kMostSightings = 30;

/// The latest sightings of a flight, the newest first. The flight has to equal
/// the logged one, blanks around it aside. Logs that cannot be read give none.
[[nodiscard]] std::vector<Sighting> latestSightings(const Folders& folders,
                                                    const Encoding& encoding,
                                                    std::string_view flight);

}  // namespace vel
