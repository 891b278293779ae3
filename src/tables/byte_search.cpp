#include "tables/byte_search.h"

#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace vel {
namespace {

using Strides = ByteSearcher::Strides;

// A stride is looked through for the probe's bytes as words of two, each read
// once: at every second place for the first two of the bytes, and for the last
// two as well, which stand there where the probe begins one byte earlier. About
// one stride in ten has such a word; those are looked through once more for all
// bytes of the probe. The loops do not ask whether a stride has a hit, they only
// note it: a processor that guesses wrong loses more than a stride takes.

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
Strides stridesOfBytes(const char* place, std::size_t strides, const ByteProbe& probe,
                       std::uint8_t* found) {
  std::size_t count = 0;
  const char* const first = place + probe.at;
  const std::size_t size = strides * kSearchStride + probe.size - 1;
  for (std::size_t from = 0; from < strides * kSearchStride;) {
    const char* const hit = findBytes(first + from, size - from, probe);
    if (hit == nullptr) break;
    const std::size_t stride = static_cast<std::size_t>(hit - first) / kSearchStride;
    found[count++] = static_cast<std::uint8_t>(stride);
    from = (stride + 1) * kSearchStride;
  }
  return {count, count};
}

ByteSearcher::Places placesOfBytes(const char* place, const ByteProbe& probe) {
  ByteSearcher::Places places = 0;
  const char* const first = place + probe.at;
  const std::size_t size = ByteSearcher::kPlaces + probe.size - 1;
  for (std::size_t from = 0; from < ByteSearcher::kPlaces;) {
    const char* const hit = findBytes(first + from, size - from, probe);
    if (hit == nullptr) break;
    const auto at = static_cast<std::size_t>(hit - first);
    places |= ByteSearcher::Places{1} << at;
    from = at + 1;
  }
  return places;
}

#if defined(__SSE2__)

// Two bytes of a probe as they are read from memory.
short wordAt(const ByteProbe& probe, std::size_t at) {
  short word;
  std::memcpy(&word, probe.bytes.data() + at, sizeof word);
  return word;
}

__m128i load(const char* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }

// Notes the number of a stride that has hits.
inline void note(std::size_t stride, __m128i hits, std::uint8_t* found, std::size_t& count) {
  found[count] = static_cast<std::uint8_t>(stride);
  count += _mm_movemask_epi8(hits) != 0 ? 1 : 0;
}

Strides stridesOfTwoSse2(const char* place, std::size_t strides, const ByteProbe& probe,
                         std::uint8_t* found) {
  const __m128i first = _mm_set1_epi8(probe.bytes[0]);
  const __m128i second = _mm_set1_epi8(probe.bytes[1]);
  std::size_t count = 0;
  for (std::size_t stride = 0; stride < strides; ++stride, place += kSearchStride) {
    __m128i any = _mm_setzero_si128();
    for (std::size_t i = 0; i < kSearchStride; i += sizeof any) {
      any = _mm_or_si128(any, _mm_and_si128(_mm_cmpeq_epi8(load(place + i), first),
                                            _mm_cmpeq_epi8(load(place + i + 1), second)));
    }
    note(stride, any, found, count);
  }
  return {count, count};
}

// Keeps those of the strides that hold all bytes of the probe.
std::size_t keptSse2(const char* place, const ByteProbe& probe, std::uint8_t* found,
                     std::size_t count) {
  const __m128i first = _mm_set1_epi8(probe.bytes[0]);
  const __m128i second = _mm_set1_epi8(probe.bytes[1]);
  const __m128i third = _mm_set1_epi8(probe.bytes[2]);
  const __m128i other = _mm_set1_epi8(probe.other);
  std::size_t kept = 0;
  for (std::size_t n = 0; n < count; ++n) {
    const char* const begin = place + found[n] * kSearchStride;
    const char* const at = begin + probe.at;
    __m128i any = _mm_setzero_si128();
    for (std::size_t i = 0; i < kSearchStride; i += sizeof any) {
      const __m128i two = _mm_and_si128(_mm_cmpeq_epi8(load(at + i), first),
                                        _mm_cmpeq_epi8(load(at + i + 1), second));
      const __m128i more = _mm_and_si128(_mm_cmpeq_epi8(load(at + i + 2), third),
                                         _mm_cmpeq_epi8(load(begin + probe.otherAt + i), other));
      any = _mm_or_si128(any, _mm_and_si128(two, more));
    }
    note(found[n], any, found, kept);
  }
  return kept;
}

Strides stridesSse2(const char* place, std::size_t strides, const ByteProbe& probe,
                    std::uint8_t* found) {
  if (probe.size == ByteProbe::kShortest) return stridesOfTwoSse2(place, strides, probe, found);
  const __m128i first = _mm_set1_epi16(wordAt(probe, 0));
  const __m128i last = _mm_set1_epi16(wordAt(probe, 1));
  std::size_t count = 0;
  const char* at = place + probe.at + 1;
  for (std::size_t stride = 0; stride < strides; ++stride, at += kSearchStride) {
    __m128i any = _mm_setzero_si128();
    for (std::size_t i = 0; i < kSearchStride; i += sizeof any) {
      const __m128i words = load(at + i);
      any = _mm_or_si128(any,
                         _mm_or_si128(_mm_cmpeq_epi16(words, first), _mm_cmpeq_epi16(words, last)));
    }
    note(stride, any, found, count);
  }
  return {count, keptSse2(place, probe, found, count)};
}

ByteSearcher::Places placesSse2(const char* place, const ByteProbe& probe) {
  constexpr std::size_t kWidth = sizeof(__m128i);
  const std::size_t last = probe.size - 1;
  const std::size_t middle = last / 2;
  const char* const at = place + probe.at;
  ByteSearcher::Places places = 0;
  for (std::size_t i = 0; i < ByteSearcher::kPlaces; i += kWidth) {
    const auto isAt = [&](std::size_t byte) {
      return _mm_cmpeq_epi8(load(at + byte + i), _mm_set1_epi8(probe.bytes[byte]));
    };
    const __m128i all = _mm_and_si128(_mm_and_si128(isAt(0), isAt(middle)), isAt(last));
    places |= ByteSearcher::Places{static_cast<unsigned>(_mm_movemask_epi8(all))} << i;
  }
  return places;
}

#endif

// Wider registers are used where the processor has them. Not on Windows, whose
// stack the compiler does not align for them.
#if defined(__x86_64__) && !defined(_WIN32)
#define VEL_WIDE_SEARCH 1

// What was just read from a file lies in the second cache; asked for so far
// ahead, it is in the first one in time.
constexpr std::size_t kCacheLine = 64;
constexpr std::size_t kAhead = 1024;

[[gnu::target("avx2")]] inline __m256i loadAvx2(const char* at) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

[[gnu::target("avx2")]] inline void noteAvx2(std::size_t stride, __m256i hits, std::uint8_t* found,
                                             std::size_t& count) {
  found[count] = static_cast<std::uint8_t>(stride);
  count += _mm256_movemask_epi8(hits) != 0 ? 1 : 0;
}

[[gnu::target("avx2")]] Strides stridesOfTwoAvx2(const char* place, std::size_t strides,
                                                 const ByteProbe& probe, std::uint8_t* found) {
  const __m256i first = _mm256_set1_epi8(probe.bytes[0]);
  const __m256i second = _mm256_set1_epi8(probe.bytes[1]);
  std::size_t count = 0;
  for (std::size_t stride = 0; stride < strides; ++stride, place += kSearchStride) {
    __m256i any = _mm256_setzero_si256();
    for (std::size_t i = 0; i < kSearchStride; i += sizeof any) {
      any = _mm256_or_si256(any,
                            _mm256_and_si256(_mm256_cmpeq_epi8(loadAvx2(place + i), first),
                                             _mm256_cmpeq_epi8(loadAvx2(place + i + 1), second)));
    }
    noteAvx2(stride, any, found, count);
  }
  return {count, count};
}

[[gnu::target("avx2")]] std::size_t keptAvx2(const char* place, const ByteProbe& probe,
                                             std::uint8_t* found, std::size_t count) {
  const __m256i first = _mm256_set1_epi8(probe.bytes[0]);
  const __m256i second = _mm256_set1_epi8(probe.bytes[1]);
  const __m256i third = _mm256_set1_epi8(probe.bytes[2]);
  const __m256i other = _mm256_set1_epi8(probe.other);
  std::size_t kept = 0;
  for (std::size_t n = 0; n < count; ++n) {
    const char* const begin = place + found[n] * kSearchStride;
    const char* const at = begin + probe.at;
    const char* const otherAt = begin + probe.otherAt;
    __m256i any = _mm256_setzero_si256();
    for (std::size_t i = 0; i < kSearchStride; i += sizeof any) {
      const __m256i two = _mm256_and_si256(_mm256_cmpeq_epi8(loadAvx2(at + i), first),
                                           _mm256_cmpeq_epi8(loadAvx2(at + i + 1), second));
      const __m256i more = _mm256_and_si256(_mm256_cmpeq_epi8(loadAvx2(at + i + 2), third),
                                            _mm256_cmpeq_epi8(loadAvx2(otherAt + i), other));
      any = _mm256_or_si256(any, _mm256_and_si256(two, more));
    }
    noteAvx2(found[n], any, found, kept);
  }
  return kept;
}

[[gnu::target("avx2")]] Strides stridesAvx2(const char* place, std::size_t strides,
                                            const ByteProbe& probe, std::uint8_t* found) {
  if (probe.size == ByteProbe::kShortest) return stridesOfTwoAvx2(place, strides, probe, found);
  const __m256i first = _mm256_set1_epi16(wordAt(probe, 0));
  const __m256i last = _mm256_set1_epi16(wordAt(probe, 1));
  std::size_t count = 0;
  const char* at = place + probe.at + 1;
#pragma GCC unroll 4
  for (std::size_t stride = 0; stride < strides; ++stride, at += kSearchStride) {
    __m256i any = _mm256_setzero_si256();
    for (std::size_t i = 0; i < kSearchStride; i += sizeof any) {
      if (i % kCacheLine == 0) _mm_prefetch(at + i + kAhead, _MM_HINT_T0);
      const __m256i words = loadAvx2(at + i);
      any = _mm256_or_si256(
          any, _mm256_or_si256(_mm256_cmpeq_epi16(words, first), _mm256_cmpeq_epi16(words, last)));
    }
    noteAvx2(stride, any, found, count);
  }
  return {count, keptAvx2(place, probe, found, count)};
}

[[gnu::target("avx2")]] ByteSearcher::Places placesAvx2(const char* place, const ByteProbe& probe) {
  constexpr std::size_t kWidth = sizeof(__m256i);
  const std::size_t lastAt = probe.size - 1;
  const std::size_t middleAt = lastAt / 2;
  const __m256i first = _mm256_set1_epi8(probe.bytes[0]);
  const __m256i middle = _mm256_set1_epi8(probe.bytes[middleAt]);
  const __m256i last = _mm256_set1_epi8(probe.bytes[lastAt]);
  const char* const at = place + probe.at;
  ByteSearcher::Places places = 0;
  for (std::size_t i = 0; i < ByteSearcher::kPlaces; i += kWidth) {
    const __m256i firstTwo =
        _mm256_and_si256(_mm256_cmpeq_epi8(loadAvx2(at + i), first),
                         _mm256_cmpeq_epi8(loadAvx2(at + middleAt + i), middle));
    const __m256i all =
        _mm256_and_si256(firstTwo, _mm256_cmpeq_epi8(loadAvx2(at + lastAt + i), last));
    places |= ByteSearcher::Places{static_cast<unsigned>(_mm256_movemask_epi8(all))} << i;
  }
  return places;
}

#endif

std::vector<ByteSearcher> findSearchers() {
  std::vector<ByteSearcher> searchers;
#if defined(VEL_WIDE_SEARCH)
  if (__builtin_cpu_supports("avx2") != 0) searchers.push_back({stridesAvx2, placesAvx2});
#endif
#if defined(__SSE2__)
  searchers.push_back({stridesSse2, placesSse2});
#endif
  searchers.push_back({stridesOfBytes, placesOfBytes});
  return searchers;
}

}  // namespace

const std::vector<ByteSearcher>& byteSearchers() {
  static const std::vector<ByteSearcher> searchers = findSearchers();
  return searchers;
}

}  // namespace vel
