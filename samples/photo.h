#pragma once

#include <cstdint>
#include <filesystem>

#include "core/result.h"
#include "samples/sample_data.h"

namespace vel::samples {

/// Draws `<folder>/<registration>.jpg`: the aircraft from the side, in its
/// airline's colours, on a runway, 640 by 420 pixels. The airline must have
/// colours. A QGuiApplication must exist, for the fonts.
Status writePhoto(const std::filesystem::path& folder, const Aircraft& aircraft,
                  const Airline& airline, std::uint64_t seed);

/// Draws `<folder>/noimage.jpg`, which stands for every missing photo.
Status writeNoImage(const std::filesystem::path& folder);

}  // namespace vel::samples
