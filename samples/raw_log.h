#pragma once

#include <cstdint>
#include <filesystem>

#include "core/result.h"
#include "samples/schedule.h"

namespace vel::samples {

/// Longest registration that the messages of a raw log can carry.
inline constexpr std::size_t kLongestAddress = 7;

/// Writes `<folder>/<registration>.log`, the raw messages of one aircraft on
/// all its flights that begin at `from` or later, up to `until`: out and off
/// times, positions along the route, weather requests, engine reports in several
/// blocks, link tests, and a few lines in another form.
Status writeRawLog(const std::filesystem::path& folder, const Aircraft& aircraft,
                   const Schedule& schedule, Moment from, Moment until, std::uint64_t seed);

}  // namespace vel::samples
