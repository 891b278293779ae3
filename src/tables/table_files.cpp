#include "tables/table_files.h"

#include <system_error>

#include "core/file.h"

namespace vel {
namespace {

constexpr std::string_view kTemporaryExtension = ".$$$";
constexpr std::string_view kBackupExtension = ".bak";

// As many links in a row are followed, as systems do.
constexpr int kMostLinks = 40;

// The file behind a symbolic link, which need not exist; any other path as it is.
std::filesystem::path behindLinks(std::filesystem::path file) {
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code error;
    if (!std::filesystem::is_symlink(std::filesystem::symlink_status(file, error))) return file;
    const std::filesystem::path target = std::filesystem::read_symlink(file, error);
    if (error) return file;
    // An absolute target replaces the whole path.
    file = file.parent_path() / target;
  }
  return file;
}

}  // namespace

std::string tableName(Table table) {
  switch (table) {
    case Table::aircraft:
      return "aircraft";
    case Table::flight:
      return "FLIGHT";
    case Table::airport:
      return "airport";
    case Table::letter:
      return "letter";
    case Table::icao24:
      break;
  }
  return "ICAO24";
}

TableFiles filesOf(const Folders& folders, Table table) {
  std::string name = tableName(table);
  TableFiles files;
  files.named = fileIn(folders.data, name + std::string(kTableExtension));
  files.live = behindLinks(files.named);
  const std::filesystem::path folder = files.live.parent_path();
  if (files.live != files.named) {
    const std::string extension = toUtf8(files.live.extension());
    name = toUtf8(equalIgnoringCase(extension, kTableExtension) ? files.live.stem()
                                                                : files.live.filename());
  }
  files.temporary = fileIn(folder, name + std::string(kTemporaryExtension));
  files.backup = fileIn(folder, name + std::string(kBackupExtension));
  return files;
}

Error incompleteRecord(const std::filesystem::path& table, std::size_t line) {
  Error error{ErrorNumber::incompleteRecord};
  error.message =
      error.text() + "\n\n" + toUtf8(table.filename()) + ", line " + std::to_string(line);
  return error;
}

void recoverTables(const Folders& folders) {
  for (const Table table : kTables) {
    const TableFiles files = filesOf(folders, table);
    if (fileExists(files.live) || !fileExists(files.temporary) || !fileExists(files.backup)) {
      continue;
    }
    // Where this fails, the look-ups report the missing table.
    if (renameFile(files.temporary, files.live)) {
      static_cast<void>(flushFolder(files.live.parent_path()));
    }
  }
}

}  // namespace vel
