#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "core/result.h"

/// What the platforms tell about files and folders without opening them: a part
/// of platform.h, for core alone.
namespace vel::platform {

/// The path from a root on, without "." and ".." in it.
std::filesystem::path absolutePath(const std::filesystem::path& path);

enum class FileKind {
  nothing,  ///< there is none of that name
  regular,
  folder,
  other,    ///< a pipe, a device
  unknown,  ///< cannot be looked at
};

/// What a path leads to, links followed.
FileKind kindOf(const std::filesystem::path& path);

struct FolderEntry {
  std::filesystem::path name;
  FileKind kind;
};

/// What a folder holds, in no order.
Result<std::vector<FolderEntry>> entriesOf(const std::filesystem::path& folder);

struct FolderChange {
  std::filesystem::file_time_type time;  ///< on a scale of the platform's own
  bool isRecent;                         ///< so lately that another change may get the same time
};

/// When a folder's entries changed last; nothing where it cannot be told.
std::optional<FolderChange> lastChangeOf(const std::filesystem::path& folder);

}  // namespace vel::platform
