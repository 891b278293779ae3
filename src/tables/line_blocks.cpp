#include "tables/line_blocks.h"

#include <cstring>
#include <utility>

#include "core/helpers.h"
#include "tables/byte_pattern.h"

namespace vel {
namespace {

// Small enough to come from memory that is already warm and to stay in the
// processor's cache.
constexpr std::size_t kBlock = std::size_t{1} << 16;

std::size_t bufferSize(std::size_t capacity) { return 1 + capacity + BytePattern::kSlack; }

std::unique_ptr<char[]> makeBuffer(std::size_t capacity) {
  auto buffer = std::make_unique_for_overwrite<char[]>(bufferSize(capacity));
  buffer[0] = '\n';
  std::memset(buffer.get() + bufferSize(capacity) - BytePattern::kSlack, 0, BytePattern::kSlack);
  return buffer;
}

// Bytes up to and with the last LF.
std::size_t wholeLines(std::string_view text) {
  const std::size_t last = text.rfind('\n');
  return last == std::string_view::npos ? 0 : last + 1;
}

}  // namespace

LineBlocks::LineBlocks(InputFile file, LongerLines longerLines)
    : file_(std::move(file)),
      longerLines_(longerLines),
      capacity_(kBlock),
      buffer_(makeBuffer(kBlock)) {}

void LineBlocks::grow() {
  const std::size_t capacity = capacity_ * 2;
  auto buffer = makeBuffer(capacity);
  std::memcpy(buffer.get() + 1, buffer_.get() + 1, end_);
  buffer_ = std::move(buffer);
  capacity_ = capacity;
}

// Puts more of the file behind what is left of the last block.
Result<bool> LineBlocks::fill() {
  char* const text = buffer_.get() + 1;
  if (begin_ > 0) {
    std::memmove(text, text + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == capacity_) grow();
  const Result<std::size_t> count = file_.read(buffer_.get() + 1 + end_, capacity_ - end_);
  if (!count) return count.error();
  end_ += *count;
  return *count > 0;
}

Result<std::string_view> LineBlocks::next() {
  while (true) {
    const std::size_t searched = end_ - begin_;
    const Result<bool> more = fill();
    if (!more) return more.error();
    const std::string_view text(buffer_.get() + 1, end_);
    if (!*more) {
      begin_ = end_;
      return std::exchange(skipping_, false) ? std::string_view() : text;
    }
    std::size_t first = 0;
    if (skipping_) {
      const std::size_t lineEnd = text.find('\n', searched);
      if (lineEnd == std::string_view::npos) {
        begin_ = end_;
        continue;
      }
      skipping_ = false;
      first = lineEnd + 1;
    }
    // What was left of the last block holds no LF.
    const std::size_t from = MaxOf(first, searched);
    const std::size_t added = wholeLines(text.substr(from));
    begin_ = added > 0 ? from + added : first;
    if (added > 0) return text.substr(first, begin_ - first);
    if (text.size() - first >= kLongestLine) {
      if (longerLines_ == LongerLines::fail) return ErrorNumber::deviceIo;
      skipping_ = true;
      begin_ = end_;
    }
  }
}

}  // namespace vel
