// Rewrites: the new table against a second, plain one, so that every other
// line's kept fields are byte for byte what they were; a rewrite that does not
// come to its end leaves everything as it was.

#include "tables/rewrite.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

std::size_t keptFields(const TableEdit& edit) {
  switch (edit.table) {
    case Table::aircraft:
    case Table::airport:
      return 2;
    case Table::flight:
      return 3;
    case Table::letter:
      return edit.letterFields == LetterFields::four ? 4 : 3;
    case Table::icao24:
      break;
  }
  return 0;
}

/// The new table; nothing where a line lacks a field.
std::optional<std::string> rewritten(std::string_view bytes, const TableEdit& edit,
                                     const Encoding& encoding) {
  const std::string_view mark = byteOrderMarkOf(encoding);
  std::string table;
  if (!mark.empty() && bytes.starts_with(mark)) {
    table = mark;
    bytes.remove_prefix(mark.size());
  }
  const std::string record = *encoding.encode(edit.newRecord);
  const std::string key = encoding.decode(*encoding.encode(edit.key));
  bool written = false;
  for (const std::string_view line : plainLines(bytes, true)) {
    const std::vector<std::string_view> fields = plainFields(line);
    if (edit.table == Table::aircraft && fields.size() == 1) continue;
    const std::size_t kept = keptFields(edit);
    if (line.empty()) {
      table += "\r\n";
    } else if (encoding.decode(fields[0]) == key) {
      if (!written && !record.empty()) {
        const std::size_t comma = record.find(',');
        const bool keepsKey = edit.table == Table::letter;
        table += keepsKey ? std::string(fields[0]) : record.substr(0, comma);
        if (comma != std::string::npos) table += record.substr(comma);
        table += "\r\n";
      }
      written = true;
    } else if (kept == 0) {
      table.append(line).append("\r\n");
    } else {
      if (fields.size() < kept) return std::nullopt;
      for (std::size_t i = 0; i < kept; ++i) table.append(i == 0 ? "" : ",").append(fields[i]);
      table += "\r\n";
    }
  }
  if (!written && !record.empty()) table += record + "\r\n";
  return table;
}

void run(const Station& station, Parts parts) {
  const std::string_view first = parts.next();
  const Encoding encoding = encodingOf(lineOfPart(first, 0));
  TableEdit edit;
  edit.table = kTables[static_cast<std::size_t>(numberOf(lineOfPart(first, 1), 5))];
  edit.letterFields = lineOfPart(first, 2) == "four" ? LetterFields::four : LetterFields::three;
  edit.key = lineOfPart(first, 3);
  edit.newRecord = lineOfPart(first, 4);
  const std::string_view bytes = parts.rest();
  const auto& data = station.folders().data;
  const std::string name = tableName(edit.table);
  const auto live = data / (name + ".csv");
  const auto backup = data / (name + ".bak");
  const auto temporary = data / (name + ".$$$");
  put(live, bytes);
  put(backup, "the backup before");

  ReferenceTableRewrite rewrite(station.folders(), encoding, edit);
  RewriteOutcome outcome = RewriteOutcome::more;
  while (outcome == RewriteOutcome::more) outcome = rewrite.next();
  check(!std::filesystem::exists(temporary), "a new table is left beside the old one");
  if (outcome == RewriteOutcome::done) {
    const std::optional<std::string> expected = rewritten(bytes, edit, encoding);
    check(expected.has_value(), "a table with an incomplete line was rewritten");
    check(get(live) == *expected, "another new table");
    check(get(backup) == bytes, "another backup");
    return;
  }
  check(get(live) == bytes && get(backup) == "the backup before", "not as it was");
  if (outcome == RewriteOutcome::refused) return;
  check(outcome == RewriteOutcome::failed, "an outcome for which there is no reason");
  check(rewrite.error().number == ErrorNumber::incompleteRecord, "another error");
  check(!rewritten(bytes, edit, encoding), "a whole table was not rewritten");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
