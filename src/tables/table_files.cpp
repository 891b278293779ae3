#include "tables/table_files.h"

#include <chrono>
#include <thread>

namespace vel {
namespace {

constexpr std::string_view kTemporaryExtension = ".$$$";
constexpr std::string_view kBackupExtension = ".bak";

// How often, and in what steps, another program that is just changing a table is
// waited for.
constexpr int kLockTries = 100;
constexpr std::chrono::milliseconds kLockWait{10};

bool isCutOff(const TableFiles& files) {
  return !fileExists(files.live) && fileExists(files.temporary) && fileExists(files.backup);
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
  files.live = linkTarget(files.named);
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

Error errorInLine(ErrorNumber number, const std::filesystem::path& table, std::size_t line) {
  Error error{number};
  error.message =
      error.text() + "\n\n" + toUtf8(table.filename()) + ", line " + std::to_string(line);
  return error;
}

std::optional<FolderLock> waitForLock(const TableFiles& files) {
  const std::filesystem::path folder = files.live.parent_path();
  std::optional<FolderLock> lock = FolderLock::take(folder);
  for (int i = 0; i < kLockTries && !lock; ++i) {
    std::this_thread::sleep_for(kLockWait);
    lock = FolderLock::take(folder);
  }
  return lock;
}

void recoverTables(const Folders& folders) {
  for (const Table table : kTables) {
    const TableFiles files = filesOf(folders, table);
    if (!isCutOff(files)) continue;
    // Another program may be between its renames at this moment.
    const std::optional<FolderLock> lock = waitForLock(files);
    if (!lock || !isCutOff(files)) continue;
    // Where this fails, the look-ups report the missing table.
    if (renameFile(files.temporary, files.live)) {
      static_cast<void>(flushFolder(files.live.parent_path()));
    }
  }
}

}  // namespace vel
