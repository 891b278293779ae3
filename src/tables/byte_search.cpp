#include "tables/byte_search.h"

#include <bit>
#include <cstring>

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
// the pattern.
struct ThreeBytes {
  explicit ThreeBytes(const ByteProbe& probe)
      : first(probe.bytes.front()),
        middle(probe.bytes[probe.size / 2]),
        last(probe.bytes[probe.size - 1]),
        firstAt(probe.at),
        middleAt(probe.at + probe.size / 2),
        lastAt(probe.at + probe.size - 1) {}

  char first, middle, last;
  std::size_t firstAt, middleAt, lastAt;
};

const char* searchBytes(const char* place, const char* end, const ByteProbe& probe,
                        std::uint64_t& hits, std::size_t& falseHits) {
  const ThreeBytes three(probe);
  for (; place < end; place += kSearchStride) {
    std::uint64_t found = 0;
    for (std::size_t i = 0; i < kSearchStride; ++i) {
      const bool all = place[three.firstAt + i] == three.first &&
                       place[three.middleAt + i] == three.middle &&
                       place[three.lastAt + i] == three.last;
      found |= std::uint64_t{all} << i;
    }
    hits = withHead(place, probe, found, falseHits);
    if (hits != 0) return place;
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
      for (std::size_t i = 0; i < kUnasked; i += kWidth) any = _mm_or_si128(any, all(place + i));
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
      __m256i any = _mm256_setzero_si256();
      for (std::size_t i = 0; i < kUnasked; i += kWidth) {
        const __m256i firstTwo = _mm256_and_si256(isAtAvx2(place + three.firstAt + i, first),
                                                  isAtAvx2(place + three.middleAt + i, middle));
        any = _mm256_or_si256(any,
                              _mm256_and_si256(firstTwo, isAtAvx2(place + three.lastAt + i, last)));
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

constexpr std::size_t kUnasked512 = 2 * kUnasked;

// a | (b ^ c), in one instruction.
constexpr int kOrDifference = 0xF6;

struct BytesAvx512 {
  ThreeBytes three;
  __m512i first, middle, last;
};

[[gnu::target("avx512bw")]] inline BytesAvx512 bytesOf(const ByteProbe& probe) {
  const ThreeBytes three(probe);
  return {three, _mm512_set1_epi8(three.first), _mm512_set1_epi8(three.middle),
          _mm512_set1_epi8(three.last)};
}

[[gnu::target("avx512bw")]] inline std::uint64_t placesAmong64(const char* place,
                                                               const BytesAvx512& bytes) {
  const ThreeBytes& three = bytes.three;
  const __mmask64 first =
      _mm512_cmpeq_epi8_mask(_mm512_loadu_si512(place + three.firstAt), bytes.first);
  const __mmask64 middle =
      _mm512_mask_cmpeq_epi8_mask(first, _mm512_loadu_si512(place + three.middleAt), bytes.middle);
  return _mm512_mask_cmpeq_epi8_mask(middle, _mm512_loadu_si512(place + three.lastAt), bytes.last);
}

// False where none of the next kUnasked512 places can be a hit.
[[gnu::target("avx512bw")]] inline bool maybeAhead(const char* place, const BytesAvx512& bytes) {
  const ThreeBytes& three = bytes.three;
  __m512i smallest = _mm512_set1_epi8(-1);  // zero where all three stand
  for (std::size_t i = 0; i < kUnasked512; i += kSearchStride, place += kSearchStride) {
    __m512i wrong = _mm512_xor_si512(_mm512_loadu_si512(place + three.firstAt), bytes.first);
    wrong = _mm512_ternarylogic_epi32(wrong, _mm512_loadu_si512(place + three.middleAt),
                                      bytes.middle, kOrDifference);
    wrong = _mm512_ternarylogic_epi32(wrong, _mm512_loadu_si512(place + three.lastAt), bytes.last,
                                      kOrDifference);
    smallest = _mm512_min_epu8(smallest, wrong);
  }
  return _mm512_testn_epi8_mask(smallest, smallest) != 0;
}

// The same for a probe of four or more bytes: comparing 16-bit lanes, two reads
// tell them apart. Where the probe stands at an even distance from the place,
// the lanes hold its words from the second byte on; at an odd one, those from
// the first.
struct WordsAvx512 {
  static constexpr std::size_t kShortest = 4;

  std::size_t leftAt, rightAt;
  __m512i evenLeft, evenRight, oddLeft, oddRight;
};

// Two of the probe's bytes, in every lane.
[[gnu::target("avx512bw")]] inline __m512i wordAt(const ByteProbe& probe, std::size_t index) {
  std::int16_t word;
  std::memcpy(&word, &probe.bytes[index], sizeof word);
  return _mm512_set1_epi16(word);
}

[[gnu::target("avx512bw")]] inline WordsAvx512 wordsOf(const ByteProbe& probe) {
  const std::size_t last = probe.size - 2;
  return {probe.at + 1,        probe.at + last,  wordAt(probe, 1),
          wordAt(probe, last), wordAt(probe, 0), wordAt(probe, last - 1)};
}

// What is read is used twice: the compiler must not read it twice.
[[gnu::target("avx512bw")]] inline __m512i readOnce(const char* place) {
  __m512i bytes = _mm512_loadu_si512(place);
  asm("" : "+v"(bytes));
  return bytes;
}

[[gnu::target("avx512bw")]] inline bool maybeAhead(const char* place, const WordsAvx512& words) {
  __m512i smallest = _mm512_set1_epi16(-1);  // zero in the lanes of a hit
  for (std::size_t i = 0; i < kUnasked512; i += kSearchStride, place += kSearchStride) {
    const __m512i left = readOnce(place + words.leftAt);
    const __m512i right = readOnce(place + words.rightAt);
    const __m512i even = _mm512_ternarylogic_epi32(_mm512_xor_si512(left, words.evenLeft), right,
                                                   words.evenRight, kOrDifference);
    const __m512i odd = _mm512_ternarylogic_epi32(_mm512_xor_si512(left, words.oddLeft), right,
                                                  words.oddRight, kOrDifference);
    smallest = _mm512_min_epu16(smallest, _mm512_min_epu16(even, odd));
  }
  return _mm512_testn_epi16_mask(smallest, smallest) != 0;
}

template <typename Quick>
[[gnu::target("avx512bw")]] const char* searchWith(const Quick& quick, const char* place,
                                                   const char* end, const ByteProbe& probe,
                                                   std::uint64_t& hits, std::size_t& falseHits) {
  const BytesAvx512 bytes = bytesOf(probe);
  while (place < end) {
    while (place + kUnasked512 - kSearchStride < end && !maybeAhead(place, quick))
      place += kUnasked512;
    for (std::size_t asked = 0; asked < kUnasked512 && place < end; asked += kSearchStride) {
      const std::uint64_t found = placesAmong64(place, bytes);
      if (found != 0) hits = withHead(place, probe, found, falseHits);
      if (found != 0 && hits != 0) return place;
      place += kSearchStride;
    }
  }
  return place;
}

[[gnu::target("avx512bw")]] const char* searchAvx512(const char* place, const char* end,
                                                     const ByteProbe& probe, std::uint64_t& hits,
                                                     std::size_t& falseHits) {
  if (probe.size < WordsAvx512::kShortest) {
    return searchWith(bytesOf(probe), place, end, probe, hits, falseHits);
  }
  return searchWith(wordsOf(probe), place, end, probe, hits, falseHits);
}

#endif

std::vector<ByteSearcher> findSearchers() {
  std::vector<ByteSearcher> searchers;
#if defined(VEL_WIDE_SEARCH)
  if (__builtin_cpu_supports("avx512bw") != 0) searchers.push_back(searchAvx512);
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
