#include "velweb/markup.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace vel {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

struct Character {
  char32_t code = 0;
  std::size_t size = 0;  // 0 for ill-formed bytes
};

// The character that begins the text, by the strict rules of UTF-8: no
// overlong form, no surrogate, nothing beyond U+10FFFF.
Character firstCharacter(std::string_view text) {
  const auto byte = [&](std::size_t index) {
    return static_cast<char32_t>(static_cast<unsigned char>(text[index]));
  };
  const char32_t lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  std::size_t size = 0;
  char32_t code = 0;
  char32_t lowest = 0;
  if (lead >= 0xC2 && lead < 0xE0) {
    size = 2;
    code = lead & 0x1F;
    lowest = 0x80;
  } else if (lead >= 0xE0 && lead < 0xF0) {
    size = 3;
    code = lead & 0x0F;
    lowest = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    size = 4;
    code = lead & 0x07;
    lowest = 0x10000;
  }
  if (size == 0 || size > text.size()) return {};
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {};
    code = code << 6 | (byte(i) & 0x3F);
  }
  if (code < lowest || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return {};
  return {code, size};
}

bool isControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0xFFFE || code == 0xFFFF;
}

}  // namespace

std::string plainText(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) {
    const Character character = firstCharacter(utf8);
    if (character.size == 0) {
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
