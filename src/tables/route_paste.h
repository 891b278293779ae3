#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vel {

/// As many routes of a pasted text are used.
constexpr std::size_t kMostRoutePairs = 11;

/// The routes in a text pasted from a flight search, as pairs of 3-letter
/// airport codes: "HND>LAX". A route is a part that begins with "From (" and
/// the next one that begins with "to (", on its line or on a later one; either
/// part ends in "))" on its own line and holds a 3-letter code, looked for
/// first in its last brackets: `From (Tokyo Haneda (HND / RJTT)) to (Los
/// Angeles (LAX))`. A part that is cut short, or without a code, is no part of
/// a route, and neither is its counterpart. Lines end with CR, LF or both. The
/// first kMostRoutePairs routes count, in the order of the text.
[[nodiscard]] std::vector<std::string> routePairs(std::string_view text);

}  // namespace vel
