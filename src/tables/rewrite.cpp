#include "tables/rewrite.h"

#include <optional>
#include <system_error>
#include <utility>

#include "core/file.h"
#include "tables/line_blocks.h"

namespace vel {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// How the lines of other keys go into the new table.
struct CarryRule {
  std::size_t keptFields;  ///< every line must have as many; 0 copies the line as it is
  bool dropsComments;      ///< lines without a comma are left out
};

CarryRule ruleOf(const TableEdit& edit) {
  switch (edit.table) {
    case Table::aircraft:
      return {2, true};
    case Table::flight:
      return {3, false};
    case Table::airport:
      return {2, false};
    case Table::letter:
      return {edit.letterFields == LetterFields::four ? std::size_t{4} : std::size_t{3}, false};
    case Table::icao24:
      break;
  }
  return {0, false};
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
  /// `record` is the edit's new record in the table's encoding; `table` names
  /// the file in errors.
  EditedCopy(const TableEdit& edit, const Encoding& encoding, std::string record,
             std::filesystem::path table, OutputFile& to)
      : rule_(ruleOf(edit)),
        keepsOldKey_(edit.table == Table::letter),
        key_(encoding, edit.key),
        record_(std::move(record)),
        table_(std::move(table)),
        to_(to) {}

  /// Takes the next lines, whole ones but for the last of the file.
  Status add(std::string_view block) {
    // Lines that stay as they are wait here, to be written in one piece.
    std::string_view unchanged;
    const char* const end = block.data() + block.size();
    for (const char* place = block.data(); place < end;) {
      const BlockLine line = lineAt(place, end);
      place += line.raw.size();
      ++lineNumber_;
      const Carried carried = carry(line.text);
      if (carried.incomplete)
        return errorInLine(ErrorNumber::incompleteRecord, table_, lineNumber_);
      const bool asItIs = carried.written && carried.text.data() == line.text.data() &&
                          carried.text.size() == line.text.size() &&
                          line.raw.size() == line.text.size() + kLineEnd.size();
      if (asItIs) {
        const char* const begin = unchanged.empty() ? line.raw.data() : unchanged.data();
        unchanged = {begin, unchanged.size() + line.raw.size()};
        continue;
      }
      Status status = to_.write(std::exchange(unchanged, {}));
      if (status && carried.written) status = writeLine(carried.text);
      if (!status) return status;
    }
    return to_.write(unchanged);
  }

  /// The error of the line that follows those that were added.
  [[nodiscard]] Error errorInNextLine(ErrorNumber number) const {
    return errorInLine(number, table_, lineNumber_ + 1);
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

  Carried carry(std::string_view line) {
    const std::size_t comma = line.find(',');
    if (rule_.dropsComments && comma == std::string_view::npos) return {};
    // A line without any character is no record of any key.
    if (line.empty()) return {.written = true, .text = line};
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
  std::filesystem::path table_;
  OutputFile& to_;
  std::size_t lineNumber_ = 0;
  bool pending_ = true;
};

bool isFolder(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_directory(std::filesystem::symlink_status(path, error));
}

/// Removes a new file that is the live table under a second name. Done before
/// the table is opened: some systems keep every name of a file until then.
Status clearSecondName(const TableFiles& files) {
  std::error_code error;
  if (!std::filesystem::equivalent(files.live, files.temporary, error)) return {};
  return removeFile(files.temporary);
}

/// Writes the edited table into the open new file, down to the disk.
Status writeEdited(LineBlocks& lines, const TableFiles& files, const TableEdit& edit,
                   const Encoding& encoding, const std::string& record, OutputFile file) {
  if (const Status status = file.copyPermissions(files.live); !status) return status;
  EditedCopy copy(edit, encoding, record, files.named, file);
  for (bool first = true;; first = false) {
    const Result<std::string_view> block = lines.next();
    if (!block && lines.metLongerLine()) return copy.errorInNextLine(block.error().number);
    if (!block) return block.error();
    if (first && lines.hadByteOrderMark()) {
      if (const Status status = file.write(byteOrderMarkOf(encoding)); !status) return status;
    }
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
  if (const Status status = clearSecondName(files); !status) return status;
  Result<InputFile> live = InputFile::open(files.live);
  if (!live) return live.error();
  LineBlocks lines(*std::move(live), LineBlocks::LongerLines::fail, byteOrderMarkOf(encoding));
  Result<OutputFile> file = OutputFile::create(files.temporary);
  if (!file) return file.error();
  const Status written = writeEdited(lines, files, edit, encoding, record, *std::move(file));
  // The first failure is the one to report.
  if (!written) static_cast<void>(removeFile(files.temporary));
  return written;
}

}  // namespace

ReferenceTableRewrite::ReferenceTableRewrite(const Folders& folders, const Encoding& encoding,
                                             TableEdit edit)
    : folders_(folders), encoding_(encoding), edit_(std::move(edit)) {}

RewriteOutcome ReferenceTableRewrite::next() {
  switch (step_) {
    case Step::check:
      return check();
    case Step::write:
      return write();
    case Step::removeBackup:
      return removeBackup();
    case Step::exchange:
      break;
  }
  return exchange();
}

RewriteOutcome ReferenceTableRewrite::fail(const Error& error) {
  error_ = error;
  lock_.reset();
  return RewriteOutcome::failed;
}

RewriteOutcome ReferenceTableRewrite::check() {
  std::optional<std::string> record = encoding_.encode(edit_.newRecord);
  if (!record || !canBeStored(encoding_, edit_.newRecord) || !canBeKey(encoding_, edit_.key)) {
    return RewriteOutcome::refused;
  }
  record_ = *std::move(record);
  step_ = Step::write;
  return RewriteOutcome::more;
}

RewriteOutcome ReferenceTableRewrite::write() {
  files_ = filesOf(folders_, edit_.table);
  lock_ = FolderLock::take(files_.live.parent_path());
  if (!lock_) return RewriteOutcome::busy;
  const Status written = writeNewTable(files_, edit_, encoding_, record_);
  if (!written) return fail(written.error());
  step_ = Step::removeBackup;
  return RewriteOutcome::more;
}

RewriteOutcome ReferenceTableRewrite::removeBackup() {
  // Without a new table the live one stays where it is.
  if (!fileExists(files_.temporary)) return fail({ErrorNumber::fileNotFound});
  // A folder of that name stops the rename.
  if (!isFolder(files_.backup)) {
    const Status removed = removeFile(files_.backup);
    if (!removed && removed.error().number != ErrorNumber::fileNotFound) {
      return fail(removed.error());
    }
  }
  step_ = Step::exchange;
  return exchange();
}

RewriteOutcome ReferenceTableRewrite::exchange() {
  const Status kept = renameFile(files_.live, files_.backup);
  if (!kept && kept.error().number == ErrorNumber::pathAccess) return RewriteOutcome::held;
  if (!kept) return fail(kept.error());
  const Status renamed = renameFile(files_.temporary, files_.live);
  if (!renamed) return fail(renamed.error());
  const Status flushed = flushFolder(files_.live.parent_path());
  if (!flushed) return fail(flushed.error());
  lock_.reset();
  return RewriteOutcome::done;
}

}  // namespace vel
