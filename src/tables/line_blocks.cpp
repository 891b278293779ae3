#include "tables/line_blocks.h"

#include <cstdint>
#include <cstring>
#include <utility>

#include "core/helpers.h"
#include "tables/byte_pattern.h"

namespace vel {
namespace {

// Large enough to make calls of the system rare, small enough to stay in the
// processor's cache.
constexpr std::size_t kBlock = std::size_t{1} << 17;

// Reading whole pages to whole pages is what the system does fastest.
constexpr std::size_t kPage = 4096;

// Bytes up to and with the last LF.
std::size_t wholeLines(std::string_view text) {
  const std::size_t last = text.rfind('\n');
  return last == std::string_view::npos ? 0 : last + 1;
}

}  // namespace

LineBlocks::LineBlocks(InputFile file, LongerLines longerLines)
    : file_(std::move(file)), longerLines_(longerLines) {
  allocate(kBlock);
}

char* LineBlocks::readPlace() const {
  const auto behindLine =
      reinterpret_cast<std::uintptr_t>(buffer_.get()) + BytePattern::kSlack + room_;
  return buffer_.get() + BytePattern::kSlack + room_ + (kPage - behindLine % kPage) % kPage;
}

void LineBlocks::allocate(std::size_t room) {
  const std::unique_ptr<char[]> old = std::move(buffer_);
  buffer_ = std::make_unique_for_overwrite<char[]>(2 * BytePattern::kSlack + kPage + 2 * room);
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
  char* const begin = readPlace() - rest_.size();
  begin[-1] = '\n';
  return std::string_view(begin, rest_.size() + *count);
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
      const std::size_t lineFeed = text.find('\n', unfinished);
      const std::size_t lineEnd = MinOf(lineFeed, text.size() - 1) + 1;
      if (skipping_ || lineEnd > kLongestLine) {
        if (longerLines_ == LongerLines::fail) return ErrorNumber::deviceIo;
        begin = lineEnd;
        skipping_ = lineFeed == std::string_view::npos;
      }
    }
    const std::size_t from = MaxOf(begin, unfinished);
    const std::size_t end = from + wholeLines(text.substr(from));
    if (end > from) {
      rest_ = text.substr(end);
      return text.substr(begin, end - begin);
    }
    rest_ = text.substr(begin);
  }
}

}  // namespace vel
