#include "tests/fuzz/import_trial.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include <zlib.h>

#include "exchange/import_plan.h"
#include "tables/record.h"
#include "tables/rewrite.h"

namespace vel::fuzz {
namespace {

/// What a rewrite keeps of a line; nothing where it lacks a field.
std::optional<std::string> keptOf(Table table, std::string_view line) {
  if (table == Table::icao24) return std::string(line);
  const std::vector<std::string_view> fields = plainFields(line);
  const std::size_t needed = fieldsOf(table) - (table == Table::letter ? 1 : 0);
  if (fields.size() < needed) return std::nullopt;
  std::string kept;
  for (std::size_t i = 0; i < std::min(fields.size(), fieldsOf(table)); ++i) {
    kept.append(i == 0 ? "" : ",").append(fields[i]);
  }
  return kept;
}

std::string_view keyOf(std::string_view line) { return plainFields(line)[0]; }

/// That a record is whole, and is read back as it was stored.
void checkRecord(const Encoding& encoding, Table table, std::string_view line) {
  const std::size_t fields = plainFields(line).size();
  const std::size_t most = fieldsOf(table);
  check(fields == most || (table == Table::letter && fields == 3), "a record of other fields");
  const std::string_view key = keyOf(line);
  const bool isPlain = std::all_of(key.begin(), key.end(), [](char c) { return c > 0x20; });
  check(!key.empty() && isPlain, "a record with a key that is none");
  for (const char c : line) {
    const auto byte = static_cast<unsigned char>(c);
    check(byte >= 0x20 && byte != 0x7F && c != '"', "a record with a character that breaks it");
  }
  const std::string text = encoding.decode(line);
  check(isUtf8(text), "a record that is no text");
  check(encoding.encode(text) == std::string(line), "a record that is read as another one");
}

/// A table after an import of the batch, line by line beside the one before.
void checkTable(const Encoding& encoding, const RecordBatch& batch, std::string_view before,
                std::string_view after, bool replaces) {
  const Table table = batch.table();
  const std::string_view mark = byteOrderMarkOf(encoding);
  if (!mark.empty() && before.starts_with(mark)) {
    check(after.starts_with(mark), "the byte order mark is lost");
    before.remove_prefix(mark.size());
    after.remove_prefix(mark.size());
  }
  check(after.empty() || after.ends_with("\r\n"), "the last line does not end");
  const std::vector<std::string_view> news = plainLines(after, true);
  std::size_t at = 0;
  std::set<std::string, std::less<>> keys;
  std::set<std::string, std::less<>> replaced;
  for (const std::string_view line : plainLines(before, true)) {
    if (table == Table::aircraft && plainFields(line).size() == 1) continue;
    keys.emplace(keyOf(line));
    const auto number = batch.find(keyOf(line));
    const bool isReplaced =
        !line.empty() && number && batch.isIncluded(*number) && !batch.isOnlyAdded(*number);
    if (isReplaced) {
      check(replaces, "a line was replaced though nobody asked for it");
      if (!replaced.emplace(keyOf(line)).second) continue;
      check(at < news.size() && keyOf(news[at]) == keyOf(line), "a replaced line is lost");
      ++at;
      continue;
    }
    const std::optional<std::string> kept = line.empty() ? "" : keptOf(table, line);
    check(kept.has_value(), "a table with an incomplete line was rewritten");
    check(at < news.size() && news[at] == *kept, "a line of another key is not what it was");
    ++at;
  }
  for (; at < news.size(); ++at) {
    checkRecord(encoding, table, news[at]);
    check(keys.emplace(keyOf(news[at])).second, "a key was added that was there");
  }
}

void putLogs(const Folders& folders) {
  put(folders.logs / "20260102_list.csv",
      "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time\r\n"
      "NH0105,X,JA731A,RJTT,PHNL,B773,-,8:00:00\r\nBA0117,X,GXLEA,EGLL,JFK,A388,-,8:10:00\r\n");
  put(folders.logs / "202601020000_HFDL_FMT.log",
      "[2]------------------------[2026/01/02 00:04:19]\r\n   ICAO24 ADDRESS = 3482D8\r\n"
      "   REGISTRATION   = EC-OLF\r\n   FLIGHT ID      = WH5744\r\n");
}

std::optional<Table> tableOf(std::string_view digit) {
  if (digit.size() != 1 || digit[0] < '0' || digit[0] > '4') return std::nullopt;
  return kTables[static_cast<std::size_t>(digit[0] - '0')];
}

}  // namespace

std::string packed(std::string_view bytes) {
  z_stream stream{};
  constexpr int kGzipOnly = 16;
  check(deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, kGzipOnly + MAX_WBITS, 8,
                     Z_DEFAULT_STRATEGY) == Z_OK,
        "nothing can be packed");
  std::string made(deflateBound(&stream, static_cast<uLong>(bytes.size())) + 64, '\0');
  std::string copy(bytes);
  stream.next_in = reinterpret_cast<Bytef*>(copy.data());
  stream.avail_in = static_cast<uInt>(copy.size());
  stream.next_out = reinterpret_cast<Bytef*>(made.data());
  stream.avail_out = static_cast<uInt>(made.size());
  check(deflate(&stream, Z_FINISH) == Z_STREAM_END, "the bytes were not packed");
  made.resize(made.size() - stream.avail_out);
  deflateEnd(&stream);
  return made;
}

void importAndCheck(const Station& station, const ImportTrial& trial, std::string_view file) {
  const Folders& folders = station.folders();
  const Encoding encoding = encodingOf(lineOfPart(trial.options, 0));
  const ImportWish wish{.table = tableOf(lineOfPart(trial.options, 1)),
                        .all = lineOfPart(trial.options, 2) == "all",
                        .replace = lineOfPart(trial.options, 3) == "replace"};
  const std::optional<Table> filled = tableOf(lineOfPart(trial.options, 4));
  putLogs(folders);
  std::map<Table, std::string> before;
  for (const Table table : kTables) {
    before[table] = table == filled ? trial.before : "";
    put(filesOf(folders, table).live, before[table]);
  }
  const auto path = folders.pics / "import";
  put(path, file);

  // What a small file may take.
  constexpr ImportLimits kLimits{.longestRow = 1 << 16,
                                 .mostBytes = 1 << 20,
                                 .mostRows = 5000,
                                 .mostMemory = std::size_t{16} << 20};
  ImportPlanning planning(folders, encoding, path, wish, kLimits);
  Result<JobProgress> progress = JobProgress::more;
  while (progress && *progress == JobProgress::more) progress = planning.step(Job::Clock::now());
  check(get(path) == file, "the file is another one");
  if (!progress) {
    check(!progress.error().message.empty() && isUtf8(progress.error().message),
          "a file was refused without a word");
    for (const Table table : kTables) {
      check(get(filesOf(folders, table).live) == before[table], "a table of a refused file");
    }
    return;
  }
  for (const TablePlan& plan : planning.plan().tables) {
    const TableFiles files = filesOf(folders, plan.table());
    ReferenceTableRewrite rewrite(folders, encoding, plan.records);
    RewriteOutcome outcome = RewriteOutcome::more;
    while (outcome == RewriteOutcome::more) outcome = rewrite.next();
    if (outcome == RewriteOutcome::done) {
      checkTable(encoding, *plan.records, before[plan.table()], get(files.live), wish.replace);
      continue;
    }
    check(outcome == RewriteOutcome::failed, "an outcome for which there is no reason");
    check(rewrite.error().number == ErrorNumber::incompleteRecord, "another error");
    check(get(files.live) == before[plan.table()], "not as it was");
  }
}

}  // namespace vel::fuzz
