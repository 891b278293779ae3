#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace vel {

// What is installed beside the program, found from the folder of the program
// itself: in one folder with it, where a system installs it, or where it was
// built.

/// The guide's page of that name ("acars") in a language ("ja"), or in English
/// where that language has none.
[[nodiscard]] std::optional<std::filesystem::path> guidePage(
    const std::filesystem::path& executableFolder, std::string_view page,
    std::string_view language);

/// The program that makes a sample station.
[[nodiscard]] std::optional<std::filesystem::path> sampleMaker(
    const std::filesystem::path& executableFolder);

}  // namespace vel
