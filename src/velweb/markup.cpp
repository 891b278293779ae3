#include "velweb/markup.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "core/text.h"

namespace vel {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool isControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0xFFFE || code == 0xFFFF;
}

}  // namespace

std::string plainText(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) {
    const Character character = firstCharacter(utf8);
    if (!character.wellFormed) {
      text += kReplacement;
      utf8.remove_prefix(1);
      continue;
    }
    if (isControl(character.code)) {
      text += ' ';
    } else {
      text += utf8.substr(0, character.size);
    }
    utf8.remove_prefix(character.size);
  }
  return text;
}

std::string markupText(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  for (const char c : plainText(utf8)) {
    switch (c) {
      case '&':
        text += "&amp;";
        break;
      case '<':
        text += "&lt;";
        break;
      case '>':
        text += "&gt;";
        break;
      case '"':
        text += "&quot;";
        break;
      case '\'':
        text += "&#39;";
        break;
      default:
        text += c;
    }
  }
  return text;
}

std::string fixedNumber(double number, int decimals) {
  const double unit = std::pow(10, -decimals);
  if (std::abs(number) < unit / 2) number = 0;
  std::array<char, 64> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                 std::chars_format::fixed, decimals);
  return std::string(digits.data(), end.ptr);
}

}  // namespace vel
