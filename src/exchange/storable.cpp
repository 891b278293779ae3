#include "exchange/storable.h"

#include <algorithm>
#include <array>

#include "tables/record.h"

namespace vel {
namespace {

bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x7F && c != ',' && c != '"';
  });
}

// The letters below the marks, by code.
constexpr char32_t kLatin1 = 0xC0;
constexpr std::string_view kLatin1Letters =
    "AAAAAAACEEEEIIIIDNOOOOOxOUUUUYTsaaaaaaaceeeeiiiidnooooo/ouuuuyty";
constexpr char32_t kLatinExtended = 0x100;
constexpr std::string_view kLatinExtendedLetters =
    "AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIiIiJjKkkLlLlLlLlLlNnNnNnnNnOoOoOoOoRrRrRr"
    "SsSsSsSsTtTtTtUuUuUuUuUuUuWwYyYZzZzZzs";
static_assert(kLatin1Letters.size() == 64);
static_assert(kLatinExtendedLetters.size() == 128);

std::string_view withoutMark(char32_t code) {
  if (code >= kLatin1 && code < kLatin1 + kLatin1Letters.size()) {
    return kLatin1Letters.substr(code - kLatin1, 1);
  }
  if (code >= kLatinExtended && code < kLatinExtended + kLatinExtendedLetters.size()) {
    return kLatinExtendedLetters.substr(code - kLatinExtended, 1);
  }
  switch (code) {
    case 0x218:
      return "S";
    case 0x219:
      return "s";
    case 0x21A:
      return "T";
    case 0x21B:
      return "t";
    case 0xA0:
      return " ";
    case 0x2BB:
    case 0x2BC:
    case 0x2018:
    case 0x2019:
      return "'";
    case 0x2013:
    case 0x2014:
      return "-";
    default:
      return {};
  }
}

}  // namespace

std::optional<std::string> storableField(const Encoding& encoding, std::string_view text,
                                         bool& changed) {
  if (isPlain(text)) return std::string(text);
  std::string made(text);
  for (char& c : made) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == ',' || byte < 0x20 || byte == 0x7F) c = ' ';
    if (c == '"') c = '\'';
  }
  if (!isAscii(made) && !canBeStored(encoding, made)) {
    std::string stored;
    for (std::string_view rest = made; !rest.empty();) {
      const Character character = firstCharacter(rest);
      const std::string_view one = rest.substr(0, character.size);
      rest.remove_prefix(character.size);
      if (canBeStored(encoding, one)) {
        stored.append(one);
        continue;
      }
      const std::string_view letter = withoutMark(character.code);
      if (letter.empty()) return std::nullopt;
      stored.append(letter);
    }
    made = std::move(stored);
  }
  changed = changed || made != text;
  return isAscii(made) ? made : encoding.encode(made);
}

}  // namespace vel
