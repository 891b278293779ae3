#pragma once

#include <filesystem>
#include <optional>

#include "app/options.h"
#include "core/desktop.h"

namespace vel {

/// The program folder to work on: what the options say, a station around the
/// program itself, the station chosen last, or one that the user chooses now.
/// Nothing where he chooses none, or where none is known and nobody can be
/// asked: the desktop was told to end the program then.
[[nodiscard]] std::optional<std::filesystem::path> chooseProgramFolder(const Options& options,
                                                                       Desktop& desktop);

}  // namespace vel
