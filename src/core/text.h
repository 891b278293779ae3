#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/result.h"

namespace vel {

namespace platform {
class Transcoder;
}

/// The byte encoding of tables, settings and logs: Windows code page 932
/// unless the user chose another one whose comma, quote and line end are
/// ASCII. Copies share the platform's converter; one thread uses it.
class Encoding {
 public:
  /// Windows code page 932, where the platform is known to have it; textEncoding
  /// is for the rest.
  static Encoding codePage932();

  /// The encoding of that name ("UTF-8", "windows-1252"), or an error when the
  /// platform does not know it or its comma, quote or line end are not ASCII.
  /// "Shift_JIS" and "windows-31J" are names of code page 932.
  static Result<Encoding> named(const std::string& name);

  /// Bytes to UTF-8. Bytes that are no character give U+FFFD each. The five that
  /// code page 932 leaves undefined have the characters that Windows gives them:
  /// U+0080, and U+F8F0 to U+F8F3 for A0, FD, FE and FF.
  [[nodiscard]] std::string decode(std::string_view bytes) const;

  /// UTF-8 to bytes, or nothing when the encoding cannot hold the text. A wave
  /// dash (U+301C) and its like are held as the twin that Windows types.
  [[nodiscard]] std::optional<std::string> encode(std::string_view utf8) const;

  [[nodiscard]] const std::string& name() const { return name_; }
  /// True under each of its names.
  [[nodiscard]] bool isCodePage932() const;

 private:
  Encoding(std::string name, std::shared_ptr<platform::Transcoder> transcoder);

  std::string name_;
  std::shared_ptr<platform::Transcoder> transcoder_;
};

/// The encoding of that name; where it is not usable, code page 932. An Error
/// with a message for the user where the platform has no converter for that
/// either.
[[nodiscard]] Result<Encoding> textEncoding(const std::string& name);

/// One character of a UTF-8 text.
struct Character {
  char32_t code = 0;     ///< U+FFFD for an ill-formed byte
  std::size_t size = 1;  ///< in bytes
  bool wellFormed = true;
};

/// The character that begins the text, which is not empty, by the strict rules
/// of UTF-8: no overlong form, no surrogate, nothing beyond U+10FFFF. A byte
/// that begins none is one ill-formed character.
[[nodiscard]] Character firstCharacter(std::string_view text);

/// Adds the character in UTF-8.
void appendCharacter(std::string& text, char32_t code);

/// The value of a hexadecimal digit in either case, or nothing.
[[nodiscard]] std::optional<unsigned> hexDigit(char digit);

/// The hexadecimal digits in capitals, each at the place of its value.
inline constexpr std::string_view kHexDigits = "0123456789ABCDEF";

/// True when every byte is ASCII.
[[nodiscard]] bool isAscii(std::string_view bytes);

/// The helpers below work on UTF-8 text and count characters (code points).
/// Each ill-formed byte counts as one character.

[[nodiscard]] std::size_t length(std::string_view text);
/// The first `count` characters, or all.
[[nodiscard]] std::string_view Left(std::string_view text, std::size_t count);
/// From the 1-based position to the end; empty when past the end.
[[nodiscard]] std::string_view Mid(std::string_view text, std::size_t position);
/// At most `count` characters from the 1-based position.
[[nodiscard]] std::string_view Mid(std::string_view text, std::size_t position, std::size_t count);
/// The last `count` characters, or all.
[[nodiscard]] std::string_view Right(std::string_view text, std::size_t count);
/// Without the blanks (0x20 only) on both sides.
[[nodiscard]] std::string_view Trim(std::string_view text);
/// Lower case of every letter that has one, full-width and accented included.
[[nodiscard]] std::string toLower(std::string_view text);
/// Upper case of every letter that has one.
[[nodiscard]] std::string toUpper(std::string_view text);

/// The pieces between the separators; an empty text gives one empty piece.
[[nodiscard]] std::vector<std::string_view> split(std::string_view text, char separator);

/// True when the text holds a comma or a double quote: the two characters that
/// no table field can hold.
[[nodiscard]] bool hasIllegalCharacter(std::string_view text);

}  // namespace vel
