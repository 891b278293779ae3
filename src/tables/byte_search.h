#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vel {

/// What tells a pattern apart: two of its pairs of neighbouring bytes, one
/// behind the other by a byte. Wherever the pattern stands, one of both is met
/// by reading only the pairs at even distances from the start of the search.
struct ByteProbe {
  std::uint16_t odd = 0;       ///< the pair at `offset` within the pattern
  std::uint16_t even = 0;      ///< the pair a byte further on
  std::uint16_t oddNext = 0;   ///< what follows `odd` in the pattern
  std::uint16_t evenNext = 0;  ///< what follows `even` in the pattern
  std::uint16_t oddMask = 0;   ///< set where `oddNext` has bytes
  std::uint16_t evenMask = 0;  ///< set where `evenNext` has bytes
  bool isWide = false;         ///< what follows is tested too: slower, but seldom wrong
  std::ptrdiff_t oddAt = 0;    ///< 1 where the odd pair is read a byte further on
  std::ptrdiff_t offset = 0;   ///< of the odd pair within the pattern
  std::uint64_t head = 0;      ///< the first bytes of the pattern, at most eight
  std::uint64_t headMask = 0;  ///< set where `head` has bytes
};

constexpr std::size_t kSearchStride = 64;

/// One way to search.
struct ByteSearcher {
  /// Looks at kSearchStride bytes at a time, from `place` up to `end`, and
  /// returns the first place with hits, or one that is not before `end`. Bit n
  /// of `hits` is set where the head of the pattern stands, n bytes behind
  /// place - offset - 1. Adds to `falseHits` where only the probe was met.
  /// Reads up to kSearchStride + 8 bytes before `place` and behind `end`.
  const char* (*search)(const char* place, const char* end, const ByteProbe& probe,
                        std::uint64_t& hits, std::size_t& falseHits);
  /// Heeds ByteProbe::isWide.
  bool canBeWide;
};

/// The searchers that this processor can run, the fastest first. All find the
/// same.
[[nodiscard]] const std::vector<ByteSearcher>& byteSearchers();

}  // namespace vel
