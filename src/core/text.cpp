#include "core/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "core/platform.h"

namespace vel {
namespace {

bool isAsciiByte(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

// Bytes of the first `count` characters.
std::size_t offsetOf(std::string_view text, std::size_t count) {
  std::size_t offset = 0;
  for (; count > 0 && offset < text.size(); --count) {
    offset += isAsciiByte(text[offset]) ? 1 : firstCharacter(text.substr(offset)).size;
  }
  return offset;
}

template <typename Convert>
std::string mapCharacters(std::string_view text, Convert convert) {
  std::string mapped;
  mapped.reserve(text.size());
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    if (character.wellFormed) {
      appendCharacter(mapped, convert(character.code));
    } else {
      mapped += text[0];
    }
    text.remove_prefix(character.size);
  }
  return mapped;
}

// Kana, ideographs and the marks among them: what Japanese texts are made of,
// known without asking the platform.
bool hasNoCase(char32_t character) { return character >= 0x3000 && character < 0xA000; }

// The names under which people know code page 932. The converters' own idea of
// "Shift_JIS" lacks the characters that makers added to it.
bool namesCodePage932(std::string_view name) {
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

// The bytes that code page 932 leaves undefined, with what Windows makes of
// them; the platforms' converters do not agree.
struct UndefinedByte {
  char byte;
  char32_t code;
};
constexpr std::array<UndefinedByte, 5> kUndefined = {{{'\x80', U'\u0080'},
                                                      {'\xA0', U'\uF8F0'},
                                                      {'\xFD', U'\uF8F1'},
                                                      {'\xFE', U'\uF8F2'},
                                                      {'\xFF', U'\uF8F3'}}};

const UndefinedByte* undefinedByte(char byte) {
  if (byte != '\x80' && byte != '\xA0' && static_cast<unsigned char>(byte) < 0xFD) return nullptr;
  const auto* found = std::find_if(kUndefined.begin(), kUndefined.end(),
                                   [&](const UndefinedByte& each) { return each.byte == byte; });
  return found == kUndefined.end() ? nullptr : found;
}

const UndefinedByte* undefinedCharacter(char32_t code) {
  const auto* found = std::find_if(kUndefined.begin(), kUndefined.end(),
                                   [&](const UndefinedByte& each) { return each.code == code; });
  return found == kUndefined.end() ? nullptr : found;
}

class CodePage932 : public platform::Transcoder {
 public:
  explicit CodePage932(std::unique_ptr<platform::Transcoder> platforms)
      : platforms_(std::move(platforms)) {}

  std::string decode(std::string_view bytes) override {
    if (std::none_of(bytes.begin(), bytes.end(), [](char c) { return undefinedByte(c); })) {
      return platforms_->decode(bytes);
    }
    std::string text;
    std::size_t size = 0;
    while (size < bytes.size()) {
      const UndefinedByte* undefined = undefinedByte(bytes[size]);
      if (undefined == nullptr) {
        size += isPair(bytes.substr(size, 2)) ? 2 : 1;
        continue;
      }
      if (size > 0) text += platforms_->decode(bytes.substr(0, size));
      appendCharacter(text, undefined->code);
      bytes.remove_prefix(size + 1);
      size = 0;
    }
    return text + platforms_->decode(bytes);
  }

  std::optional<std::string> encode(std::string_view utf8) override {
    std::string bytes;
    std::size_t size = 0;
    const auto addPlain = [&] {
      const auto plain = platforms_->encode(utf8.substr(0, size));
      if (plain) bytes += *plain;
      return plain.has_value();
    };
    while (size < utf8.size()) {
      const Character character = firstCharacter(utf8.substr(size));
      const UndefinedByte* undefined = undefinedCharacter(character.code);
      if (undefined == nullptr) {
        size += character.size;
        continue;
      }
      if (!addPlain()) return std::nullopt;
      bytes += undefined->byte;
      utf8.remove_prefix(size + character.size);
      size = 0;
    }
    if (!addPlain()) return std::nullopt;
    return bytes;
  }

 private:
  // True for two bytes that stand for one character, assigned or not.
  static bool isPair(std::string_view bytes) {
    if (bytes.size() < 2) return false;
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const auto trail = static_cast<unsigned char>(bytes[1]);
    const bool isLead = (lead >= 0x81 && lead <= 0x9F) || (lead >= 0xE0 && lead <= 0xFC);
    return isLead && trail >= 0x40 && trail != 0x7F && trail <= 0xFC;
  }

  std::unique_ptr<platform::Transcoder> platforms_;
};

// UTF-8 by its strict rules: the platform's own converter may take more for a
// character than is one.
class Utf8 : public platform::Transcoder {
 public:
  std::string decode(std::string_view bytes) override {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
      const Character character = firstCharacter(bytes);
      if (character.wellFormed) {
        text += bytes.substr(0, character.size);
      } else {
        appendCharacter(text, character.code);
      }
      bytes.remove_prefix(character.size);
    }
    return text;
  }

  std::optional<std::string> encode(std::string_view utf8) override {
    for (std::string_view rest = utf8; !rest.empty();) {
      const Character character = firstCharacter(rest);
      if (!character.wellFormed) return std::nullopt;
      rest.remove_prefix(character.size);
    }
    return std::string(utf8);
  }
};

// True for a converter between UTF-8 and itself, whatever its name.
bool isUtf8(platform::Transcoder& transcoder) {
  constexpr std::string_view kSample = "\u00E9\u3042\U0001F600";
  return transcoder.encode(kSample) == kSample;
}

constexpr const char* kNoCodePage932 =
    "Code page 932 is not available: the system's text converter does not know it, or cannot "
    "open its part for it (iconv's module CP932 on Linux)."
    "　コードページ932が使えません。システムの文字コード変換(Linuxではiconvのモジュール"
    "CP932)が対応していないか、開けません。";

}  // namespace

Encoding::Encoding(std::string name, std::shared_ptr<platform::Transcoder> transcoder)
    : name_(std::move(name)), transcoder_(std::move(transcoder)) {}

Encoding Encoding::codePage932() { return named("CP932").value(); }

Result<Encoding> Encoding::named(const std::string& name) {
  const bool is932 = namesCodePage932(name);
  std::unique_ptr<platform::Transcoder> made = platform::makeTranscoder(is932 ? "CP932" : name);
  if (made == nullptr) return ErrorNumber::typeMismatch;
  if (is932) made = std::make_unique<CodePage932>(std::move(made));
  if (isUtf8(*made)) made = std::make_unique<Utf8>();
  const std::shared_ptr<platform::Transcoder> transcoder = std::move(made);
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
  return Encoding(name, transcoder);
}

bool Encoding::isCodePage932() const { return namesCodePage932(name_); }

std::string Encoding::decode(std::string_view bytes) const {
  if (isAscii(bytes)) return std::string(bytes);
  return transcoder_->decode(bytes);
}

std::optional<std::string> Encoding::encode(std::string_view utf8) const {
  if (isAscii(utf8)) return std::string(utf8);
  if (auto bytes = encodeExactly(*transcoder_, utf8)) return bytes;
  return encodeExactly(*transcoder_, withUsualTwins(utf8));
}

Result<Encoding> textEncoding(const std::string& name) {
  Result<Encoding> chosen = Encoding::named(name);
  if (!chosen) chosen = Encoding::named("CP932");
  if (!chosen) return Error{ErrorNumber::typeMismatch, kNoCodePage932};
  return chosen;
}

Character firstCharacter(std::string_view text) {
  const auto byte = [&](std::size_t index) {
    return static_cast<char32_t>(static_cast<unsigned char>(text[index]));
  };
  constexpr Character kIllFormed = {U'\uFFFD', 1, false};
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
  if (size == 0 || size > text.size()) return kIllFormed;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return kIllFormed;
    code = code << 6 | (byte(i) & 0x3F);
  }
  if (code < lowest || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return kIllFormed;
  return {code, size};
}

void appendCharacter(std::string& text, char32_t code) {
  const auto add = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) {
    add(code);
  } else if (code < 0x800) {
    add(0xC0 | code >> 6);
    add(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    add(0xE0 | code >> 12);
    add(0x80 | (code >> 6 & 0x3F));
    add(0x80 | (code & 0x3F));
  } else {
    add(0xF0 | code >> 18);
    add(0x80 | (code >> 12 & 0x3F));
    add(0x80 | (code >> 6 & 0x3F));
    add(0x80 | (code & 0x3F));
  }
}

std::optional<unsigned> hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A') + 10;
  if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a') + 10;
  return std::nullopt;
}

bool isAscii(std::string_view bytes) {
  while (bytes.size() >= 4 * sizeof(std::uint64_t)) {
    std::array<std::uint64_t, 4> words;
    std::memcpy(words.data(), bytes.data(), sizeof words);
    if (((words[0] | words[1] | words[2] | words[3]) & 0x8080808080808080U) != 0) return false;
    bytes.remove_prefix(sizeof words);
  }
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
  for (; !text.empty(); ++count) {
    text.remove_prefix(isAsciiByte(text[0]) ? 1 : firstCharacter(text).size);
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

std::string toLower(std::string_view text) {
  return mapCharacters(text, [](char32_t c) { return hasNoCase(c) ? c : platform::lowerCase(c); });
}

std::string toUpper(std::string_view text) {
  return mapCharacters(text, [](char32_t c) { return hasNoCase(c) ? c : platform::upperCase(c); });
}

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
