#pragma once

#include <filesystem>
#include <string_view>

#include "core/folders.h"

namespace vel {

/// The files in the program folder, each found whatever the letter case of its
/// name; a missing one has its usual name.
[[nodiscard]] std::filesystem::path settingsFile(const Folders& folders);  ///< vel.env
[[nodiscard]] std::filesystem::path servicesFile(const Folders& folders);  ///< services.ini
[[nodiscard]] std::filesystem::path kmlFile(const Folders& folders);       ///< temp.kml
[[nodiscard]] std::filesystem::path columnsFile(const Folders& folders);   ///< columns.ini

/// What is added to the names of these files while they are written.
inline constexpr std::string_view kSettingsSuffix = ".new";  ///< vel.env, columns.ini
inline constexpr std::string_view kKmlSuffix = ".part";

/// Removes what a killed program left of files half written. For the one
/// running copy of the program folder, at its start.
void removeLeftOvers(const Folders& folders);

}  // namespace vel
