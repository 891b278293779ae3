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
  /// In bytes, with its line end. A longer line is no record. It bounds the
  /// memory that a file can take.
  static constexpr std::size_t kLongestLine = std::size_t{1} << 24;

  enum class LongerLines {
    passOver,  ///< they are left out
    fail,      ///< next() gives ErrorNumber::deviceIo
  };

  LineBlocks(InputFile file, LongerLines longerLines);

  /// The next block, empty at the end of the file. The view lives until the
  /// next call; the byte before it is an LF, and BytePattern::kSlack bytes on
  /// either side can be read.
  Result<std::string_view> next();

 private:
  [[nodiscard]] char* readPlace() const;
  void allocate(std::size_t room);
  void moveRest();
  Result<std::string_view> fill();

  InputFile file_;
  LongerLines longerLines_;
  // Room for an unfinished line in front of the place where the file is read
  // to, and as much for a read.
  std::size_t room_ = 0;
  std::unique_ptr<char[]> buffer_;
  std::string_view rest_;  // the unfinished line behind the last block
  bool skipping_ = false;  // within a line that is passed over
};

}  // namespace vel
