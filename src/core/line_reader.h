#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "core/file.h"
#include "core/result.h"

namespace vel {

/// What a CR means that no LF follows: in logs it belongs to the line, in tables
/// and settings it ends one.
enum class LoneCr { isText, endsLine };

/// The lines of a file, one after another, read in large blocks. A line ends
/// with LF or CR LF; the last one may end with the file. A byte order mark of
/// UTF-8 at the start of the file is skipped. Memory stays bounded by the
/// longest line allowed, whatever the file holds.
class LineReader {
 public:
  /// The longest line that is handed out whole, in bytes.
  static constexpr std::size_t kLongestLine = std::size_t{1} << 20;

  explicit LineReader(InputFile file, std::size_t longestLine = kLongestLine,
                      LoneCr loneCr = LoneCr::isText);

  /// The next line without its line end, or nothing at the end of the file.
  /// The view lives until the next call. A longer line is cut at the limit.
  Result<std::optional<std::string_view>> next();

  /// The next line where a whole one is at hand without reading on; false
  /// otherwise, and next() is the one to call. The same line, only faster.
  bool nextAtHand(std::string_view& line) {
    const char* start = buffer_.data() + begin_;
    const void* found = skipping_ ? nullptr : std::memchr(start, '\n', end_ - begin_);
    if (found == nullptr) return false;
    auto size = static_cast<std::size_t>(static_cast<const char*>(found) - start);
    if (size > longestLine_) return false;
    begin_ += size + 1;
    consumed_ += size + 1;
    wasCut_ = false;
    if (size > 0 && start[size - 1] == '\r') --size;
    line = {start, size};
    return true;
  }

  /// What was read ahead: it begins with the next line and need not end with a
  /// whole one. Empty where only next() can go on.
  [[nodiscard]] std::string_view atHand() const {
    return skipping_ ? std::string_view()
                     : std::string_view(buffer_.data() + begin_, end_ - begin_);
  }

  /// Counts bytes at the beginning of atHand() as read: whole lines with their
  /// ends, none longer than the limit.
  void takeAtHand(std::size_t bytes) {
    begin_ += bytes;
    consumed_ += bytes;
    wasCut_ = false;
  }

  /// True when the line just handed out was longer than the limit.
  [[nodiscard]] bool wasCut() const { return wasCut_; }

  /// Bytes consumed so far, line ends and a byte order mark included.
  [[nodiscard]] std::size_t bytesRead() const { return consumed_; }

 private:
  Result<bool> fill();
  Status skipByteOrderMark();
  void endLinesAtLoneCrs(std::size_t from);

  InputFile file_;
  std::size_t longestLine_;
  LoneCr loneCr_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t consumed_ = 0;
  bool started_ = false;
  bool atEnd_ = false;
  bool skipping_ = false;
  bool wasCut_ = false;
};

}  // namespace vel
