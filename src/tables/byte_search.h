#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vel {

constexpr std::size_t kSearchStride = 64;
constexpr std::size_t kSearchReach = 32;

/// What a pattern of two or more bytes is looked for by: some bytes that follow
/// one another in it, then its head.
struct ByteProbe {
  static constexpr std::size_t kShortest = 2;
  static constexpr std::size_t kLongest = 5;

  std::array<char, kLongest> bytes{};
  std::size_t size = kShortest;  ///< of `bytes`, how many are used
  std::size_t at = 0;            ///< their offset within the pattern; they end below kSearchReach
  std::uint64_t head = 0;        ///< the first bytes of the pattern, at most eight
  std::uint64_t headMask = 0;    ///< set where `head` has bytes
};

/// Looks at kSearchStride places at a time, from `place` up to `end`, and
/// returns the first with hits, or one that is not before `end`. Bit n of
/// `hits` is set where the head of the pattern stands n bytes behind the place.
/// Adds to `falseHits` where only bytes of the probe stood. Reads up to
/// kSearchStride + kSearchReach bytes behind `end`.
using ByteSearcher = const char* (*)(const char* place, const char* end, const ByteProbe& probe,
                                     std::uint64_t& hits, std::size_t& falseHits);

/// The searchers that this processor can run, the fastest first. All find the
/// same.
[[nodiscard]] const std::vector<ByteSearcher>& byteSearchers();

}  // namespace vel
