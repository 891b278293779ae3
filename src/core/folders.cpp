#include "core/folders.h"

#include "core/file.h"
#include "core/normal_path.h"
#include "core/platform_folders.h"

namespace vel {

std::filesystem::path normalPath(const std::filesystem::path& path) {
  std::filesystem::path normal = platform::absolutePath(path);
  if (!normal.has_filename() && normal.has_relative_path()) normal = normal.parent_path();
  return normal;
}

Folders Folders::of(const std::filesystem::path& programFolder) {
  const std::filesystem::path program = normalPath(programFolder);
  Folders folders;
  folders.program = program;
  folders.base = program.parent_path();
  folders.data = folderIn(folders.base, "data");
  folders.logs = folderIn(folders.base, "logs");
  folders.eachLogs = folderIn(folders.logs, "EachLogs");
  folders.pics = folderIn(folders.base, "pics");
  return folders;
}

std::optional<std::string> photoName(std::string_view registration) {
  if (!isSafeFileName(registration)) return std::nullopt;
  return std::string(registration) + ".jpg";
}

}  // namespace vel
