#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vel {

/// What a pattern is looked for by: two of its bytes, then its head.
struct ByteProbe {
  char first = 0;
  char second = 0;
  std::size_t firstAt = 0;     ///< offset within the pattern, below kSearchReach
  std::size_t secondAt = 0;    ///< offset within the pattern, below kSearchReach
  std::uint64_t head = 0;      ///< the first bytes of the pattern, at most eight
  std::uint64_t headMask = 0;  ///< set where `head` has bytes
};

constexpr std::size_t kSearchStride = 64;
constexpr std::size_t kSearchReach = 32;

/// Looks at kSearchStride places at a time, from `place` up to `end`, and
/// returns the first with hits, or one that is not before `end`. Bit n of
/// `hits` is set where the head of the pattern stands n bytes behind the place.
/// Adds to `falseHits` where only the two bytes stood. Reads up to
/// kSearchStride + kSearchReach bytes behind `end`.
using ByteSearcher = const char* (*)(const char* place, const char* end, const ByteProbe& probe,
                                     std::uint64_t& hits, std::size_t& falseHits);

/// The searchers that this processor can run, the fastest first. All find the
/// same.
[[nodiscard]] const std::vector<ByteSearcher>& byteSearchers();

}  // namespace vel
