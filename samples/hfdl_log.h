#pragma once

#include <cstdint>
#include <filesystem>

#include "core/result.h"
#include "samples/sample_data.h"
#include "samples/schedule.h"

namespace vel::samples {

/// Writes `<folder>/yyyymmdd0000_HFDL_FMT.log`: the ground stations' squitters
/// with the frequencies that they use at that hour, and the messages to and
/// from the aircraft of the schedule whose address is known, up to `until`.
Status writeHfdlLog(const std::filesystem::path& folder, const SampleData& data,
                    const Schedule& schedule, Day day, Moment until, std::uint64_t seed);

}  // namespace vel::samples
