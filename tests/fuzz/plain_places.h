#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace vel::fuzz {

/// A place on earth, in degrees.
struct Place {
  double latitude = 0;
  double longitude = 0;
};

/// All places that stand somewhere in a text in one of the notations of
/// coordinates. It knows no form of a report: a reader of reports may find
/// fewer, but never another one.
[[nodiscard]] std::vector<Place> placesIn(std::string_view text);

/// The place in the ADS-C basic report of a text, bit by bit.
[[nodiscard]] std::optional<Place> plainAdscPlace(std::string_view text);

/// True when the place is among them.
[[nodiscard]] bool holds(const std::vector<Place>& places, const Place& place);

}  // namespace vel::fuzz
