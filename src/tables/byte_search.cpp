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

const char* searchBytes(const char* place, const char* end, const ByteProbe& probe,
                        std::uint64_t& hits, std::size_t& falseHits) {
  for (; place < end; place += kSearchStride) {
    std::uint64_t found = 0;
    for (std::size_t i = 0; i < kSearchStride; ++i) {
      const bool both =
          place[probe.firstAt + i] == probe.first && place[probe.secondAt + i] == probe.second;
      found |= std::uint64_t{both} << i;
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
  const __m128i first = _mm_set1_epi8(probe.first);
  const __m128i second = _mm_set1_epi8(probe.second);
  const std::size_t firstAt = probe.firstAt;
  const std::size_t secondAt = probe.secondAt;
  const auto both = [&](const char* at) {
    const auto* const firstPlace = reinterpret_cast<const __m128i*>(at + firstAt);
    const auto* const secondPlace = reinterpret_cast<const __m128i*>(at + secondAt);
    return _mm_and_si128(_mm_cmpeq_epi8(_mm_loadu_si128(firstPlace), first),
                         _mm_cmpeq_epi8(_mm_loadu_si128(secondPlace), second));
  };
  while (place < end) {
    for (; place + kUnasked - kSearchStride < end; place += kUnasked) {
      __m128i any = _mm_setzero_si128();
      for (std::size_t i = 0; i < kUnasked; i += kWidth) any = _mm_or_si128(any, both(place + i));
      if (_mm_movemask_epi8(any) != 0) break;
    }
    for (std::size_t asked = 0; asked < kUnasked && place < end; asked += kSearchStride) {
      std::uint64_t found = 0;
      for (std::size_t i = 0; i < kSearchStride; i += kWidth) {
        const auto bits = static_cast<unsigned>(_mm_movemask_epi8(both(place + i)));
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

[[gnu::target("avx2")]] const char* searchAvx2(const char* place, const char* end,
                                               const ByteProbe& probe, std::uint64_t& hits,
                                               std::size_t& falseHits) {
  constexpr std::size_t kWidth = sizeof(__m256i);
  const __m256i first = _mm256_set1_epi8(probe.first);
  const __m256i second = _mm256_set1_epi8(probe.second);
  const std::size_t firstAt = probe.firstAt;
  const std::size_t secondAt = probe.secondAt;
  while (place < end) {
    for (; place + kUnasked - kSearchStride < end; place += kUnasked) {
      __m256i any = _mm256_setzero_si256();
      for (std::size_t i = 0; i < kUnasked; i += kWidth) {
        const auto* const firstPlace = reinterpret_cast<const __m256i*>(place + firstAt + i);
        const auto* const secondPlace = reinterpret_cast<const __m256i*>(place + secondAt + i);
        const __m256i both =
            _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(firstPlace), first),
                             _mm256_cmpeq_epi8(_mm256_loadu_si256(secondPlace), second));
        any = _mm256_or_si256(any, both);
      }
      if (_mm256_movemask_epi8(any) != 0) break;
    }
    for (std::size_t asked = 0; asked < kUnasked && place < end; asked += kSearchStride) {
      std::uint64_t found = 0;
      for (std::size_t i = 0; i < kSearchStride; i += kWidth) {
        const auto* const firstPlace = reinterpret_cast<const __m256i*>(place + firstAt + i);
        const auto* const secondPlace = reinterpret_cast<const __m256i*>(place + secondAt + i);
        const __m256i both =
            _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(firstPlace), first),
                             _mm256_cmpeq_epi8(_mm256_loadu_si256(secondPlace), second));
        found |= std::uint64_t{static_cast<unsigned>(_mm256_movemask_epi8(both))} << i;
      }
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
  const __m512i first = _mm512_set1_epi8(probe.first);
  const __m512i second = _mm512_set1_epi8(probe.second);
  const std::size_t firstAt = probe.firstAt;
  const std::size_t secondAt = probe.secondAt;
  // a | (b ^ c), in one instruction.
  constexpr int kOrDifference = 0xF6;
  while (place < end) {
    for (; place + kUnasked - kSearchStride < end; place += kUnasked) {
      // Zero where both bytes stand.
      __m512i smallest = _mm512_set1_epi8(-1);
      for (std::size_t i = 0; i < kUnasked; i += kSearchStride) {
        const __m512i fromFirst = _mm512_xor_si512(_mm512_loadu_si512(place + firstAt + i), first);
        const __m512i fromBoth = _mm512_ternarylogic_epi32(
            fromFirst, _mm512_loadu_si512(place + secondAt + i), second, kOrDifference);
        smallest = _mm512_min_epu8(smallest, fromBoth);
      }
      if (_mm512_testn_epi8_mask(smallest, smallest) != 0) break;
    }
    for (std::size_t asked = 0; asked < kUnasked && place < end; asked += kSearchStride) {
      const __mmask64 firsts = _mm512_cmpeq_epi8_mask(_mm512_loadu_si512(place + firstAt), first);
      const std::uint64_t found =
          _mm512_mask_cmpeq_epi8_mask(firsts, _mm512_loadu_si512(place + secondAt), second);
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
