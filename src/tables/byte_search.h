#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vel {

/// Places that are looked at together, and how many such strides at most in one
/// go.
constexpr std::size_t kSearchStride = 128;
constexpr std::size_t kMostStrides = 128;

/// What a pattern of two or more bytes is looked for by: two or three bytes that
/// follow one another in it, then one of its others, then its head.
struct ByteProbe {
  static constexpr std::size_t kShortest = 2;
  static constexpr std::size_t kLongest = 3;
  /// In the pattern the bytes end below this offset.
  static constexpr std::size_t kReach = 32;

  std::array<char, kLongest> bytes{};
  std::size_t size = kShortest;  ///< of `bytes`, how many are used
  std::size_t at = 0;            ///< their offset within the pattern; 0 for kShortest
  char other = 0;                ///< a byte of the pattern, outside of `bytes` if it has one
  std::size_t otherAt = 0;       ///< its offset
  std::uint64_t head = 0;        ///< the first bytes of the pattern, at most eight
  std::uint64_t headMask = 0;    ///< set where `head` has bytes
};

/// One way of searching. Each call may read a stride and ByteProbe::kReach bytes
/// behind the last place that it looks at.
struct ByteSearcher {
  /// Some places of a stride: bit n stands for the place n bytes behind the
  /// first.
  using Places = std::uint64_t;
  static constexpr std::size_t kPlaces = 64;

  /// How many strides hold some bytes of the probe, and how many of them all.
  struct Strides {
    std::size_t some = 0;
    std::size_t all = 0;
  };

  /// Looks at so many strides, kMostStrides at most, from `place` on. Writes
  /// the numbers of those that hold all bytes of the probe, in their order.
  /// `found` has room for one number more than strides.
  Strides (*findStrides)(const char* place, std::size_t strides, const ByteProbe& probe,
                         std::uint8_t* found);

  /// At which of the kPlaces places from `place` on the probe's bytes stand.
  Places (*findPlaces)(const char* place, const ByteProbe& probe);
};

/// The searchers that this processor can run, the fastest first. All find the
/// same.
[[nodiscard]] const std::vector<ByteSearcher>& byteSearchers();

}  // namespace vel
