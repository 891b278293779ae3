#pragma once

#include <string>
#include <string_view>

namespace vel {

/// Text for a place between tags or in quotes, in XML and in HTML: valid UTF-8
/// whatever came in (ill-formed bytes give U+FFFD each), `& < > " '` as
/// entities, and a blank for every control character and every code point that
/// XML does not allow.
[[nodiscard]] std::string markupText(std::string_view utf8);

/// The number with exactly so many decimals, a full stop and no "-0".
[[nodiscard]] std::string fixedNumber(double number, int decimals);

}  // namespace vel
