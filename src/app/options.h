#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tables/table_files.h"

namespace vel {

/// What the command line asks for. Paths are empty where it says nothing.
struct Options {
  std::filesystem::path programFolder;
  /// Load as usual, save a picture of the window to this file, and exit.
  std::filesystem::path screenshot;
  /// Ask for the station, also where one is known.
  bool chooseStation = false;
  /// Import this file without a window, and exit.
  std::filesystem::path importFile;
  std::optional<Table> importTable;  ///< into this table only
  bool importAll = false;            ///< also what no log of the station names
  bool importReplaces = false;       ///< records that the tables have otherwise too
  bool importTells = false;          ///< only say what would be done
};

/// How a program ends that has nothing more to do than to print this.
struct ExitAtOnce {
  int status = 0;
  std::string output;
  std::string errors;
};

/// The program's arguments in UTF-8, without its own name. One implementation
/// for each platform.
[[nodiscard]] std::vector<std::string> commandLine(int argc, const char* const* argv);

/// Reads the options. With help, version or an error the program ends. What begins with a single
/// hyphen and is unknown is the windowing toolkit's.
[[nodiscard]] std::variant<Options, ExitAtOnce> readOptions(std::vector<std::string> arguments);

}  // namespace vel
