#pragma once

#include <string>
#include <string_view>

namespace vel {

/// Encodes Shift_JIS bytes for the form that the KML conversion takes; the
/// conversion depends on the exact rule. A lead byte (0x81 to 0x9F, 0xE0 to
/// 0xEF) and the byte after it become "%XX" each, whatever the second is; a
/// blank becomes "+"; digits, letters and `@ * - . _` stay; every other byte
/// becomes "%XX", in capitals. A second byte below 0x10, which only malformed
/// text has, replaces just the first digit of the code before it: 0x82 0x0A
/// gives "%82%A2". At most three times as long as the bytes.
[[nodiscard]] std::string encodeForm(std::string_view bytes);

}  // namespace vel
