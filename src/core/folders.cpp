#include "core/folders.h"

#include "core/file.h"

namespace vel {

Folders Folders::of(const std::filesystem::path& programFolder) {
  std::error_code error;
  std::filesystem::path program =
      std::filesystem::absolute(programFolder, error).lexically_normal();
  // "dir/" and "dir" are one folder, and have one parent.
  if (!program.has_filename() && program.has_relative_path()) program = program.parent_path();
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
