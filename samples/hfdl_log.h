#pragma once

#include <cstdint>
#include <filesystem>
#include <set>

#include "core/result.h"
#include "samples/sample_data.h"
#include "samples/schedule.h"

namespace vel::samples {

/// Writes `<folder>/yyyymmdd0000_HFDL_FMT.log`: the ground stations' squitters
/// with the frequencies that they use at that hour, and the messages to and
/// from the aircraft of the schedule whose address is known, up to `until`.
Status writeHfdlLog(const std::filesystem::path& folder, const SampleData& data,
                    const Schedule& schedule, Day day, Moment until, std::uint64_t seed);

/// The aircraft of the schedule that can be in that day's log.
std::set<const Aircraft*> aircraftOnHfdl(const Schedule& schedule, Day day, Moment until);

}  // namespace vel::samples
