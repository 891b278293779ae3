#pragma once

#include <filesystem>

#include "core/result.h"
#include "samples/sample_data.h"

namespace vel::samples {

/// Writes airport.csv, letter.csv, aircraft.csv, FLIGHT.csv and ICAO24.csv into
/// an existing folder.
Status writeTables(const SampleData& data, const std::filesystem::path& folder);

}  // namespace vel::samples
