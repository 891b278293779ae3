#include "acars/short_lines.h"

#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vel {
namespace {

struct Marks {
  std::uint64_t lineFeeds = 0;
  std::uint64_t commas = 0;
  std::uint64_t notAscii = 0;
  std::uint64_t probe = 0;
};

#if defined(__SSE2__)

Marks marksIn(const char* text, char probe) {
  constexpr std::size_t kWidth = sizeof(__m128i);
  const __m128i lineFeed = _mm_set1_epi8('\n');
  const __m128i comma = _mm_set1_epi8(',');
  const __m128i probed = _mm_set1_epi8(probe);
  const auto bits = [](__m128i bytes) {
    return std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(bytes))};
  };
  Marks marks;
  for (std::size_t i = 0; i < kShortLine; i += kWidth) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    marks.lineFeeds |= bits(_mm_cmpeq_epi8(bytes, lineFeed)) << i;
    marks.commas |= bits(_mm_cmpeq_epi8(bytes, comma)) << i;
    marks.notAscii |= bits(bytes) << i;
    marks.probe |= bits(_mm_cmpeq_epi8(bytes, probed)) << i;
  }
  return marks;
}

#else

Marks marksIn(const char* text, char probe) {
  Marks marks;
  for (std::size_t i = 0; i < kShortLine; ++i) {
    const char byte = text[i];
    marks.lineFeeds |= std::uint64_t{byte == '\n'} << i;
    marks.commas |= std::uint64_t{byte == ','} << i;
    marks.notAscii |= std::uint64_t{static_cast<unsigned char>(byte) >= 0x80} << i;
    marks.probe |= std::uint64_t{byte == probe} << i;
  }
  return marks;
}

#endif

}  // namespace

std::size_t shortLines(std::string_view text, char probe, std::span<ShortLine> lines) {
  std::size_t count = 0;
  std::size_t at = 0;
  while (count < lines.size() && text.size() - at >= kShortLineReach) {
    const char* line = text.data() + at;
    const Marks marks = marksIn(line, probe);
    if (marks.lineFeeds == 0) break;
    // All bits below that of the first line feed.
    const std::uint64_t inLine = marks.lineFeeds ^ (marks.lineFeeds - 1);
    const auto end = static_cast<std::uint32_t>(std::countr_zero(marks.lineFeeds));
    const bool carriageReturn = end > 0 && line[end - 1] == '\r';
    const auto begin = static_cast<std::uint32_t>(at);
    at += end + 1;
    lines[count++] = {begin,
                      end - (carriageReturn ? 1U : 0U),
                      static_cast<std::uint32_t>(at),
                      marks.commas & inLine,
                      marks.notAscii & inLine,
                      marks.probe & inLine};
  }
  return count;
}

}  // namespace vel
