#include "core/line_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vel {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 17;

}  // namespace

LineReader::LineReader(InputFile file, std::size_t longestLine, LoneCr loneCr)
    : file_(std::move(file)), longestLine_(longestLine), loneCr_(loneCr), buffer_(kBlock) {}

Status LineReader::skipByteOrderMark() {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  while (end_ < kMark.size()) {
    const Result<bool> more = fill();
    if (!more) return more.error();
    if (!*more) break;
  }
  started_ = true;
  if (std::string_view(buffer_.data(), end_).starts_with(kMark)) {
    begin_ = kMark.size();
    consumed_ = kMark.size();
  }
  return {};
}

void LineReader::endLinesAtLoneCrs(std::size_t from) {
  // What follows the last byte is not known yet.
  for (std::size_t i = from; i + 1 < end_; ++i) {
    if (buffer_[i] == '\r' && buffer_[i + 1] != '\n') buffer_[i] = '\n';
  }
}

Result<bool> LineReader::fill() {
  if (atEnd_) return false;
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == buffer_.size()) buffer_.resize(buffer_.size() * 2);
  // The last byte was left undecided where it is a CR.
  const std::size_t undecided = end_ > 0 ? end_ - 1 : 0;
  const Result<std::size_t> count = file_.read(buffer_.data() + end_, buffer_.size() - end_);
  if (!count) return count.error();
  end_ += *count;
  atEnd_ = *count == 0;
  if (loneCr_ == LoneCr::endsLine) endLinesAtLoneCrs(undecided);
  return !atEnd_;
}

Result<std::optional<std::string_view>> LineReader::next() {
  wasCut_ = false;
  if (!started_) {
    if (const Status skipped = skipByteOrderMark(); !skipped) return skipped.error();
  }
  std::size_t searched = 0;
  while (true) {
    const char* start = buffer_.data() + begin_;
    const std::size_t available = end_ - begin_;
    const void* found =
        available > searched ? std::memchr(start + searched, '\n', available - searched) : nullptr;
    if (found != nullptr) {
      const auto size = static_cast<std::size_t>(static_cast<const char*>(found) - start);
      begin_ += size + 1;
      consumed_ += size + 1;
      if (std::exchange(skipping_, false)) {
        searched = 0;
        continue;
      }
      std::string_view line(start, size);
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      wasCut_ = line.size() > longestLine_;
      return std::optional(line.substr(0, longestLine_));
    }
    const std::size_t undecided = loneCr_ == LoneCr::endsLine && available > 0 ? 1 : 0;
    if (skipping_) {
      begin_ = end_ - undecided;
      consumed_ += available - undecided;
    } else if (available > longestLine_ + 1) {
      begin_ += longestLine_;
      consumed_ += longestLine_;
      skipping_ = true;
      wasCut_ = true;
      return std::optional(std::string_view(start, longestLine_));
    }
    searched = skipping_ ? 0 : available - undecided;
    const Result<bool> more = fill();
    if (!more) return more.error();
    if (!*more) break;
  }
  if (begin_ == end_ || std::exchange(skipping_, false)) return std::optional<std::string_view>();
  std::string_view line(buffer_.data() + begin_, end_ - begin_);
  consumed_ += line.size();
  begin_ = end_;
  if (line.back() == '\r') line.remove_suffix(1);
  wasCut_ = line.size() > longestLine_;
  return std::optional(line.substr(0, longestLine_));
}

}  // namespace vel
