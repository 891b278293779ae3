#include "tables/byte_pattern.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vel {
namespace {

constexpr std::size_t kStride = 64;

#if defined(__SSE2__)

class ByteTest {
 public:
  ByteTest(char byte, std::size_t offset) : wanted_(_mm_set1_epi8(byte)), offset_(offset) {}

  [[nodiscard]] __m128i at(const char* place) const {
    return _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(place + offset_)),
                          wanted_);
  }

 private:
  __m128i wanted_;
  std::size_t offset_;
};

std::uint64_t bits(__m128i equal, int shift) {
  return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(equal))) << shift;
}

#else

class ByteTest {
 public:
  ByteTest(char byte, std::size_t offset) : wanted_(byte), offset_(offset) {}

  [[nodiscard]] bool at(const char* place) const { return place[offset_] == wanted_; }

 private:
  char wanted_;
  std::size_t offset_;
};

#endif

// One bit for each of the next kStride places, set where all three bytes fit.
std::uint64_t candidates(const ByteTest& a, const ByteTest& b, const ByteTest& c,
                         const char* place) {
#if defined(__SSE2__)
  const auto fits = [&](const char* at) {
    return _mm_and_si128(_mm_and_si128(a.at(at), b.at(at)), c.at(at));
  };
  const __m128i first = fits(place);
  const __m128i second = fits(place + 16);
  const __m128i third = fits(place + 32);
  const __m128i fourth = fits(place + 48);
  // Nearly always there is none: one test tells.
  const __m128i any = _mm_or_si128(_mm_or_si128(first, second), _mm_or_si128(third, fourth));
  if (_mm_movemask_epi8(any) == 0) return 0;
  return bits(first, 0) | bits(second, 16) | bits(third, 32) | bits(fourth, 48);
#else
  std::uint64_t found = 0;
  for (std::size_t i = 0; i < kStride; ++i) {
    const bool fits = c.at(place + i) && b.at(place + i) && a.at(place + i);
    found |= static_cast<std::uint64_t>(fits) << i;
  }
  return found;
#endif
}

}  // namespace

BytePattern::BytePattern(std::string bytes, std::array<std::size_t, 3> tested)
    : bytes_(std::move(bytes)), tested_(tested) {}

const char* BytePattern::find(const char* begin, const char* end) const {
  if (static_cast<std::size_t>(end - begin) < bytes_.size()) return end;
  const char* const last = end - bytes_.size();
  const ByteTest a(bytes_[tested_[0]], tested_[0]);
  const ByteTest b(bytes_[tested_[1]], tested_[1]);
  const ByteTest c(bytes_[tested_[2]], tested_[2]);
  for (const char* place = begin; place <= last; place += kStride) {
    std::uint64_t found = candidates(a, b, c, place);
    for (; found != 0; found &= found - 1) {
      const char* const candidate = place + std::countr_zero(found);
      if (candidate > last) return end;
      if (std::memcmp(candidate, bytes_.data(), bytes_.size()) == 0) return candidate;
    }
  }
  return end;
}

}  // namespace vel
