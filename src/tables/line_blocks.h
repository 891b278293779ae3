#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "core/file.h"
#include "core/result.h"

namespace vel {

/// The memory that lines are read into, kept from one file to the next: taking
/// it anew for each costs as much as a small table does. A copy has memory of
/// its own.
class BlockMemory {
 public:
  BlockMemory() = default;
  BlockMemory(const BlockMemory& /*other*/) noexcept {}
  BlockMemory& operator=(const BlockMemory& /*other*/) noexcept { return *this; }
  BlockMemory(BlockMemory&&) noexcept = default;
  BlockMemory& operator=(BlockMemory&&) noexcept = default;
  ~BlockMemory() = default;

 private:
  friend class LineBlocks;
  std::unique_ptr<char[]> bytes_;
};

/// A file's lines, many at a time: each block begins at the start of a line
/// and ends behind a line end, or with the file. CR LF, LF alone and CR alone
/// end a line. The file is read, never mapped: it may shrink meanwhile.
class LineBlocks {
 public:
  /// Bytes that are read at once: enough to make calls of the system rare, few
  /// enough to stay in the processor's cache.
  static constexpr std::size_t kBlock = std::size_t{1} << 17;

  /// In bytes, with its line end. A longer line is no record. It bounds the
  /// memory that a file can take.
  static constexpr std::size_t kLongestLine = std::size_t{1} << 24;

  enum class LongerLines {
    passOver,  ///< they are left out
    fail,      ///< next() gives ErrorNumber::deviceIo; see metLongerLine()
  };

  /// Bytes equal to `byteOrderMark` at the beginning of the file are left out.
  /// `memory`, if any, outlives the object; while another one uses it, this one
  /// takes its own.
  LineBlocks(InputFile file, LongerLines longerLines, std::string_view byteOrderMark = {},
             BlockMemory* memory = nullptr);
  LineBlocks(LineBlocks&& other) = delete;
  ~LineBlocks();

  /// The next block, empty at the end of the file. The view lives until the
  /// next call; the byte before it is an LF, and BytePattern::kSlack bytes on
  /// either side can be read.
  Result<std::string_view> next();

  /// The file, when its blocks are no longer needed.
  [[nodiscard]] InputFile file() && { return std::move(file_); }

  /// True when the file began with the byte order mark; known after next().
  [[nodiscard]] bool hadByteOrderMark() const { return hadByteOrderMark_; }

  /// True when next() failed because of a longer line: the one that follows
  /// the lines handed out.
  [[nodiscard]] bool metLongerLine() const { return metLongerLine_; }

 private:
  [[nodiscard]] char* readPlace() const;
  void allocate(std::size_t room);
  void moveRest();
  Result<std::string_view> fill();

  InputFile file_;
  LongerLines longerLines_;
  std::string_view byteOrderMark_;
  BlockMemory* memory_;
  // Room for an unfinished line in front of the place where the file is read
  // to, and as much for a read.
  std::size_t room_ = 0;
  std::unique_ptr<char[]> buffer_;
  std::string_view rest_;  // the unfinished line behind the last block
  bool skipping_ = false;  // within a line that is passed over
  bool atBeginning_ = true;
  bool hadByteOrderMark_ = false;
  bool metLongerLine_ = false;
};

/// The first place in [begin, end) with CR or LF, or `end`. Up to 15 bytes
/// behind `end` are read, but never used.
[[nodiscard]] const char* findLineEnd(const char* begin, const char* end);

/// One line of a block.
struct BlockLine {
  std::string_view text;  ///< without its line end
  std::string_view raw;   ///< with it
};

/// The line that begins at `begin`, within a block that ends at `end`.
[[nodiscard]] BlockLine lineAt(const char* begin, const char* end);

}  // namespace vel
