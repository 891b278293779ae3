#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vel {

/// The folders of one station. Every path of the program is built from the
/// program folder; the working folder does not matter.
struct Folders {
  std::filesystem::path program;   ///< vel.env, services.ini, temp.kml
  std::filesystem::path base;      ///< the program folder's parent
  std::filesystem::path data;      ///< the five tables
  std::filesystem::path logs;      ///< the dated logs
  std::filesystem::path eachLogs;  ///< one raw log for each aircraft
  std::filesystem::path pics;      ///< photos and noimage.jpg

  /// The folders that go with a program folder (made absolute), each found
  /// whatever the letter case of its name.
  static Folders of(const std::filesystem::path& programFolder);
};

/// The name that a registration's photo has in `pics`; nothing for a
/// registration that would leave the folder: it came over the air.
[[nodiscard]] std::optional<std::string> photoName(std::string_view registration);

}  // namespace vel
