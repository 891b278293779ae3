#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/file.h"
#include "core/folders.h"
#include "core/result.h"

namespace vel {

/// The five tables by the names that their files carry.
enum class Table { aircraft, flight, airport, letter, icao24 };

constexpr std::array<Table, 5> kTables = {Table::aircraft, Table::flight, Table::airport,
                                          Table::letter, Table::icao24};

constexpr std::string_view kTableExtension = ".csv";

/// The usual name of the table's files, without the extension: "FLIGHT".
[[nodiscard]] std::string tableName(Table table);

/// Where one table and the two files of its rewrite lie. Files are found
/// whatever their letter case and keep the names they were found under. Of a
/// table that is a symbolic link, all three lie at the target's place, under
/// the target's name.
struct TableFiles {
  std::filesystem::path named;      ///< `<name>.csv` in the data folder, also where it is a link
  std::filesystem::path live;       ///< the table itself
  std::filesystem::path temporary;  ///< `<name>.$$$`, while the new table is written
  std::filesystem::path backup;     ///< `<name>.bak`, the table before the last rewrite
};

[[nodiscard]] TableFiles filesOf(const Folders& folders, Table table);

/// What is wrong with a line that lacks a field or is too long: "ERROR #" and
/// the number, a blank line, the table's file name and the line's number,
/// counted from 1.
[[nodiscard]] Error errorInLine(ErrorNumber number, const std::filesystem::path& table,
                                std::size_t line);

/// The lock under which a table's files change; another program that has it is
/// waited for, up to a second. Nothing where it still has it then.
[[nodiscard]] std::optional<FolderLock> waitForLock(const TableFiles& files);

/// Finishes, for every table, a rewrite that was cut off between its two
/// renames: where `<name>.csv` is missing while both `<name>.$$$` and
/// `<name>.bak` exist, the new file takes its place. No other state is touched,
/// and none that another program is just changing.
void recoverTables(const Folders& folders);

}  // namespace vel
