#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace vel {

/// A line that is short enough ends, line end included, within so many bytes.
constexpr std::size_t kShortLine = 64;

/// A short line, and what stands where in it:
/// bit n of a mask is for its n-th byte, and none is set behind its end.
struct ShortLine {
  std::uint32_t at;      ///< where it begins
  std::uint32_t length;  ///< without its line end
  std::uint32_t next;    ///< where the one behind it begins
  std::uint64_t commas;
  std::uint64_t notAscii;
  std::uint64_t probe;  ///< where the byte that was asked for stands
};

/// So many bytes from the beginning of a ShortLine may be read: also those
/// behind its end are bytes of the text.
constexpr std::size_t kShortLineReach = 80;

/// Looks at the lines at the beginning of a text, up to the first one that is
/// not short or the end of `lines`; returns how many there are. Nearly all
/// lines of a list log are short. The last ones of a text may be left out.
[[nodiscard]] std::size_t shortLines(std::string_view text, char probe, std::span<ShortLine> lines);

}  // namespace vel
