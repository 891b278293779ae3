#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vel {

/// What tells a pattern apart: two of its pairs of neighbouring bytes, one
/// behind the other by a byte. Wherever the pattern stands, one of both is met
/// by reading only the pairs at even distances from the start of the search.
struct ByteProbe {
  std::uint16_t odd = 0;      ///< the pair at `offset` within the pattern
  std::uint16_t even = 0;     ///< the pair a byte further on
  std::ptrdiff_t oddAt = 0;   ///< 1 where the odd pair is read a byte further on
  std::ptrdiff_t offset = 0;  ///< of the odd pair within the pattern
};

/// Looks at kSearchStride bytes at a time, from `place` up to `end`, and
/// returns the first place with hits, or one that is not before `end`. Bit n of
/// `hits` is set where the pattern may stand, n bytes behind
/// place - offset - 1. Reads up to kSearchStride bytes behind `end`.
using ByteSearcher = const char* (*)(const char* place, const char* end, const ByteProbe& probe,
                                     std::uint64_t& hits);

constexpr std::size_t kSearchStride = 64;

/// The searchers that this processor can run, the fastest first. All find the
/// same.
[[nodiscard]] const std::vector<ByteSearcher>& byteSearchers();

}  // namespace vel
