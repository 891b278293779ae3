#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "core/folders.h"
#include "core/text.h"
#include "exchange/import_plan.h"

namespace vel {

/// What the command line asks an import for.
struct ImportCommand {
  std::filesystem::path file;
  ImportWish wish;
  bool dryRun = false;  ///< only say what would be done
};

/// The table of that name as the command line says it, "flight"; nothing for
/// another name.
[[nodiscard]] std::optional<Table> tableNamed(std::string_view name);

/// A plan in words, a line for each table: "airport.csv: 3 new, 1 differs, 2 the
/// same".
[[nodiscard]] std::string planText(const ImportPlan& plan);

/// Makes a table that is missing, empty, so that records can go into it. A file
/// that a rewrite left when it was cut off is put in its place before.
Status makeMissingTable(const Folders& folders, Table table);

/// Imports without a window: says what is done on `out`, and what is wrong on
/// `errors`. The exit status: 0, or 1 where the file was refused or a table
/// could not be written.
int runImport(const Folders& folders, const ImportCommand& command, std::FILE* out,
              std::FILE* errors);

}  // namespace vel
