#include "history/log_blocks.h"

#include <algorithm>
#include <cstring>
#include <system_error>

#include "hfdl/hfdl_lines.h"
#include "tables/byte_pattern.h"

namespace vel {
namespace {

// Small enough to stay in the processor's cache.
constexpr std::size_t kBlock = std::size_t{1} << 17;
constexpr std::size_t kFront = BytePattern::kSlack;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

Status LogBlocks::open(const std::filesystem::path& file, Cut cut) {
  file_.reset();
  cut_ = cut;
  begin_ = end_ = kFront;
  offset_ = nextOffset_ = 0;
  atEnd_ = skipping_ = false;
  change_ = Change::none;
  if (buffer_.empty()) buffer_.resize(kFront + 2 * kBlock + BytePattern::kSlack);
  Result<InputFile> opened = InputFile::open(file);
  if (!opened) return opened.error();
  std::error_code failed;
  left_ = std::filesystem::file_size(file, failed);
  if (failed) return ErrorNumber::deviceIo;
  file_.emplace(*std::move(opened));
  return {};
}

// Bytes of whole lines, or of whole messages.
std::size_t LogBlocks::endOfWhole(std::string_view text) const {
  const bool isLong = text.size() >= kLongestPiece;
  if (cut_ == Cut::messages && !isLong) {
    const std::size_t mark = text.rfind(kHeaderMark.text);
    if (mark == std::string_view::npos) return 0;
    const std::size_t lineEnd = text.substr(0, mark).rfind('\n');
    return lineEnd == std::string_view::npos ? 0 : lineEnd + 1;
  }
  const std::size_t last = text.rfind('\n');
  return last == std::string_view::npos ? 0 : last + 1;
}

// What is not handed out yet goes to the front, and room for as much again, or
// a block at least, is made behind it.
void LogBlocks::makeRoom() {
  const std::size_t rest = end_ - begin_;
  if (begin_ != kFront) std::memmove(buffer_.data() + kFront, buffer_.data() + begin_, rest);
  begin_ = kFront;
  end_ = kFront + rest;
  const std::size_t needed = end_ + std::max(kBlock, rest) + BytePattern::kSlack;
  if (buffer_.size() < needed) buffer_.resize(needed);
}

// The bytes that were read; 0 at the end.
Result<std::size_t> LogBlocks::readOn() {
  const std::uint64_t wanted = std::min<std::uint64_t>(std::max(kBlock, end_ - begin_), left_);
  if (wanted == 0) {
    char more = 0;
    const Result<std::size_t> behind = file_->read(&more, 1);
    if (behind && *behind > 0) change_ = Change::grew;
    return std::size_t{0};
  }
  const Result<std::size_t> count =
      file_->read(buffer_.data() + end_, static_cast<std::size_t>(wanted));
  if (!count) return count.error();
  if (*count == 0) change_ = Change::shrank;
  left_ -= *count;
  end_ += *count;
  return *count;
}

void LogBlocks::drop(std::size_t bytes) {
  begin_ += bytes;
  nextOffset_ += bytes;
}

// Leaves out the rest of a line that is too long.
void LogBlocks::skipRest() {
  const std::string_view text(buffer_.data() + begin_, end_ - begin_);
  const std::size_t lineEnd = text.find('\n');
  skipping_ = lineEnd == std::string_view::npos;
  drop(skipping_ ? text.size() : lineEnd + 1);
}

Result<std::string_view> LogBlocks::next() {
  std::size_t whole = 0;
  while (whole == 0 && !atEnd_) {
    makeRoom();
    const Result<std::size_t> count = readOn();
    if (!count) return count.error();
    atEnd_ = *count == 0;
    if (nextOffset_ == 0 && text().starts_with(kByteOrderMark)) drop(kByteOrderMark.size());
    if (skipping_) skipRest();
    if (skipping_) break;
    whole = endOfWhole(text());
    if (whole == 0 && text().size() >= kLongestPiece) {
      drop(text().size());
      skipping_ = true;
    }
  }
  if (atEnd_) whole = text().size();
  offset_ = nextOffset_;
  char* const place = buffer_.data() + begin_;
  place[-1] = '\n';
  drop(whole);
  return std::string_view(place, whole);
}

}  // namespace vel
