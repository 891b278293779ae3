#pragma once

#include <string>
#include <string_view>

namespace vel {

/// The text as a document may hold it: valid UTF-8 whatever came in (ill-formed
/// bytes give U+FFFD each), and a blank for every control character and every
/// code point that XML does not allow.
[[nodiscard]] std::string plainText(std::string_view utf8);

/// Plain text for a place between tags or in quotes in HTML: `& < > " '` are
/// entities. (XML is escaped by the library that writes it.)
[[nodiscard]] std::string markupText(std::string_view utf8);

/// The number with exactly so many decimals, a full stop and no "-0".
[[nodiscard]] std::string fixedNumber(double number, int decimals);

}  // namespace vel
