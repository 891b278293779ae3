#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/text.h"

namespace vel {

/// What decoding gives for bytes that are no character.
constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// Characters of an airport's code in the tables, and of the shorter one that
/// ends its name.
constexpr std::size_t kAirportCodeLength = 4;
constexpr std::size_t kShortAirportCodeLength = 3;

/// The refusal for a comma, a double quote, or a text that cannot be stored.
constexpr const char* kIllegalCharacter =
    "Illegal character is included. 登録できない文字が含まれています。";

/// True when the encoding can hold the text, as part of one line: a line break
/// and U+FFFD, which stands for damaged bytes, cannot be held, nor a character
/// that would come back as another one (other than its twin of the same look,
/// such as the two forms of the wave dash).
[[nodiscard]] bool canBeStored(const Encoding& encoding, std::string_view text);

/// True when the text can be the key of a record: it can be stored, and holds
/// no comma, no double quote and no control character.
[[nodiscard]] bool canBeKey(const Encoding& encoding, std::string_view text);

/// The bytes with which a file in the encoding may begin and that are no part
/// of its first line; empty where the encoding has none.
[[nodiscard]] std::string_view byteOrderMarkOf(const Encoding& encoding);

/// The field (0-based) of a table's line, or nothing when the line has fewer:
/// fields lie between bare commas, without quoting.
[[nodiscard]] std::optional<std::string_view> fieldAt(std::string_view line, std::size_t index);

/// A text that is looked for in the fields of a table, as UTF-8. It is compared
/// as characters: byte for byte where all is ASCII, decoded otherwise. A text
/// with U+FFFD in it, which stands for bytes that are no character, equals and
/// is contained in nothing. The encoding must outlive the key.
class Key {
 public:
  Key(const Encoding& encoding, std::string_view text);

  /// Each takes the bytes of one field.
  [[nodiscard]] bool equals(std::string_view field) const;
  [[nodiscard]] bool isIn(std::string_view field) const;
  /// True when the field's last three characters, or all that it has, equal
  /// the key.
  [[nodiscard]] bool isEndOf(std::string_view field) const;

  /// Bytes that stand in every field that fits; empty when only decoding tells.
  [[nodiscard]] std::string_view scanBytes() const;
  /// The same for a field behind the first that equals the key, with the comma
  /// before it.
  [[nodiscard]] std::string laterFieldBytes() const;

 private:
  const Encoding& encoding_;
  std::string text_;
  bool ascii_;
  bool damaged_;
};

/// As Key, but the case of letters is ignored, full-width and accented ones
/// included.
class LowerCaseKey {
 public:
  LowerCaseKey(const Encoding& encoding, std::string_view text);

  [[nodiscard]] bool isIn(std::string_view field) const;

 private:
  const Encoding& encoding_;
  std::string text_;
  bool damaged_;
};

}  // namespace vel
