#include "tables/byte_search.h"

#include <bit>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace vel {
namespace {

// The loops below look at so many places before they ask whether there was any
// hit: nearly always there is none.
constexpr std::size_t kUnasked = 4 * kSearchStride;

// Leaves the hits at which the head of the pattern stands.
inline std::uint64_t withHead(const char* place, const ByteProbe& probe, std::uint64_t hits,
                              std::size_t& falseHits) {
  std::uint64_t kept = 0;
  for (; hits != 0; hits &= hits - 1) {
    std::uint64_t bytes;
    std::memcpy(&bytes, place + std::countr_zero(hits), sizeof bytes);
    if (((bytes ^ probe.head) & probe.headMask) == 0) {
      kept |= hits & -hits;
    } else {
      ++falseHits;
    }
  }
  return kept;
}

// The first, the middle and the last byte of a probe, with their offsets within
// the pattern. Two of them are looked for first: nearly always that is enough.
struct ThreeBytes {
  explicit ThreeBytes(const ByteProbe& probe)
      : first(probe.bytes.front()),
        middle(probe.bytes[middleOf(probe)]),
        last(probe.bytes[probe.size - 1]),
        firstAt(probe.at),
        middleAt(probe.at + middleOf(probe)),
        lastAt(probe.at + probe.size - 1) {}

  char first, middle, last;
  std::size_t firstAt, middleAt, lastAt;

 private:
  // Never the last one.
  static std::size_t middleOf(const ByteProbe& probe) { return (probe.size - 1) / 2; }
};

const char* findBytes(const char* begin, std::size_t size, const ByteProbe& probe) {
#if defined(__GLIBC__)
  return static_cast<const char*>(memmem(begin, size, probe.bytes.data(), probe.size));
#else
  const std::size_t at =
      std::string_view(begin, size).find(std::string_view(probe.bytes.data(), probe.size));
  return at == std::string_view::npos ? nullptr : begin + at;
#endif
}

// For processors without the instructions below.
const char* searchBytes(const char* place, const char* end, const ByteProbe& probe,
                        std::uint64_t& hits, std::size_t& falseHits) {
  while (place < end) {
    const char* const first =
        findBytes(place + probe.at, static_cast<std::size_t>(end - place) + probe.size - 1, probe);
    if (first == nullptr) return end;
    // The first hit and those of the same stride.
    place = first - probe.at;
    std::uint64_t found = 0;
    const char* const behind = first + kSearchStride + probe.size - 1;
    for (const char* hit = first; hit != nullptr;) {
      found |= std::uint64_t{1} << (hit - first);
      const char* const next = hit + 1;
      hit = findBytes(next, static_cast<std::size_t>(behind - next), probe);
    }
    hits = withHead(place, probe, found, falseHits);
    if (hits != 0) return place;
    place += kSearchStride;
  }
  return place;
}

#if defined(__SSE2__)

const char* searchSse2(const char* place, const char* end, const ByteProbe& probe,
                       std::uint64_t& hits, std::size_t& falseHits) {
  constexpr std::size_t kWidth = sizeof(__m128i);
  const ThreeBytes three(probe);
  const __m128i first = _mm_set1_epi8(three.first);
  const __m128i middle = _mm_set1_epi8(three.middle);
  const __m128i last = _mm_set1_epi8(three.last);
  const auto isAt = [](const char* at, __m128i byte) {
    return _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)), byte);
  };
  const auto all = [&](const char* at) {
    return _mm_and_si128(
        _mm_and_si128(isAt(at + three.firstAt, first), isAt(at + three.middleAt, middle)),
        isAt(at + three.lastAt, last));
  };
  while (place < end) {
    for (; place + kUnasked - kSearchStride < end; place += kUnasked) {
      __m128i any = _mm_setzero_si128();
      for (std::size_t i = 0; i < kUnasked; i += kWidth) {
        any = _mm_or_si128(any, _mm_and_si128(isAt(place + three.middleAt + i, middle),
                                              isAt(place + three.lastAt + i, last)));
      }
      if (_mm_movemask_epi8(any) != 0) break;
    }
    for (std::size_t asked = 0; asked < kUnasked && place < end; asked += kSearchStride) {
      std::uint64_t found = 0;
      for (std::size_t i = 0; i < kSearchStride; i += kWidth) {
        const auto bits = static_cast<unsigned>(_mm_movemask_epi8(all(place + i)));
        found |= std::uint64_t{bits} << i;
      }
      if (found != 0) hits = withHead(place, probe, found, falseHits);
      if (found != 0 && hits != 0) return place;
      place += kSearchStride;
    }
  }
  return place;
}

#endif

// Wider registers are used where the processor has them. Not on Windows, whose
// stack the compiler does not align for them.
#if defined(__x86_64__) && !defined(_WIN32)
#define VEL_WIDE_SEARCH 1

[[gnu::target("avx2")]] inline __m256i isAtAvx2(const char* at, __m256i byte) {
  return _mm256_cmpeq_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(at)), byte);
}

[[gnu::target("avx2")]] const char* searchAvx2(const char* place, const char* end,
                                               const ByteProbe& probe, std::uint64_t& hits,
                                               std::size_t& falseHits) {
  constexpr std::size_t kWidth = sizeof(__m256i);
  const ThreeBytes three(probe);
  const __m256i first = _mm256_set1_epi8(three.first);
  const __m256i middle = _mm256_set1_epi8(three.middle);
  const __m256i last = _mm256_set1_epi8(three.last);
  while (place < end) {
    for (; place + kUnasked - kSearchStride < end; place += kUnasked) {
      const char* const left = place + three.middleAt;
      const char* const right = place + three.lastAt;
      __m256i any = _mm256_setzero_si256();
      for (std::size_t i = 0; i < kUnasked; i += kWidth) {
        any = _mm256_or_si256(
            any, _mm256_and_si256(isAtAvx2(left + i, middle), isAtAvx2(right + i, last)));
      }
      if (_mm256_movemask_epi8(any) != 0) break;
    }
    for (std::size_t asked = 0; asked < kUnasked && place < end; asked += kSearchStride) {
      std::uint64_t found = 0;
      for (std::size_t i = 0; i < kSearchStride; i += kWidth) {
        const __m256i firstTwo = _mm256_and_si256(isAtAvx2(place + three.firstAt + i, first),
                                                  isAtAvx2(place + three.middleAt + i, middle));
        const __m256i all = _mm256_and_si256(firstTwo, isAtAvx2(place + three.lastAt + i, last));
        found |= std::uint64_t{static_cast<unsigned>(_mm256_movemask_epi8(all))} << i;
      }
      if (found != 0) hits = withHead(place, probe, found, falseHits);
      if (found != 0 && hits != 0) return place;
      place += kSearchStride;
    }
  }
  return place;
}

#endif

std::vector<ByteSearcher> findSearchers() {
  std::vector<ByteSearcher> searchers;
#if defined(VEL_WIDE_SEARCH)
  if (__builtin_cpu_supports("avx2") != 0) searchers.push_back(searchAvx2);
#endif
#if defined(__SSE2__)
  searchers.push_back(searchSse2);
#endif
  searchers.push_back(searchBytes);
  return searchers;
}

}  // namespace

const std::vector<ByteSearcher>& byteSearchers() {
  static const std::vector<ByteSearcher> searchers = findSearchers();
  return searchers;
}

}  // namespace vel
