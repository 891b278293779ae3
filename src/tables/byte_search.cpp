#include "tables/byte_search.h"

#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace vel {
namespace {

constexpr std::uint64_t kEvenBits = 0x5555555555555555U;

// Leaves the hits at which the head of the pattern stands.
inline std::uint64_t withHead(const char* place, const ByteProbe& probe, std::uint64_t hits,
                              std::size_t& falseHits) {
  const char* const first = place - probe.offset - 1;
  std::uint64_t kept = 0;
  for (; hits != 0; hits &= hits - 1) {
    std::uint64_t bytes;
    std::memcpy(&bytes, first + std::countr_zero(hits), sizeof bytes);
    if (((bytes ^ probe.head) & probe.headMask) == 0) {
      kept |= hits & -hits;
    } else {
      ++falseHits;
    }
  }
  return kept;
}

#if defined(__SSE2__)

std::uint64_t bitsOf(__m128i equal, int shift) {
  return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(equal))) << shift;
}

const char* searchSse2(const char* place, const char* end, const ByteProbe& probe,
                       std::uint64_t& hits, std::size_t& falseHits) {
  const __m128i odd = _mm_set1_epi16(static_cast<short>(probe.odd));
  const __m128i even = _mm_set1_epi16(static_cast<short>(probe.even));
  const auto equal = [](const char* at, __m128i pair) {
    return _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)), pair);
  };
  for (; place < end; place += kSearchStride) {
    const char* const oddPlace = place + probe.oddAt;
    const __m128i odd0 = equal(oddPlace, odd);
    const __m128i odd1 = equal(oddPlace + 16, odd);
    const __m128i odd2 = equal(oddPlace + 32, odd);
    const __m128i odd3 = equal(oddPlace + 48, odd);
    const __m128i even0 = equal(place, even);
    const __m128i even1 = equal(place + 16, even);
    const __m128i even2 = equal(place + 32, even);
    const __m128i even3 = equal(place + 48, even);
    // Nearly always there is none: one test tells.
    const __m128i any =
        _mm_or_si128(_mm_or_si128(_mm_or_si128(odd0, odd1), _mm_or_si128(odd2, odd3)),
                     _mm_or_si128(_mm_or_si128(even0, even1), _mm_or_si128(even2, even3)));
    if (_mm_movemask_epi8(any) == 0) continue;
    const std::uint64_t oddBits =
        bitsOf(odd0, 0) | bitsOf(odd1, 16) | bitsOf(odd2, 32) | bitsOf(odd3, 48);
    const std::uint64_t evenBits =
        bitsOf(even0, 0) | bitsOf(even1, 16) | bitsOf(even2, 32) | bitsOf(even3, 48);
    hits = withHead(place, probe, (oddBits & kEvenBits) << 1 | (evenBits & kEvenBits), falseHits);
    if (hits != 0) return place;
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
  const __m256i odd = _mm256_set1_epi16(static_cast<short>(probe.odd));
  const __m256i even = _mm256_set1_epi16(static_cast<short>(probe.even));
  const std::ptrdiff_t oddAt = probe.oddAt;
  // Four strides at once, until one of them has hits.
  for (; place + 3 * kSearchStride < end; place += 4 * kSearchStride) {
    __m256i any = _mm256_setzero_si256();
    for (std::size_t i = 0; i < 4 * kSearchStride; i += sizeof(__m256i)) {
      const auto* const at = reinterpret_cast<const __m256i*>(place + i);
      const auto* const oddPlace = reinterpret_cast<const __m256i*>(place + i + oddAt);
      const __m256i odds = _mm256_cmpeq_epi16(_mm256_loadu_si256(oddPlace), odd);
      const __m256i evens = _mm256_cmpeq_epi16(_mm256_loadu_si256(at), even);
      any = _mm256_or_si256(any, _mm256_or_si256(odds, evens));
    }
    if (_mm256_movemask_epi8(any) != 0) break;
  }
  for (; place < end; place += kSearchStride) {
    std::uint64_t oddBits = 0;
    std::uint64_t evenBits = 0;
    for (std::size_t i = 0; i < kSearchStride; i += sizeof(__m256i)) {
      const auto* const at = reinterpret_cast<const __m256i*>(place + i);
      const auto* const oddPlace = reinterpret_cast<const __m256i*>(place + i + oddAt);
      const __m256i odds = _mm256_cmpeq_epi16(_mm256_loadu_si256(oddPlace), odd);
      const __m256i evens = _mm256_cmpeq_epi16(_mm256_loadu_si256(at), even);
      oddBits |= std::uint64_t{static_cast<unsigned>(_mm256_movemask_epi8(odds))} << i;
      evenBits |= std::uint64_t{static_cast<unsigned>(_mm256_movemask_epi8(evens))} << i;
    }
    if ((oddBits | evenBits) == 0) continue;
    hits = withHead(place, probe, (oddBits & kEvenBits) << 1 | (evenBits & kEvenBits), falseHits);
    if (hits != 0) return place;
  }
  return place;
}

[[gnu::target("avx512bw,bmi2")]] const char* searchAvx512(const char* place, const char* end,
                                                          const ByteProbe& probe,
                                                          std::uint64_t& hits,
                                                          std::size_t& falseHits) {
  const __m512i odd = _mm512_set1_epi16(static_cast<short>(probe.odd));
  const __m512i even = _mm512_set1_epi16(static_cast<short>(probe.even));
  const __m512i oddNext = _mm512_set1_epi16(static_cast<short>(probe.oddNext));
  const __m512i evenNext = _mm512_set1_epi16(static_cast<short>(probe.evenNext));
  const __m512i oddMask = _mm512_set1_epi16(static_cast<short>(probe.oddMask));
  const __m512i evenMask = _mm512_set1_epi16(static_cast<short>(probe.evenMask));
  const std::ptrdiff_t oddAt = probe.oddAt;
  // Each of these takes one instruction: (a ^ b) & c and (a ^ b) | c.
  constexpr int kDifferenceAnd = 0x28;
  constexpr int kDifferenceOr = 0xBE;
  constexpr std::size_t kPair = 2;

  // Four strides at once, until one of them has hits: the smallest difference
  // from both probes is zero then.
  for (; place + 3 * kSearchStride < end; place += 4 * kSearchStride) {
    __m512i smallest = _mm512_set1_epi16(-1);
    if (probe.isWide) {
      for (std::size_t i = 0; i < 4 * kSearchStride; i += kSearchStride) {
        const __m512i pairs = _mm512_loadu_si512(place + i);
        const __m512i next = _mm512_loadu_si512(place + i + kPair);
        const __m512i nextOdd = _mm512_ternarylogic_epi32(next, oddNext, oddMask, kDifferenceAnd);
        const __m512i nextEven =
            _mm512_ternarylogic_epi32(next, evenNext, evenMask, kDifferenceAnd);
        smallest = _mm512_min_epu16(
            smallest,
            _mm512_min_epu16(_mm512_ternarylogic_epi32(pairs, odd, nextOdd, kDifferenceOr),
                             _mm512_ternarylogic_epi32(pairs, even, nextEven, kDifferenceOr)));
      }
    } else {
      for (std::size_t i = 0; i < 4 * kSearchStride; i += kSearchStride) {
        const __m512i fromOdd = _mm512_xor_si512(_mm512_loadu_si512(place + i + oddAt), odd);
        const __m512i fromEven = _mm512_xor_si512(_mm512_loadu_si512(place + i), even);
        smallest = _mm512_min_epu16(smallest, _mm512_min_epu16(fromOdd, fromEven));
      }
    }
    if (_mm512_testn_epi16_mask(smallest, smallest) != 0) break;
  }
  for (; place < end; place += kSearchStride) {
    __mmask32 oddLanes = _mm512_cmpeq_epi16_mask(_mm512_loadu_si512(place + oddAt), odd);
    __mmask32 evenLanes = _mm512_cmpeq_epi16_mask(_mm512_loadu_si512(place), even);
    if (probe.isWide) {
      const __m512i next = _mm512_loadu_si512(place + kPair);
      oddLanes = _mm512_mask_testn_epi16_mask(oddLanes, _mm512_xor_si512(next, oddNext), oddMask);
      evenLanes =
          _mm512_mask_testn_epi16_mask(evenLanes, _mm512_xor_si512(next, evenNext), evenMask);
    }
    if ((oddLanes | evenLanes) == 0) continue;
    // A lane's one bit becomes the two of its bytes.
    hits =
        withHead(place, probe,
                 _pdep_u64(oddLanes, kEvenBits << 1) | _pdep_u64(evenLanes, kEvenBits), falseHits);
    if (hits != 0) return place;
  }
  return place;
}

#endif

const char* searchBytes(const char* place, const char* end, const ByteProbe& probe,
                        std::uint64_t& hits, std::size_t& falseHits) {
  const auto pairAt = [](const char* at) {
    std::uint16_t pair;
    std::memcpy(&pair, at, sizeof pair);
    return pair;
  };
  for (; place < end; place += kSearchStride) {
    hits = 0;
    for (std::size_t i = 0; i < kSearchStride; i += 2) {
      hits |= std::uint64_t{pairAt(place + probe.oddAt + i) == probe.odd} << (i + 1);
      hits |= std::uint64_t{pairAt(place + i) == probe.even} << i;
    }
    if (hits != 0) hits = withHead(place, probe, hits, falseHits);
    if (hits != 0) return place;
  }
  return place;
}

std::vector<ByteSearcher> findSearchers() {
  std::vector<ByteSearcher> searchers;
#if defined(VEL_WIDE_SEARCH)
  if (__builtin_cpu_supports("avx512bw") != 0 && __builtin_cpu_supports("bmi2") != 0) {
    searchers.push_back({searchAvx512, true});
  }
  if (__builtin_cpu_supports("avx2") != 0) searchers.push_back({searchAvx2, false});
#endif
#if defined(__SSE2__)
  searchers.push_back({searchSse2, false});
#endif
  searchers.push_back({searchBytes, false});
  return searchers;
}

}  // namespace

const std::vector<ByteSearcher>& byteSearchers() {
  static const std::vector<ByteSearcher> searchers = findSearchers();
  return searchers;
}

}  // namespace vel
