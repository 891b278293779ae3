#pragma once

#include <filesystem>

#include "outcome.h"
#include "sample_data.h"

namespace vel::samples {

/// Writes airport.csv, letter.csv, aircraft.csv, FLIGHT.csv and ICAO24.csv into
/// an existing folder.
Outcome writeTables(const SampleData& data, const std::filesystem::path& folder);

}  // namespace vel::samples
