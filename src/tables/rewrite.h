#pragma once

#include <string>
#include <string_view>

#include "core/desktop.h"
#include "core/folders.h"
#include "core/text.h"

namespace vel {

/// The five tables by the names that their files carry.
enum class Table { aircraft, flight, airport, letter, icao24 };

/// One edit of a table. Texts are UTF-8; the encoding must be able to hold
/// them (see canBeStored).
struct TableEdit {
  Table table = Table::aircraft;
  /// What field 1 of the edited record equals.
  std::string key;
  /// The full line that takes the place of the first line of that key, or is
  /// added at the end; empty deletes every line of the key.
  std::string newRecord;
  /// letter.csv only: other lines keep their fourth field, and must have one.
  bool fourFields = false;
};

/// What became of a rewrite.
enum class RewriteOutcome {
  done,
  refused,  ///< the encoding cannot hold the record: kIllegalCharacter was shown, no file touched
  programEnds,  ///< the messages have been shown; the caller returns at once
};

/// The one way in which a table changes: writes `<name>.$$$`, checks and
/// flushes it, removes `<name>.bak`, renames the live table to `<name>.bak`
/// (with Retry and Cancel where another program holds it) and the new file to
/// `<name>.csv`. Files are found whatever their letter case and keep the names
/// they were found under. Lines that are carried through are copied byte for
/// byte, less the fields that the table's rule drops, and end in CR LF. On the
/// line that is replaced in letter.csv, field 1 stays as it stands in the file.
/// Lets the event loop run twice: once before anything is opened and once
/// before the renames. Whatever fails before the first rename ends the program
/// with the live table untouched: "ERROR #" and the number, 9 for a line
/// without the fields that its table's rule needs.
RewriteOutcome ReferenceTableRewrite(Desktop& desktop, const Folders& folders,
                                     const Encoding& encoding, const TableEdit& edit);

/// True when the encoding can hold the text, as part of one line: a line break
/// and U+FFFD, which stands for damaged bytes, cannot be held, nor a character
/// that would come back as another one (other than its twin of the same look,
/// such as the two forms of the wave dash).
[[nodiscard]] bool canBeStored(const Encoding& encoding, std::string_view text);

/// Finishes, for every table, a rewrite that was cut off between its two
/// renames: where `<name>.csv` is missing while both `<name>.$$$` and
/// `<name>.bak` exist, the new file takes its place. No other state is touched.
void recoverTables(const Folders& folders);

/// The refusal for a comma, a double quote, or a text that cannot be stored.
constexpr const char* kIllegalCharacter =
    "Illegal character is included. 登録できない文字が含まれています。";

/// The refusal of an editor that needs a selected line.
constexpr const char* kNoLineSelected = "Log list not selected. データが選択されていません";

}  // namespace vel
