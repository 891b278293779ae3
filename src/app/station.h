#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/result.h"

namespace vel {

// Which station an installed program works on: no station lies beside it, so
// the user chooses one, and it is remembered.

/// True for the program folder of a station: vel.env lies in it, or `data` or
/// `logs` stands beside it.
[[nodiscard]] bool isProgramFolder(const std::filesystem::path& folder);

/// True where a station lies in a folder: it holds `data` or `logs`.
[[nodiscard]] bool holdsStation(const std::filesystem::path& folder);

/// The program folder of the station that a user means by a folder: the folder
/// that holds `data` or `logs`, one of these two, one in them, or one beside
/// both. Where no folder of the station holds vel.env yet, it is the one called
/// `vel`, which may be missing. Nothing where no station is near.
[[nodiscard]] std::optional<std::filesystem::path> programFolderNear(
    const std::filesystem::path& chosen);

/// The names of the tables that a station lacks: "FLIGHT.csv".
[[nodiscard]] std::vector<std::string> missingTables(const std::filesystem::path& programFolder);

/// Makes what a station lacks: its folders, and empty tables. What is there
/// stays as it is.
Status completeStation(const std::filesystem::path& programFolder);

/// The station that was chosen last, as a program folder; nothing where none is
/// noted in that file. It may be gone meanwhile.
[[nodiscard]] std::optional<std::filesystem::path> rememberedStation(
    const std::filesystem::path& file);

/// Notes the chosen station in that file; its folder is made where it is missing.
Status rememberStation(const std::filesystem::path& file,
                       const std::filesystem::path& programFolder);

}  // namespace vel
