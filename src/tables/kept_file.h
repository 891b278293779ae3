#pragma once

#include <filesystem>
#include <optional>

#include "core/file.h"
#include "core/result.h"

namespace vel {

/// A file that is read again and again and stays open in between: opening it
/// costs as much as reading a small one. It is always the file that opening its
/// path would give. One reader at a time takes it and gives it back. A copy
/// keeps nothing.
class KeptFile {
 public:
  KeptFile() = default;
  KeptFile(const KeptFile& /*other*/) noexcept {}
  KeptFile& operator=(const KeptFile& /*other*/) noexcept { return *this; }
  KeptFile(KeptFile&&) noexcept = default;
  KeptFile& operator=(KeptFile&&) noexcept = default;
  ~KeptFile() = default;

  /// The file at its beginning: the kept one while the path leads to it and
  /// nobody has changed it, else opened anew. Fails as InputFile::open does.
  Result<InputFile> take(const std::filesystem::path& path);

  /// Keeps a file that was taken for the next time.
  void giveBack(InputFile file);

  void close() { file_.reset(); }

 private:
  std::optional<InputFile> file_;
  std::optional<FileIdentity> identity_;  // of the file that was taken last
};

}  // namespace vel
