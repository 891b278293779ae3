#pragma once

#include <optional>
#include <string_view>

namespace vel {

/// Where an aircraft said that it is.
struct Position {
  double latitude = 0;   ///< degrees, -90 to 90, south negative
  double longitude = 0;  ///< degrees, -180 to 180, west negative
  std::optional<int> altitudeFeet = {};
};

/// The aircraft's own position in the text of one ACARS message, or nothing.
/// `label` is the message's two characters, `text` its body with line breaks
/// as LF. The forms are listed in docs/formats/kml.md. A text has to fit one of
/// its label's forms completely: a wrong position is worse than a missing one.
/// Squitters, flight plans, predicted points and airports give nothing, nor do
/// minutes of 60 or more, latitudes over 90, longitudes over 180, and 0/0. Of a
/// text with several points only the first one counts.
[[nodiscard]] std::optional<Position> positionOf(std::string_view label, std::string_view text);

/// The position in an ADS-C basic report: "/", a 7-character address, ".ADS",
/// a 7-character registration, then hexadecimal digits (blanks and line breaks
/// between them do not count). Nothing when the report is cut short.
[[nodiscard]] std::optional<Position> adscPosition(std::string_view text);

/// The position, if its numbers are one: in range and not 0/0.
[[nodiscard]] std::optional<Position> checkedPosition(double latitude, double longitude);

/// The altitude, if it is one that aircraft fly at.
[[nodiscard]] std::optional<int> checkedAltitude(int feet);

}  // namespace vel
