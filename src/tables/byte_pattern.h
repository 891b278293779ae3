#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace vel {

/// Bytes that are searched for in large blocks, many positions at a time.
class BytePattern {
 public:
  /// Bytes behind the searched range that find() may read, but never uses.
  static constexpr std::size_t kSlack = 64;

  /// `tested` are the offsets of the bytes by which places are told apart
  /// before they are compared in full; the rarer these bytes, the faster.
  BytePattern(std::string bytes, std::array<std::size_t, 3> tested);

  /// The first place in [begin, end) where the bytes stand, or `end`. kSlack
  /// bytes behind `end` must be readable.
  [[nodiscard]] const char* find(const char* begin, const char* end) const;

 private:
  std::string bytes_;
  std::array<std::size_t, 3> tested_;
};

}  // namespace vel
