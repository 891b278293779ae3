#include "tables/line_blocks.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "tables/byte_pattern.h"

namespace vel {
namespace {

// Reading whole pages to whole pages is what the system does fastest.
constexpr std::size_t kPage = 4096;

constexpr std::string_view kLineEnds = "\r\n";

// Bytes up to and with the last line end. A CR at the end may be half of one.
std::size_t wholeLines(std::string_view text) {
  const std::size_t lineFeed = text.rfind('\n');
  const std::size_t behind = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
  std::string_view rest = text.substr(behind);
  if (!rest.empty()) rest.remove_suffix(1);
  const std::size_t carriageReturn = rest.rfind('\r');
  return carriageReturn == std::string_view::npos ? behind : behind + carriageReturn + 1;
}

}  // namespace

LineBlocks::LineBlocks(InputFile file, LongerLines longerLines, std::string_view byteOrderMark,
                       BlockMemory* memory)
    : file_(std::move(file)),
      longerLines_(longerLines),
      byteOrderMark_(byteOrderMark),
      memory_(memory) {
  if (memory_ == nullptr || memory_->bytes_ == nullptr) {
    allocate(kBlock);
    return;
  }
  buffer_ = std::move(memory_->bytes_);
  room_ = kBlock;
  moveRest();
}

LineBlocks::~LineBlocks() {
  // What a long line needed is given back to the system.
  if (memory_ != nullptr && room_ == kBlock) memory_->bytes_ = std::move(buffer_);
}

char* LineBlocks::readPlace() const {
  const auto behindLine =
      reinterpret_cast<std::uintptr_t>(buffer_.get()) + BytePattern::kSlack + room_;
  return buffer_.get() + BytePattern::kSlack + room_ + (kPage - behindLine % kPage) % kPage;
}

void LineBlocks::allocate(std::size_t room) {
  const std::unique_ptr<char[]> old = std::move(buffer_);
  // Not only what is read: the search looks a little beyond it, and nothing there
  // may be left to chance.
  buffer_ = std::make_unique<char[]>(2 * BytePattern::kSlack + kPage + 2 * room);
  room_ = room;
  moveRest();
}

// The unfinished line goes to the front of the place that is read to.
void LineBlocks::moveRest() {
  char* const place = readPlace() - rest_.size();
  if (!rest_.empty()) std::memmove(place, rest_.data(), rest_.size());
  rest_ = {place, rest_.size()};
}

// The unfinished line and more of the file behind it; no longer than the
// unfinished line at the end of the file.
Result<std::string_view> LineBlocks::fill() {
  if (rest_.size() > room_) {
    allocate(2 * room_);
  } else {
    moveRest();
  }
  const Result<std::size_t> count = file_.read(readPlace(), room_);
  if (!count) return count.error();
  char* begin = readPlace() - rest_.size();
  std::size_t size = rest_.size() + *count;
  if (std::exchange(atBeginning_, false) && !byteOrderMark_.empty() &&
      std::string_view(begin, size).starts_with(byteOrderMark_)) {
    hadByteOrderMark_ = true;
    begin += byteOrderMark_.size();
    size -= byteOrderMark_.size();
  }
  begin[-1] = '\n';
  return std::string_view(begin, size);
}

Result<std::string_view> LineBlocks::next() {
  while (true) {
    const std::size_t unfinished = rest_.size();
    const Result<std::string_view> filled = fill();
    if (!filled) return filled.error();
    const std::string_view text = *filled;
    rest_ = {};
    if (text.size() == unfinished) return std::exchange(skipping_, false) ? rest_ : text;

    std::size_t begin = 0;
    if (skipping_ || text.size() > kLongestLine) {
      const std::size_t found = text.find_first_of(kLineEnds, unfinished);
      const std::size_t lineEnd = std::min(found, text.size() - 1) + 1;
      if (skipping_ || lineEnd > kLongestLine) {
        if (longerLines_ == LongerLines::fail) {
          metLongerLine_ = true;
          return ErrorNumber::deviceIo;
        }
        begin = lineEnd;
        skipping_ = found == std::string_view::npos;
      }
    }
    const std::size_t from = std::max(begin, unfinished);
    const std::size_t end = from + wholeLines(text.substr(from));
    if (end > from) {
      rest_ = text.substr(end);
      return text.substr(begin, end - begin);
    }
    rest_ = text.substr(begin);
  }
}

const char* findLineEnd(const char* begin, const char* end) {
#if defined(__SSE2__)
  const __m128i lineFeed = _mm_set1_epi8('\n');
  const __m128i carriageReturn = _mm_set1_epi8('\r');
  for (const char* place = begin; place < end; place += sizeof(__m128i)) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(place));
    const __m128i ends =
        _mm_or_si128(_mm_cmpeq_epi8(bytes, lineFeed), _mm_cmpeq_epi8(bytes, carriageReturn));
    const auto found = static_cast<unsigned>(_mm_movemask_epi8(ends));
    if (found != 0) return std::min(place + std::countr_zero(found), end);
  }
  return end;
#else
  return std::find_if(begin, end, [](char byte) { return byte == '\n' || byte == '\r'; });
#endif
}

BlockLine lineAt(const char* begin, const char* end) {
  const char* const lineEnd = findLineEnd(begin, end);
  const char* next = lineEnd;
  if (next < end) ++next;
  if (next < end && *lineEnd == '\r' && *next == '\n') ++next;
  return {{begin, static_cast<std::size_t>(lineEnd - begin)},
          {begin, static_cast<std::size_t>(next - begin)}};
}

}  // namespace vel
