#include "tables/kept_file.h"

#include <utility>

namespace vel {

Result<InputFile> KeptFile::take(const std::filesystem::path& path) {
  if (std::optional<InputFile> kept = std::exchange(file_, std::nullopt)) {
    if (identityOf(path) == identity_ && kept->rewind()) return *std::move(kept);
  }
  Result<InputFile> opened = InputFile::open(path);
  identity_ = opened ? opened->identity() : std::nullopt;
  return opened;
}

void KeptFile::giveBack(InputFile file) {
  if (identity_) file_ = std::move(file);
}

}  // namespace vel
