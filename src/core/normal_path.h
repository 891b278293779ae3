#pragma once

#include <filesystem>

namespace vel {

/// The absolute path of a folder, without "." and ".." in it and without a
/// separator at its end, unless it is a root: "dir/" and "dir" are one folder,
/// and have one parent.
[[nodiscard]] std::filesystem::path normalPath(const std::filesystem::path& path);

}  // namespace vel
