#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "core/file.h"
#include "core/folders.h"
#include "core/result.h"
#include "core/text.h"
#include "tables/edits.h"
#include "tables/record.h"
#include "tables/record_batch.h"
#include "tables/table_files.h"

namespace vel {

/// What a step of a rewrite has come to.
enum class RewriteOutcome {
  more,     ///< the next step waits
  done,     ///< the table has changed
  refused,  ///< the key or the record cannot be stored; no file was touched
  busy,     ///< another program rewrites a table: the same step can be tried again in a moment
  held,     ///< another program holds the table: the same step can be tried again
  failed,   ///< error() says why
};

/// The one way in which a table changes: writes `<name>.$$$`, checks and
/// flushes it, removes `<name>.bak`, renames the live table to `<name>.bak` and
/// the new file to `<name>.csv`, and flushes the folder. Lines that are carried
/// through are copied byte for byte, less the fields that the table's rule
/// drops, and end in CR LF. On the line that is replaced in letter.csv, field 1
/// stays as it stands in the file. While it runs it holds the lock of the folder
/// that the table lies in. Whatever fails or is given up before the
/// first rename leaves the live table untouched.
class ReferenceTableRewrite {
 public:
  ReferenceTableRewrite(const Folders& folders, const Encoding& encoding, TableEdit edit);

  /// Many records at once: each included record takes the place of the first
  /// line of its key and removes the later ones; those of new keys are added at
  /// the end in their order. A line of letter.csv keeps its fourth field, and a
  /// line of a record that is only added stays in all.
  ReferenceTableRewrite(const Folders& folders, const Encoding& encoding,
                        std::shared_ptr<const RecordBatch> batch);

  /// Does the next of three steps: checks the edit, which touches no file;
  /// makes the new file; exchanges the files. A step that answered `busy` or
  /// `held` is tried again. Not called after `done`, `refused` or `failed`.
  RewriteOutcome next();

  /// What to tell the user after `failed`.
  [[nodiscard]] const Error& error() const { return error_; }

 private:
  enum class Step { check, write, removeBackup, exchange };

  RewriteOutcome check();
  RewriteOutcome write();
  RewriteOutcome removeBackup();
  RewriteOutcome exchange();
  RewriteOutcome fail(const Error& error);

  Folders folders_;
  Encoding encoding_;
  Table table_;
  std::variant<TableEdit, std::shared_ptr<const RecordBatch>> edit_;
  std::string record_;  // the new one of a single edit, as bytes
  TableFiles files_;
  std::optional<FolderLock> lock_;
  Step step_ = Step::check;
  Error error_;
};

/// The question whether to try again where another program holds the table.
constexpr const char* kTableHeld =
    "Can't write file. Using Excel to edit CSV? If not edited by Excel, close it to continue."
    "　ファイルの書込みができません。エクセルでCSVファイルを開いていませんか？。"
    "エクセル側で書き換えを行っていなければエクセルを閉じてから再試行を行うと継続できます。";

/// The refusal of an editor that needs a selected line.
constexpr const char* kNoLineSelected = "Log list not selected. データが選択されていません";

}  // namespace vel
