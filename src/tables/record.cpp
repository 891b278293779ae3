#include "tables/record.h"

#include <algorithm>

namespace vel {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// The text as it comes back from a file: an encoding may have one place for
// two characters that look the same.
std::string asStored(const Encoding& encoding, std::string_view text) {
  if (isAscii(text) || !canBeStored(encoding, text)) return std::string(text);
  return encoding.decode(encoding.encode(text).value_or(std::string(text)));
}

}  // namespace

bool canBeStored(const Encoding& encoding, std::string_view text) {
  if (text.find_first_of("\r\n") != std::string_view::npos) return false;
  if (isAscii(text)) return true;
  if (text.find(kReplacementCharacter) != std::string_view::npos) return false;
  const std::optional<std::string> bytes = encoding.encode(text);
  if (!bytes) return false;
  const std::string back = encoding.decode(*bytes);
  if (back == text) return true;
  // A character may come back as its twin of the same look (the two forms of
  // the wave dash), but a yen sign must not become a backslash.
  std::string_view stored = back;
  while (!text.empty() && !stored.empty()) {
    const std::string_view before = Left(text, 1);
    const std::string_view after = Left(stored, 1);
    if (isAscii(before) != isAscii(after) || after == kReplacementCharacter) return false;
    text.remove_prefix(before.size());
    stored.remove_prefix(after.size());
  }
  return text.empty() && stored.empty();
}

bool canBeKey(const Encoding& encoding, std::string_view text) {
  if (hasIllegalCharacter(text) || !canBeStored(encoding, text)) return false;
  // The second set of controls, U+0080 to U+009F, takes two bytes in UTF-8.
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 || byte == 0x7F) return false;
    if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0) {
      return false;
    }
  }
  return true;
}

std::string_view byteOrderMarkOf(const Encoding& encoding) {
  const bool isUtf8 = encoding.encode(kUtf8Mark) == std::string(kUtf8Mark);
  return isUtf8 ? kUtf8Mark : std::string_view();
}

std::optional<std::string_view> fieldAt(std::string_view line, std::size_t index) {
  for (; index > 0; --index) {
    const std::size_t comma = line.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    line.remove_prefix(comma + 1);
  }
  return line.substr(0, line.find(','));
}

Key::Key(const Encoding& encoding, std::string_view text)
    : encoding_(encoding),
      text_(asStored(encoding, text)),
      ascii_(isAscii(text_)),
      damaged_(!ascii_ && text_.find(kReplacementCharacter) != std::string::npos) {}

bool Key::equals(std::string_view field) const {
  if (ascii_) return field == text_;
  return !damaged_ && !isAscii(field) && encoding_.decode(field) == text_;
}

bool Key::isIn(std::string_view field) const {
  if (ascii_) {
    if (field.find(text_) == std::string_view::npos) return false;
    return isAscii(field) || encoding_.decode(field).find(text_) != std::string::npos;
  }
  return !damaged_ && !isAscii(field) && encoding_.decode(field).find(text_) != std::string::npos;
}

bool Key::isEndOf(std::string_view field) const {
  if (ascii_ && !field.ends_with(text_)) return false;
  if (!ascii_ && (damaged_ || isAscii(field))) return false;
  return Right(encoding_.decode(field), kShortAirportCodeLength) == text_;
}

std::string_view Key::scanBytes() const { return ascii_ ? std::string_view(text_) : ""; }

std::string Key::laterFieldBytes() const { return ascii_ ? "," + text_ : std::string(); }

LowerCaseKey::LowerCaseKey(const Encoding& encoding, std::string_view text)
    : encoding_(encoding),
      text_(toLower(asStored(encoding, text))),
      damaged_(text_.find(kReplacementCharacter) != std::string::npos) {}

bool LowerCaseKey::isIn(std::string_view field) const {
  if (damaged_) return false;
  if (text_.empty()) return true;
  if (isAscii(field)) {
    const auto sameLetter = [](char character, char lower) {
      return (character >= 'A' && character <= 'Z' ? character + ('a' - 'A') : character) == lower;
    };
    return std::search(field.begin(), field.end(), text_.begin(), text_.end(), sameLetter) !=
           field.end();
  }
  return toLower(encoding_.decode(field)).find(text_) != std::string::npos;
}

}  // namespace vel
