#pragma once

#include <filesystem>
#include <string_view>

#include "core/result.h"
#include "tables/byte_pattern.h"
#include "tables/kept_file.h"
#include "tables/line_blocks.h"

namespace vel {

/// Finds, at about the speed of a plain read, the lines of a file in which
/// some bytes occur. A table is scanned as bytes; only a line that may match
/// is handed out, to be split and decoded by the caller.
class TableScanner {
 public:
  enum class Anchor {
    lineStart,  ///< the line begins with the bytes
    anywhere,   ///< the bytes occur somewhere in the line
  };

  /// What the caller wants after a line.
  enum class Next { more, stop };

  /// How a file is read.
  struct Source {
    /// These bytes at the beginning of the file belong to no line.
    std::string_view byteOrderMark = {};
    /// What the lines are read into, kept from one file to the next.
    BlockMemory* memory = nullptr;
    /// What told the bytes apart the last time, for the next time.
    ProbeHint* hint = nullptr;
    /// Where the file is taken from and left open for the next time.
    KeptFile* kept = nullptr;
  };

  /// Calls `visit(line)` for every such line, in file order, without its line
  /// end (CR LF, LF or CR). Empty bytes visit every line; bytes with CR or LF
  /// among them visit none. A line longer than LineBlocks::kLongestLine is
  /// passed over. The view lives until `visit` returns. The file is closed when
  /// this returns, unless the source keeps it; an Error when it could not be opened or read.
  template <typename Visit>
  static Status forEachLine(const std::filesystem::path& file, std::string_view bytes,
                            Anchor anchor, Visit visit, const Source& source) {
    return scan(
        file, bytes, anchor, source,
        [](void* context, std::string_view line) { return (*static_cast<Visit*>(context))(line); },
        &visit);
  }
  template <typename Visit>
  static Status forEachLine(const std::filesystem::path& file, std::string_view bytes,
                            Anchor anchor, Visit visit) {
    return forEachLine(file, bytes, anchor, visit, Source{});
  }

 private:
  using Callback = Next (*)(void* context, std::string_view line);
  static Status scan(const std::filesystem::path& file, std::string_view bytes, Anchor anchor,
                     const Source& source, Callback callback, void* context);
};

}  // namespace vel
