#include "web/photo.h"

#include <string>

#include "core/file.h"
#include "core/helpers.h"

namespace vel {
namespace {

constexpr const char* kPlaceholder = "noimage.jpg";
constexpr int kFirstSuccess = 33;

}  // namespace

std::optional<std::filesystem::path> PhotoFolder::find(std::string_view registration) {
  if (registration.empty()) return std::nullopt;
  const std::optional<std::string> name = photoName(registration);
  return name ? index_.find(*name) : std::nullopt;
}

std::optional<std::filesystem::path> PhotoFolder::placeholder() {
  return index_.find(kPlaceholder);
}

void openPhoto(Desktop& desktop, const Folders& folders, std::string_view registration) {
  int result = 0;
  if (const std::optional<std::string> name = photoName(registration)) {
    const std::filesystem::path photo = fileIn(folders.pics, *name);
    // What is there but is no file (a pipe, a folder) counts as missing; of what
    // is not there at all the opener says so itself.
    std::error_code error;
    const bool isSomethingElse =
        !fileExists(photo) &&
        std::filesystem::status(photo, error).type() != std::filesystem::file_type::not_found;
    if (!isSomethingElse) result = ShellOpen(desktop, nativeText(photo));
  }
  if (result < kFirstSuccess) {
    ShellOpen(desktop, nativeText(fileIn(folders.pics, kPlaceholder)));
  }
}

}  // namespace vel
