#pragma once

#include <filesystem>
#include <string_view>

#include "core/result.h"

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

  /// Calls `visit(line)` for every such line, in file order, without its line
  /// end (LF or CR LF). Empty bytes visit every line; bytes with CR or LF among
  /// them visit none. A line longer than LineBlocks::kLongestLine is passed
  /// over. The view lives until `visit` returns. The file is closed when this
  /// returns; an Error when it could not be opened or read.
  template <typename Visit>
  static Status forEachLine(const std::filesystem::path& file, std::string_view bytes,
                            Anchor anchor, Visit visit) {
    return scan(
        file, bytes, anchor,
        [](void* context, std::string_view line) { return (*static_cast<Visit*>(context))(line); },
        &visit);
  }

 private:
  using Callback = Next (*)(void* context, std::string_view line);
  static Status scan(const std::filesystem::path& file, std::string_view bytes, Anchor anchor,
                     Callback callback, void* context);
};

}  // namespace vel
