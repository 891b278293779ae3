#include "tables/rewrite.h"

#include <cstring>
#include <optional>
#include <system_error>
#include <utility>

#include "core/file.h"
#include "core/helpers.h"
#include "tables/line_blocks.h"
#include "tables/record.h"

namespace vel {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// How the lines of other keys go into the new table.
struct CarryRule {
  const char* name;        ///< of the table's files, without the extension
  std::size_t keptFields;  ///< every line must have as many; 0 copies the line as it is
  bool dropsComments;      ///< lines without a comma are left out
};

CarryRule ruleOf(Table table, bool fourFields) {
  switch (table) {
    case Table::aircraft:
      return {"aircraft", 2, true};
    case Table::flight:
      return {"FLIGHT", 3, false};
    case Table::airport:
      return {"airport", 2, false};
    case Table::letter:
      return {"letter", fourFields ? std::size_t{4} : std::size_t{3}, false};
    case Table::icao24:
      break;
  }
  return {"ICAO24", 0, false};
}

struct TableFiles {
  std::filesystem::path live;
  std::filesystem::path temporary;
  std::filesystem::path backup;
};

TableFiles filesOf(const std::filesystem::path& folder, const std::string& name) {
  return {fileIn(folder, name + ".csv"), fileIn(folder, name + ".$$$"),
          fileIn(folder, name + ".bak")};
}

/// The first fields of a line, or nothing when there are not so many.
std::optional<std::string_view> firstFields(std::string_view line, std::size_t count) {
  std::size_t end = 0;
  for (std::size_t field = 1;; ++field) {
    const std::size_t comma = line.find(',', end);
    if (field == count) return line.substr(0, comma);
    if (comma == std::string_view::npos) return std::nullopt;
    end = comma + 1;
  }
}

/// Carries the lines of the live table over, with the edit applied.
class EditedCopy {
 public:
  /// `record` is the edit's new record in the table's encoding.
  EditedCopy(const TableEdit& edit, const Encoding& encoding, std::string record, OutputFile& to)
      : rule_(ruleOf(edit.table, edit.fourFields)),
        keepsOldKey_(edit.table == Table::letter),
        key_(encoding, edit.key),
        record_(std::move(record)),
        to_(to) {}

  /// Takes the next lines, whole ones but for the last of the file.
  Status add(std::string_view block) {
    // Lines that stay as they are wait here, to be written in one piece.
    std::string_view unchanged;
    while (!block.empty()) {
      const std::string_view raw = block.substr(0, MinOf(block.find('\n'), block.size() - 1) + 1);
      block.remove_prefix(raw.size());
      const std::string_view line = withoutLineEnd(raw);
      const Carried carried = carry(line);
      if (carried.incomplete) return ErrorNumber::incompleteRecord;
      const bool asItIs = carried.written && carried.text.data() == line.data() &&
                          carried.text.size() == line.size() &&
                          raw.size() == line.size() + kLineEnd.size();
      if (asItIs) {
        const char* const begin = unchanged.empty() ? raw.data() : unchanged.data();
        unchanged = {begin, unchanged.size() + raw.size()};
        continue;
      }
      Status status = to_.write(std::exchange(unchanged, {}));
      if (status && carried.written) status = writeLine(carried.text);
      if (!status) return status;
    }
    return to_.write(unchanged);
  }

  /// Adds the record of a key that no line had.
  Status finish() {
    if (!pending_ || record_.empty()) return {};
    return writeLine(record_);
  }

 private:
  struct Carried {
    bool written = false;
    bool incomplete = false;
    std::string_view text = {};
  };

  static std::string_view withoutLineEnd(std::string_view raw) {
    if (raw.ends_with('\n')) raw.remove_suffix(1);
    if (raw.ends_with('\r')) raw.remove_suffix(1);
    return raw;
  }

  Carried carry(std::string_view line) {
    const std::size_t comma = line.find(',');
    if (rule_.dropsComments && comma == std::string_view::npos) return {};
    const std::string_view firstField = line.substr(0, comma);
    if (key_.equals(firstField)) {
      if (!std::exchange(pending_, false) || record_.empty()) return {};
      if (keepsOldKey_) record_.replace(0, record_.find(','), firstField);
      return {.written = true, .text = record_};
    }
    if (rule_.keptFields == 0) return {.written = true, .text = line};
    const auto kept = firstFields(line, rule_.keptFields);
    if (!kept) return {.incomplete = true};
    return {.written = true, .text = *kept};
  }

  Status writeLine(std::string_view text) {
    const Status status = to_.write(text);
    return status ? to_.write(kLineEnd) : status;
  }

  CarryRule rule_;
  bool keepsOldKey_;
  Key key_;
  std::string record_;
  OutputFile& to_;
  bool pending_ = true;
};

/// Removes a new file that is the live table under a second name: to empty it
/// would empty the table. Done before the table is opened, because a system may
/// keep every name of a file until it is closed.
Status clearLinkToLive(const TableFiles& files) {
  std::error_code error;
  if (!std::filesystem::equivalent(files.live, files.temporary, error)) return {};
  return removeFile(files.temporary);
}

/// Makes way for the new file. One that cannot be removed is emptied.
void clearTemporary(const TableFiles& files) { static_cast<void>(removeFile(files.temporary)); }

/// Writes the edited table into the open new file, down to the disk.
Status writeEdited(LineBlocks& lines, const TableFiles& files, const TableEdit& edit,
                   const Encoding& encoding, const std::string& record, OutputFile file) {
  if (const Status status = file.copyPermissions(files.live); !status) return status;
  EditedCopy copy(edit, encoding, record, file);
  while (true) {
    const Result<std::string_view> block = lines.next();
    if (!block) return block.error();
    if (block->empty()) break;
    if (const Status status = copy.add(*block); !status) return status;
  }
  if (const Status status = copy.finish(); !status) return status;
  return file.finish();
}

/// Makes `<name>.$$$`. A file that could not be finished does not stay: it
/// must never be taken for a table.
Status writeNewTable(const TableFiles& files, const TableEdit& edit, const Encoding& encoding,
                     const std::string& record) {
  if (const Status status = clearLinkToLive(files); !status) return status;
  Result<InputFile> live = InputFile::open(files.live);
  if (!live) return live.error();
  LineBlocks lines(*std::move(live), LineBlocks::LongerLines::fail);
  clearTemporary(files);
  Result<OutputFile> file = OutputFile::create(files.temporary);
  if (!file) return file.error();
  const Status written = writeEdited(lines, files, edit, encoding, record, *std::move(file));
  // The first failure is the one to report.
  if (!written) static_cast<void>(removeFile(files.temporary));
  return written;
}

/// Puts the new table in the place of the live one.
RewriteOutcome exchangeFiles(Desktop& desktop, const Folders& folders, const TableFiles& files) {
  const auto fail = [&](const Error& error) {
    endWithError(desktop, error);
    return RewriteOutcome::programEnds;
  };
  // Without a new table the live one stays where it is.
  if (!fileExists(files.temporary)) return fail({ErrorNumber::fileNotFound});
  if (fileExists(files.backup)) {
    if (const Status removed = removeFile(files.backup); !removed) return fail(removed.error());
  }
  if (RenameWithRetry(desktop, files.live, files.backup) == RenameOutcome::programEnds) {
    return RewriteOutcome::programEnds;
  }
  if (const Status renamed = renameFile(files.temporary, files.live); !renamed) {
    return fail(renamed.error());
  }
  if (const Status flushed = flushFolder(folders.data); !flushed) return fail(flushed.error());
  return RewriteOutcome::done;
}

}  // namespace

RewriteOutcome ReferenceTableRewrite(Desktop& desktop, const Folders& folders,
                                     const Encoding& encoding, const TableEdit& edit) {
  const std::optional<std::string> record = encoding.encode(edit.newRecord);
  if (!record || !canBeStored(encoding, edit.newRecord)) {
    desktop.showMessage(kIllegalCharacter);
    return RewriteOutcome::refused;
  }

  desktop.processEvents();
  if (desktop.isEnding()) return RewriteOutcome::programEnds;

  const TableFiles files = filesOf(folders.data, ruleOf(edit.table, edit.fourFields).name);
  if (const Status written = writeNewTable(files, edit, encoding, *record); !written) {
    endWithError(desktop, written.error());
    return RewriteOutcome::programEnds;
  }

  desktop.processEvents();
  if (desktop.isEnding()) return RewriteOutcome::programEnds;

  return exchangeFiles(desktop, folders, files);
}

void recoverTables(const Folders& folders) {
  for (const Table table :
       {Table::aircraft, Table::flight, Table::airport, Table::letter, Table::icao24}) {
    const std::string name = ruleOf(table, false).name;
    const auto temporary = findFile(folders.data, name + ".$$$");
    if (findFile(folders.data, name + ".csv") || !temporary ||
        !findFile(folders.data, name + ".bak")) {
      continue;
    }
    // Where this fails, the look-ups report the missing table.
    if (renameFile(*temporary, folders.data / toPath(name + ".csv"))) {
      static_cast<void>(flushFolder(folders.data));
    }
  }
}

}  // namespace vel
