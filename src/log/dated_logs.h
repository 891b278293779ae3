#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vel {

/// The names of the dated logs of one decoder: every file of the folder whose
/// name begins with "20" and ends in the suffix ("_list.csv",
/// "_HFDL_FMT.log"), whatever its letter case, sorted by name. UTF-8; empty
/// when the folder is missing or cannot be listed.
[[nodiscard]] std::vector<std::string> datedLogs(const std::filesystem::path& folder,
                                                 std::string_view suffix);

/// Which of the names a browser selects: the one that was shown before, or,
/// where none was (`remembered` is empty), the one that sorts last as text: the
/// names are dated, so that is the newest. -1 when there is none to select,
/// also when the log that was shown is gone.
[[nodiscard]] int chooseLog(const std::vector<std::string>& names, std::string_view remembered);

}  // namespace vel
