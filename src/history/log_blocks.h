#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "core/file.h"
#include "core/result.h"

namespace vel {

/// Reads one log after another in large blocks, always into the same memory.
/// The decoders may write, replace or remove a log meanwhile: what it held when
/// it was opened is read, and not more.
class LogBlocks {
 public:
  /// Where a block may end.
  enum class Cut {
    lines,     ///< behind a line
    messages,  ///< before a line with the header mark of the formatted log
  };

  /// A longer line is left out; a longer message is cut behind one of its lines.
  static constexpr std::size_t kLongestPiece = std::size_t{1} << 22;

  /// Gives the log before up. The error is that of InputFile::open.
  Status open(const std::filesystem::path& file, Cut cut);

  /// The next block; empty at the end, and now and then within a line that is
  /// left out, so that no call takes long. The view lives until the next call;
  /// the byte before it can be read and is an LF, and so can
  /// BytePattern::kSlack bytes on either side.
  Result<std::string_view> next();

  /// True once everything has been handed out.
  [[nodiscard]] bool isAtEnd() const { return atEnd_; }

  /// Where the last block began within the file.
  [[nodiscard]] std::uint64_t offset() const { return offset_; }

  /// How the file changed while it was read; known at its end.
  enum class Change { none, grew, shrank };
  [[nodiscard]] Change change() const { return change_; }

  void close() { file_.reset(); }

 private:
  [[nodiscard]] std::size_t endOfWhole(std::string_view text) const;
  Result<std::size_t> readOn();
  void makeRoom();
  void drop(std::size_t bytes);
  void skipRest();
  [[nodiscard]] std::string_view text() const { return {buffer_.data() + begin_, end_ - begin_}; }

  std::optional<InputFile> file_;
  Cut cut_ = Cut::lines;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // of what is not handed out yet
  std::size_t end_ = 0;
  std::uint64_t offset_ = 0;
  std::uint64_t nextOffset_ = 0;
  std::uint64_t left_ = 0;  // bytes of the file that are still to be read
  bool atEnd_ = false;
  bool skipping_ = false;  // within a line that is left out
  Change change_ = Change::none;
};

}  // namespace vel
