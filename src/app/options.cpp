#include "app/options.h"

#include <algorithm>
#include <sstream>

#include <CLI/CLI.hpp>

#include "core/file.h"
#include "core/version.h"

namespace vel {

std::variant<Options, ExitAtOnce> readOptions(std::vector<std::string> arguments) {
  CLI::App app("Database manager for the logs of two aircraft data-link decoders", "vel");
  std::string programFolder;
  std::string screenshot;
  bool chooseStation = false;
  app.set_version_flag("-v,--version", std::string("vel ") + kVersion);
  app.add_option("--program-folder", programFolder,
                 "Use DIR as the program folder: ../data, ../logs and ../pics stand beside it")
      ->option_text("DIR");
  app.add_flag("--choose-station", chooseStation, "Ask for the station again");
  app.add_option("--screenshot", screenshot,
                 "Load as usual, save a picture of the window to FILE, and exit; messages go to "
                 "the standard error output")
      ->option_text("FILE");
  std::string importFile;
  std::string importTable;
  Options options;
  CLI::Option* const import =
      app.add_option(
             "--import", importFile,
             "Fill the tables from FILE without a window, say what was done, and exit: what "
             "the station's logs name and the tables lack")
          ->option_text("FILE");
  app.add_option("--table", importTable, "Import into this table only")
      ->option_text("aircraft|flight|airport|letter|icao24")
      ->check(CLI::IsMember({"aircraft", "flight", "airport", "letter", "icao24"}))
      ->needs(import);
  app.add_flag("--all", options.importAll, "Import also what no log of the station names")
      ->needs(import);
  app.add_flag("--replace", options.importReplaces,
               "Correct the records that the tables have otherwise")
      ->needs(import);
  app.add_flag("--dry-run", options.importTells, "Only say what an import would do")->needs(import);
  app.allow_extras();
  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(arguments);
    std::vector<std::string> unknown = app.remaining();
    std::erase_if(unknown, [](const std::string& each) { return !each.starts_with("--"); });
    if (!unknown.empty()) throw CLI::ExtrasError(unknown);
  } catch (const CLI::ParseError& error) {
    std::ostringstream output;
    std::ostringstream errors;
    const int status = app.exit(error, output, errors);
    return ExitAtOnce{status, output.str(), errors.str()};
  }
  options.programFolder = toPath(programFolder);
  options.screenshot = toPath(screenshot);
  options.chooseStation = chooseStation;
  options.importFile = toPath(importFile);
  for (const Table table : kTables) {
    if (equalIgnoringCase(tableName(table), importTable)) options.importTable = table;
  }
  return options;
}

}  // namespace vel
