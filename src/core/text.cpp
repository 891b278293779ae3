#include "core/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "core/platform.h"

namespace vel {
namespace {

// The bytes of the character that begins the text: 1 for an ill-formed one.
std::size_t characterSize(std::string_view text) {
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char lead = byte(0);
  std::size_t size = 1;
  if (lead >= 0xF0 && lead <= 0xF4) {
    size = 4;
  } else if (lead >= 0xE0 && lead < 0xF0) {
    size = 3;
  } else if (lead >= 0xC2 && lead < 0xE0) {
    size = 2;
  }
  if (size > text.size()) return 1;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 1;
  }
  return size;
}

// Bytes of the first `count` characters.
std::size_t offsetOf(std::string_view text, std::size_t count) {
  std::size_t offset = 0;
  while (count > 0 && offset < text.size()) {
    offset += characterSize(text.substr(offset));
    --count;
  }
  return offset;
}

char32_t decodeOne(std::string_view character) {
  const auto byte = [&](std::size_t index) {
    return static_cast<char32_t>(static_cast<unsigned char>(character[index]));
  };
  switch (character.size()) {
    case 2:
      return (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
    case 3:
      return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    case 4:
      return (byte(0) & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 |
             (byte(3) & 0x3F);
    default:
      return byte(0);
  }
}

void appendOne(std::string& text, char32_t character) {
  const auto add = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (character < 0x80) {
    add(character);
  } else if (character < 0x800) {
    add(0xC0 | character >> 6);
    add(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    add(0xE0 | character >> 12);
    add(0x80 | (character >> 6 & 0x3F));
    add(0x80 | (character & 0x3F));
  } else {
    add(0xF0 | character >> 18);
    add(0x80 | (character >> 12 & 0x3F));
    add(0x80 | (character >> 6 & 0x3F));
    add(0x80 | (character & 0x3F));
  }
}

template <typename Convert>
std::string mapCharacters(std::string_view text, Convert convert) {
  std::string mapped;
  mapped.reserve(text.size());
  while (!text.empty()) {
    const std::string_view character = text.substr(0, characterSize(text));
    if (character.size() == 1 && static_cast<unsigned char>(character[0]) >= 0x80) {
      mapped += character;
    } else {
      appendOne(mapped, convert(decodeOne(character)));
    }
    text.remove_prefix(character.size());
  }
  return mapped;
}

// The names under which people know code page 932. The converters' own idea of
// "Shift_JIS" lacks the characters that makers added to it.
bool isCodePage932(std::string_view name) {
  std::string plain;
  for (const char c : name) {
    if (c != '-' && c != '_') plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  }
  constexpr std::array<std::string_view, 6> kNames = {"cp932", "shiftjis",   "sjis",
                                                      "ms932", "windows31j", "windows932"};
  return std::find(kNames.begin(), kNames.end(), plain) != kNames.end();
}

// A converter may put a similar character where the encoding has none: only
// what comes back the same counts.
std::optional<std::string> encodeExactly(platform::Transcoder& transcoder, std::string_view utf8) {
  auto bytes = transcoder.encode(utf8);
  if (bytes && transcoder.decode(*bytes) != utf8) bytes.reset();
  return bytes;
}

// Six marks of the Japanese character set have two code points each. Input
// methods outside Windows type the first, code page 932 holds the second.
std::string withUsualTwins(std::string_view text) {
  return mapCharacters(text, [](char32_t character) -> char32_t {
    switch (character) {
      case U'\u301C':
        return U'\uFF5E';
      case U'\u2016':
        return U'\u2225';
      case U'\u2212':
        return U'\uFF0D';
      case U'\u00A2':
        return U'\uFFE0';
      case U'\u00A3':
        return U'\uFFE1';
      case U'\u00AC':
        return U'\uFFE2';
      default:
        return character;
    }
  });
}

}  // namespace

Encoding::Encoding(std::string name, std::shared_ptr<platform::Transcoder> transcoder)
    : name_(std::move(name)), transcoder_(std::move(transcoder)) {}

Encoding Encoding::codePage932() { return named("CP932").value(); }

Result<Encoding> Encoding::named(const std::string& name) {
  std::shared_ptr<platform::Transcoder> transcoder =
      platform::makeTranscoder(isCodePage932(name) ? "CP932" : name);
  if (transcoder == nullptr) return ErrorNumber::typeMismatch;
  // Files are cut at these bytes before anything is decoded.
  constexpr std::string_view kCuts = ",\"\r\n A0";
  if (transcoder->encode(kCuts) != kCuts || transcoder->decode(kCuts) != kCuts) {
    return ErrorNumber::typeMismatch;
  }
  // An encoding that switches between character sets writes other letters in
  // the bytes of ASCII ones: a comma would not be a comma.
  for (const std::string_view letter : {"é", "Ж", "ก", "あ", "中", "가"}) {
    const auto bytes = transcoder->encode(letter);
    if (bytes && isAscii(*bytes)) return ErrorNumber::typeMismatch;
  }
  return Encoding(name, std::move(transcoder));
}

std::string Encoding::decode(std::string_view bytes) const {
  if (isAscii(bytes)) return std::string(bytes);
  return transcoder_->decode(bytes);
}

std::optional<std::string> Encoding::encode(std::string_view utf8) const {
  if (isAscii(utf8)) return std::string(utf8);
  if (auto bytes = encodeExactly(*transcoder_, utf8)) return bytes;
  return encodeExactly(*transcoder_, withUsualTwins(utf8));
}

bool isAscii(std::string_view bytes) {
  while (bytes.size() >= sizeof(std::uint64_t)) {
    std::uint64_t word;
    std::memcpy(&word, bytes.data(), sizeof word);
    if ((word & 0x8080808080808080U) != 0) return false;
    bytes.remove_prefix(sizeof word);
  }
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::size_t length(std::string_view text) {
  std::size_t count = 0;
  while (!text.empty()) {
    text.remove_prefix(characterSize(text));
    ++count;
  }
  return count;
}

std::string_view Left(std::string_view text, std::size_t count) {
  return text.substr(0, offsetOf(text, count));
}

std::string_view Mid(std::string_view text, std::size_t position) {
  return position < 1 ? std::string_view() : text.substr(offsetOf(text, position - 1));
}

std::string_view Mid(std::string_view text, std::size_t position, std::size_t count) {
  return Left(Mid(text, position), count);
}

std::string_view Right(std::string_view text, std::size_t count) {
  const std::size_t total = length(text);
  return total <= count ? text : Mid(text, total - count + 1);
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string toLower(std::string_view text) { return mapCharacters(text, platform::lowerCase); }

std::string toUpper(std::string_view text) { return mapCharacters(text, platform::upperCase); }

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  while (true) {
    const std::size_t end = text.find(separator);
    pieces.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return pieces;
    text.remove_prefix(end + 1);
  }
}

bool hasIllegalCharacter(std::string_view text) {
  return text.find_first_of(",\"") != std::string_view::npos;
}

}  // namespace vel
