#pragma once

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "core/result.h"
#include "samples/schedule.h"

namespace vel::samples {

/// One message that the station heard on VHF.
struct Reception {
  Moment time;
  const Flight* flight = nullptr;
};

/// What the station hears of the schedule on one day, up to `until`; sorted by
/// time. The first is that of a flight that every table knows, where there is one.
std::vector<Reception> receptionsOf(const SampleData& data, const Schedule& schedule, Day day,
                                    Moment until, std::uint64_t seed);

/// Writes `<folder>/yyyymmdd_list.csv`. Aircraft in `photographed` (by
/// registration) get the photo mark. `withMalformed` puts in lines of 9 and of 2
/// fields, which make the browser report them; lines without a comma, of which
/// it says nothing, are in every file.
Status writeListLog(const std::filesystem::path& folder, Day day,
                    const std::vector<Reception>& receptions,
                    const std::set<std::string>& photographed, bool withMalformed,
                    std::uint64_t seed);

}  // namespace vel::samples
