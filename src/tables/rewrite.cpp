#include "tables/rewrite.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "core/file.h"
#include "tables/line_blocks.h"

namespace vel {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// How the lines of other keys go into the new table.
struct CarryRule {
  std::size_t keptFields;  ///< every line must have as many; 0 copies the line as it is
  bool dropsComments;      ///< lines without a comma are left out
  bool keepsOneMore;       ///< a field behind them is kept where there is one
};

CarryRule ruleOf(Table table, LetterFields letterFields) {
  switch (table) {
    case Table::aircraft:
      return {2, true, false};
    case Table::flight:
      return {3, false, false};
    case Table::airport:
      return {2, false, false};
    case Table::letter:
      return {letterFields == LetterFields::four ? std::size_t{4} : std::size_t{3}, false,
              letterFields == LetterFields::asTheyAre};
    case Table::icao24:
      break;
  }
  return {0, false, false};
}

// The records that a rewrite puts into a table, by number, have
//   count(), how many there are;
//   of(field), the number of the one that takes the place of a line with that
//     field 1;
//   record(number), in the table's encoding; empty deletes the lines of its key,
//     and a new key is not added then;
//   keepsLine(number), true where a line of the record's key stays as it is;
//   isAdded(number), false for one that stays out.

/// The record of a single edit.
class OneRecord {
 public:
  OneRecord(const Encoding& encoding, std::string_view key, const std::string& record)
      : key_(encoding, key), record_(record) {}

  [[nodiscard]] static std::size_t count() { return 1; }
  [[nodiscard]] std::optional<std::size_t> of(std::string_view firstField) const {
    return key_.equals(firstField) ? std::optional<std::size_t>(0) : std::nullopt;
  }
  [[nodiscard]] std::string_view record(std::size_t) const { return record_; }
  [[nodiscard]] static bool keepsLine(std::size_t) { return false; }
  [[nodiscard]] bool isAdded(std::size_t) const { return !record_.empty(); }

 private:
  Key key_;
  const std::string& record_;
};

/// Those of a batch that are included.
class BatchRecords {
 public:
  explicit BatchRecords(const RecordBatch& batch) : batch_(batch) {}

  [[nodiscard]] std::size_t count() const { return batch_.size(); }
  [[nodiscard]] std::optional<std::size_t> of(std::string_view firstField) const {
    const auto found = batch_.find(firstField);
    return found && batch_.isIncluded(*found) ? found : std::nullopt;
  }
  [[nodiscard]] std::string_view record(std::size_t number) const { return batch_.record(number); }
  [[nodiscard]] bool keepsLine(std::size_t number) const { return batch_.isOnlyAdded(number); }
  [[nodiscard]] bool isAdded(std::size_t number) const { return batch_.isIncluded(number); }

 private:
  const RecordBatch& batch_;
};

/// The first fields of a line, of which the first one ends at `comma`, or nothing
/// when there are not so many.
std::optional<std::string_view> firstFields(std::string_view line, std::size_t comma,
                                            std::size_t count) {
  for (std::size_t field = 1; field < count; ++field) {
    if (comma == std::string_view::npos) return std::nullopt;
    comma = line.find(',', comma + 1);
  }
  return line.substr(0, comma);
}

/// Carries the lines of the live table over, with the edit applied.
template <typename Records>
class EditedCopy {
 public:
  /// `table` names the file in errors.
  EditedCopy(const CarryRule& rule, bool keepsOldKey, const Records& records,
             std::filesystem::path table, OutputFile& to)
      : rule_(rule),
        keepsOldKey_(keepsOldKey),
        records_(records),
        isWritten_(records.count()),
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

  /// Adds the records of keys that no line had.
  Status finish() {
    for (std::size_t number = 0; number < isWritten_.size(); ++number) {
      if (isWritten_[number] || !records_.isAdded(number)) continue;
      if (const Status status = writeLine(records_.record(number)); !status) return status;
    }
    return {};
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
    if (const auto number = records_.of(firstField)) {
      if (!records_.keepsLine(*number)) return replaced(*number, firstField);
      isWritten_[*number] = true;
    }
    if (rule_.keptFields == 0) return {.written = true, .text = line};
    if (rule_.keepsOneMore) {
      if (const auto more = firstFields(line, comma, rule_.keptFields + 1)) {
        return {.written = true, .text = *more};
      }
    }
    const auto kept = firstFields(line, comma, rule_.keptFields);
    if (!kept) return {.incomplete = true};
    return {.written = true, .text = *kept};
  }

  Carried replaced(std::size_t number, std::string_view firstField) {
    const std::string_view record = records_.record(number);
    if (isWritten_[number] || record.empty()) {
      isWritten_[number] = true;
      return {};
    }
    isWritten_[number] = true;
    if (!keepsOldKey_) return {.written = true, .text = record};
    // A record may be a key and nothing else.
    replacing_.assign(firstField);
    replacing_.append(record.substr(std::min(record.find(','), record.size())));
    return {.written = true, .text = replacing_};
  }

  Status writeLine(std::string_view text) {
    const Status status = to_.write(text);
    return status ? to_.write(kLineEnd) : status;
  }

  CarryRule rule_;
  bool keepsOldKey_;
  const Records& records_;
  std::vector<bool> isWritten_;  // or, without a text, its lines were left out
  std::string replacing_;
  std::filesystem::path table_;
  OutputFile& to_;
  std::size_t lineNumber_ = 0;
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

/// Writes the edited table into the open new file, down to the disk. `makeCopy`
/// makes what carries the table over.
template <typename CopyMaker>
Status writeEdited(LineBlocks& lines, const TableFiles& files, const Encoding& encoding,
                   const CopyMaker& makeCopy, OutputFile file) {
  if (const Status status = file.copyPermissions(files.live); !status) return status;
  auto copy = makeCopy(file);
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
template <typename CopyMaker>
Status writeNewTable(const TableFiles& files, const Encoding& encoding, const CopyMaker& makeCopy) {
  if (const Status status = clearSecondName(files); !status) return status;
  Result<InputFile> live = InputFile::open(files.live);
  if (!live) return live.error();
  LineBlocks lines(*std::move(live), LineBlocks::LongerLines::fail, byteOrderMarkOf(encoding));
  Result<OutputFile> file = OutputFile::create(files.temporary);
  if (!file) return file.error();
  const Status written = writeEdited(lines, files, encoding, makeCopy, *std::move(file));
  // The first failure is the one to report.
  if (!written) static_cast<void>(removeFile(files.temporary));
  return written;
}

}  // namespace

ReferenceTableRewrite::ReferenceTableRewrite(const Folders& folders, const Encoding& encoding,
                                             TableEdit edit)
    : folders_(folders), encoding_(encoding), table_(edit.table), edit_(std::move(edit)) {}

ReferenceTableRewrite::ReferenceTableRewrite(const Folders& folders, const Encoding& encoding,
                                             std::shared_ptr<const RecordBatch> batch)
    : folders_(folders), encoding_(encoding), table_(batch->table()), edit_(std::move(batch)) {}

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
  if (const auto* edit = std::get_if<TableEdit>(&edit_)) {
    std::optional<std::string> record = encoding_.encode(edit->newRecord);
    if (!record || !canBeStored(encoding_, edit->newRecord) || !canBeKey(encoding_, edit->key)) {
      return RewriteOutcome::refused;
    }
    record_ = *std::move(record);
  }
  step_ = Step::write;
  return RewriteOutcome::more;
}

RewriteOutcome ReferenceTableRewrite::write() {
  files_ = filesOf(folders_, table_);
  lock_ = FolderLock::take(files_.live.parent_path());
  if (!lock_) return RewriteOutcome::busy;
  const auto writeWith = [&](const auto& records, LetterFields letterFields) {
    const CarryRule rule = ruleOf(table_, letterFields);
    return writeNewTable(files_, encoding_, [&](OutputFile& to) {
      return EditedCopy(rule, table_ == Table::letter, records, files_.named, to);
    });
  };
  const auto* edit = std::get_if<TableEdit>(&edit_);
  const Status written =
      edit != nullptr ? writeWith(OneRecord(encoding_, edit->key, record_), edit->letterFields)
                      : writeWith(BatchRecords(*std::get<1>(edit_)), LetterFields::asTheyAre);
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
