#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "core/desktop.h"
#include "core/file.h"
#include "core/folders.h"

namespace vel {

/// The photos of one station: `<registration>.jpg` in its photo folder,
/// whatever the letter case. A registration came over the air: one that would
/// leave the folder has no photo.
class PhotoFolder {
 public:
  explicit PhotoFolder(const Folders& folders) : index_(folders.pics) {}

  /// The photo of a registration, or nothing.
  [[nodiscard]] std::optional<std::filesystem::path> find(std::string_view registration);

  /// noimage.jpg, which stands for a missing photo; nothing when it is missing.
  [[nodiscard]] std::optional<std::filesystem::path> placeholder();

 private:
  FolderIndex index_;
};

/// Opens the photo of a registration with the desktop's program for it, and
/// noimage.jpg where that fails.
void openPhoto(Desktop& desktop, const Folders& folders, std::string_view registration);

}  // namespace vel
