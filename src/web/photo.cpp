#include "web/photo.h"

#include <string>

#include "core/helpers.h"

namespace vel {
namespace {

constexpr const char* kPlaceholder = "noimage.jpg";
constexpr int kFirstSuccess = 33;

std::string photoName(std::string_view registration) { return std::string(registration) + ".jpg"; }

}  // namespace

std::optional<std::filesystem::path> PhotoFolder::find(std::string_view registration) {
  if (registration.empty() || !isSafeFileName(registration)) return std::nullopt;
  return index_.find(photoName(registration));
}

std::optional<std::filesystem::path> PhotoFolder::placeholder() {
  return index_.find(kPlaceholder);
}

void openPhoto(Desktop& desktop, const Folders& folders, std::string_view registration) {
  const bool safe = isSafeFileName(registration);
  const int result =
      safe ? ShellOpen(desktop, nativeText(fileIn(folders.pics, photoName(registration)))) : 0;
  if (result < kFirstSuccess) {
    ShellOpen(desktop, nativeText(fileIn(folders.pics, kPlaceholder)));
  }
}

}  // namespace vel
