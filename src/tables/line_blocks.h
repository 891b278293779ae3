#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "core/file.h"
#include "core/result.h"

namespace vel {

/// A file's lines, many at a time: each block begins at the start of a line
/// and ends behind an LF, or with the file. The file is read, never mapped: it
/// may shrink meanwhile.
class LineBlocks {
 public:
  /// A longer line is no record. It bounds the memory that a file can take.
  static constexpr std::size_t kLongestLine = std::size_t{1} << 24;

  enum class LongerLines {
    passOver,  ///< they are left out
    fail,      ///< next() gives ErrorNumber::deviceIo
  };

  LineBlocks(InputFile file, LongerLines longerLines);

  /// The next block, empty at the end of the file. The view lives until the
  /// next call; the byte before it is an LF, and BytePattern::kSlack bytes
  /// behind it can be read.
  Result<std::string_view> next();

 private:
  Result<bool> fill();
  void grow();

  InputFile file_;
  LongerLines longerLines_;
  std::size_t capacity_;
  std::unique_ptr<char[]> buffer_;
  // Offsets into the text, which stands behind one LF in the buffer.
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool skipping_ = false;  // within a line that is passed over
};

}  // namespace vel
