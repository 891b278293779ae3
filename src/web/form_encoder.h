#pragma once

#include <string>
#include <string_view>

namespace vel {

/// Where the form is posted to, on the host of the KML conversion.
constexpr std::string_view kConversionPath = "/tools/qz2ge/";

/// Encodes Shift_JIS bytes for the form that the KML conversion takes, in
/// pieces of any size; the conversion depends on the exact rule. A lead byte
/// (0x81 to 0x9F, 0xE0 to 0xEF) and the byte after it become "%XX" each,
/// whatever the second is; a blank becomes "+"; digits, letters and
/// `@ * - . _` stay; every other byte becomes "%XX", in capitals. A second byte
/// below 0x10, which only malformed text has, replaces just the first digit of
/// the code before it: 0x82 0x0A gives "%82%A2". At most three times as long as
/// the bytes.
class FormEncoder {
 public:
  /// Adds the codes of these bytes to `encoded`, which takes the codes of all
  /// pieces, one after another.
  void add(std::string_view bytes, std::string& encoded);

 private:
  unsigned char lead_ = 0;  // the lead byte whose second byte is to come
};

/// The same of a whole text.
[[nodiscard]] std::string encodeForm(std::string_view bytes);

}  // namespace vel
