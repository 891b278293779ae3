#include "exchange/import_plan.h"

#include <algorithm>
#include <utility>

#include "core/file.h"
#include "exchange/list_saving.h"
#include "exchange/storable.h"
#include "tables/edits.h"
#include "tables/record.h"
#include "tables/table_scanner.h"

namespace vel {
namespace {

constexpr std::uint32_t kNotMet = 0;
constexpr std::uint32_t kSame = 1;
constexpr std::uint32_t kFirstDifference = 2;

bool isPlainKey(std::string_view key) {
  return !key.empty() && std::all_of(key.begin(), key.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte > 0x20 && byte < 0x7F && c != ',' && c != '"';
  });
}

// The line with the record's fields in place of its own, where the record has
// any. The line's fields behind those stay.
std::string merged(Table table, std::string_view line, std::string_view record) {
  std::vector<std::string_view> fields = split(line, ',');
  const std::vector<std::string_view> news = split(record, ',');
  // A table of three fields does not get a fourth here and there.
  const std::size_t most =
      table == Table::letter ? std::min<std::size_t>(3, news.size()) : news.size();
  if (fields.size() < most) fields.resize(most);
  for (std::size_t i = 1; i < most; ++i) {
    const bool saysNothing = news[i].empty() || (table == Table::flight && news[i] == kNoRemark &&
                                                 i == 2 && !fields[i].empty());
    if (!saysNothing) fields[i] = news[i];
  }
  const std::size_t kept = table == Table::icao24 ? fields.size() : fieldsOf(table);
  std::string text;
  for (std::size_t i = 0; i < fields.size() && i < kept; ++i) {
    if (i > 0) text += ',';
    text.append(fields[i]);
  }
  return text;
}

}  // namespace

std::vector<std::string> fieldsOfLine(const Encoding& encoding, Table table,
                                      std::string_view line) {
  std::vector<std::string> texts;
  for (const std::string_view field : split(line, ',')) {
    if (texts.size() == fieldsOf(table)) break;
    texts.push_back(encoding.decode(field));
  }
  return texts;
}

ImportPlanning::ImportPlanning(const Folders& folders, const Encoding& encoding,
                               std::filesystem::path file, const ImportWish& wish,
                               const ImportLimits& limits)
    : folders_(folders),
      encoding_(encoding),
      file_(std::move(file)),
      wish_(wish),
      limits_(limits) {}

ImportPlanning::~ImportPlanning() = default;

std::string ImportPlanning::stageText() const {
  switch (stage_) {
    case Stage::opening:
    case Stage::logs:
      return "Reading the logs ログ読込み中";
    case Stage::rows:
      return "Reading the file ファイル読込み中";
    case Stage::tables:
      break;
  }
  return "Comparing with the tables データ照合中";
}

double ImportPlanning::progress() const {
  switch (stage_) {
    case Stage::opening:
      return 0;
    case Stage::logs:
      return reading_ ? reading_->progress() : 0;
    case Stage::rows:
      return source_ ? source_->progress() : 0;
    case Stage::tables:
      break;
  }
  return plan_.tables.empty()
             ? 1
             : static_cast<double>(compared_) / static_cast<double>(plan_.tables.size());
}

void ImportPlanning::noteLetterFields() {
  static_cast<void>(TableScanner::forEachLine(
      filesOf(folders_, Table::letter).live, {}, TableScanner::Anchor::lineStart,
      [this](std::string_view line) {
        lettersHaveFour_ = fieldAt(line, 3).has_value();
        return lettersHaveFour_ ? TableScanner::Next::stop : TableScanner::Next::more;
      }));
}

Status ImportPlanning::open() {
  auto source = ImportSource::open(folders_, encoding_, file_, wish_.table, limits_);
  if (!source) return source.error();
  source_ = *std::move(source);
  plan_.format = source_->format();
  for (const Table table : tablesFilledBy(plan_.format)) {
    if (!wish_.table || *wish_.table == table) plan_.tables.emplace_back(table);
  }
  noteLetterFields();
  stage_ = wish_.all ? Stage::rows : Stage::logs;
  if (!wish_.all) reading_ = std::make_unique<MentionReading>(folders_, encoding_, mentions_);
  return {};
}

void ImportPlanning::add(TablePlan& table, const ImportedRecord& record, std::string_view key) {
  std::size_t fields = fieldsOf(record.table);
  if (record.table == Table::letter && !lettersHaveFour_) fields = 3;
  bool changed = false;
  line_.assign(key);
  for (std::size_t i = 1; i < fields; ++i) {
    // A table with companies has one on every line.
    const bool isCompany = record.table == Table::letter && i == 3 && record.fields[i].empty();
    const auto stored =
        storableField(encoding_, isCompany ? record.fields[2] : record.fields[i], changed);
    if (!stored) {
      ++plan_.unstorable;
      return;
    }
    line_.append(1, ',').append(*stored);
  }
  if (table.records->add(line_) && changed) ++plan_.altered;
}

Status ImportPlanning::take(const ImportedRecord& record) {
  const auto table =
      std::find_if(plan_.tables.begin(), plan_.tables.end(),
                   [&](const TablePlan& each) { return each.table() == record.table; });
  if (table == plan_.tables.end()) return {};
  const std::string& key = record.fields[0];
  if (!isPlainKey(key)) {
    ++plan_.unstorable;
    return {};
  }
  if (wish_.all) {
    add(*table, record, key);
  } else {
    for (const std::string& wanted : mentions_.keysFor(record.table, key, record.fields[1])) {
      if (isPlainKey(wanted)) add(*table, record, wanted);
    }
  }
  if (table->records->memory() <= limits_.mostMemory) return {};
  return importError("The records take more than " + std::to_string(limits_.mostMemory >> 20) +
                         " MiB of memory, which is the limit.",
                     "データが多すぎます。");
}

Result<bool> ImportPlanning::readRow() {
  const Result<bool> more = source_->next(records_);
  if (!more) return more.error();
  if (!*more) return false;
  for (const ImportedRecord& record : records_) {
    if (const Status taken = take(record); !taken) return taken.error();
  }
  return true;
}

Status ImportPlanning::openTable() {
  const TablePlan& plan = plan_.tables[compared_];
  met_.assign(plan.records->size(), kNotMet);
  Result<InputFile> file = InputFile::open(filesOf(folders_, plan.table()).live);
  if (file) {
    table_ = std::make_unique<LineBlocks>(*std::move(file), LineBlocks::LongerLines::fail,
                                          byteOrderMarkOf(encoding_));
    return {};
  }
  if (file.error().number == ErrorNumber::fileNotFound) return {};
  return Error{file.error().number, tableName(plan.table()) + ".csv: " + reasonOf(file.error())};
}

void ImportPlanning::compareLine(TablePlan& plan, std::string_view line) {
  const std::size_t comma = line.find(',');
  if (plan.table() == Table::aircraft && comma == std::string_view::npos) return;
  const auto number = plan.records->find(line.substr(0, comma));
  if (!number) return;
  std::uint32_t& met = met_[*number];
  if (met != kNotMet && plan.table() != Table::aircraft) return;
  // What a record becomes is told by the file's text, which its difference with
  // an earlier line may have changed.
  if (met >= kFirstDifference) return;
  if (met == kSame) --plan.same;
  const std::string after = merged(plan.table(), line, plan.records->record(*number));
  if (after == line) {
    met = kSame;
    ++plan.same;
    return;
  }
  met = kFirstDifference + static_cast<std::uint32_t>(plan.differences.size());
  plan.records->replace(*number, after);
  plan.differences.push_back({*number, std::string(line)});
}

// False when the table has been compared.
Result<bool> ImportPlanning::compareBlock() {
  TablePlan& plan = plan_.tables[compared_];
  if (table_ != nullptr) {
    const Result<std::string_view> block = table_->next();
    if (!block) {
      return Error{block.error().number,
                   tableName(plan.table()) + ".csv: " + reasonOf(block.error())};
    }
    const char* const end = block->data() + block->size();
    for (const char* place = block->data(); place < end;) {
      const BlockLine line = lineAt(place, end);
      place += line.raw.size();
      compareLine(plan, line.text);
    }
    if (!block->empty()) return true;
    table_.reset();
  }
  for (std::size_t number = 0; number < met_.size(); ++number) {
    if (met_[number] == kNotMet) {
      ++plan.fresh;
      // Somebody may add one of that key before it is written.
      plan.records->setOnlyAdded(number);
    }
    const bool differs = met_[number] >= kFirstDifference;
    plan.records->setIncluded(number, met_[number] == kNotMet || (differs && wish_.replace));
  }
  return false;
}

Result<JobProgress> ImportPlanning::step(Clock::time_point deadline) {
  do {
    switch (stage_) {
      case Stage::opening:
        if (const Status opened = open(); !opened) return opened.error();
        break;
      case Stage::logs: {
        const Result<JobProgress> read = reading_->step(deadline);
        if (!read) return read.error();
        if (*read == JobProgress::done) stage_ = Stage::rows;
        break;
      }
      case Stage::rows: {
        constexpr int kRows = 256;
        for (int i = 0; i < kRows && stage_ == Stage::rows; ++i) {
          const Result<bool> more = readRow();
          if (!more) return more.error();
          if (*more) continue;
          plan_.rows = source_->rows();
          plan_.unusable = source_->unusable();
          stage_ = Stage::tables;
          if (const Status opened = openTable(); !opened) return opened.error();
        }
        break;
      }
      case Stage::tables: {
        const Result<bool> more = compareBlock();
        if (!more) return more.error();
        if (*more) break;
        if (++compared_ == plan_.tables.size()) return JobProgress::done;
        if (const Status opened = openTable(); !opened) return opened.error();
        break;
      }
    }
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

}  // namespace vel
