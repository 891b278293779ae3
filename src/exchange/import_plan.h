#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/folders.h"
#include "core/job.h"
#include "core/result.h"
#include "core/text.h"
#include "exchange/import_source.h"
#include "exchange/station_mentions.h"
#include "tables/line_blocks.h"
#include "tables/record_batch.h"

namespace vel {

/// What of a file is wanted.
struct ImportWish {
  std::optional<Table> table = {};  ///< only this one
  bool all = false;            ///< also what no log of the station names
  bool replace = false;        ///< the records that differ are taken at first
};

/// A record that the table has otherwise.
struct ImportDifference {
  std::size_t record;  ///< its number in the batch
  std::string before;  ///< the table's line, in its encoding
};

/// What an import would do to one table. Of the records, those that are included
/// are written.
struct TablePlan {
  explicit TablePlan(Table table) : records(std::make_shared<RecordBatch>(table)) {}

  [[nodiscard]] Table table() const { return records->table(); }
  [[nodiscard]] std::size_t written() const { return records->includedCount(); }

  std::shared_ptr<RecordBatch> records;
  std::vector<ImportDifference> differences;  ///< in the order of the table
  std::size_t fresh = 0;                      ///< records that the table does not have
  std::size_t same = 0;                       ///< records that it has just so
};

/// What an import would do.
struct ImportPlan {
  ImportFormat format = ImportFormat::ownAircraft;
  std::vector<TablePlan> tables;
  std::size_t rows = 0;        ///< of the file
  std::size_t unusable = 0;    ///< rows without a record
  std::size_t altered = 0;     ///< records with a text that was made storable
  std::size_t unstorable = 0;  ///< records that cannot be stored and are left out
};

/// Reads a file that is to be imported and compares it with the tables. Nothing
/// is written, and what no log asks for is not even kept.
///
/// Of several records of one key the first counts. A field that the file has
/// nothing for keeps what the table has. Of several lines of one key in a table
/// the first is compared, in aircraft.csv all are.
class ImportPlanning : public Job {
 public:
  ImportPlanning(const Folders& folders, const Encoding& encoding, std::filesystem::path file,
                 const ImportWish& wish, const ImportLimits& limits = {});
  ~ImportPlanning() override;

  /// An Error has its message: the file is none that can be imported, is damaged,
  /// or a table cannot be read. A missing table counts as empty.
  Result<JobProgress> step(Clock::time_point deadline) override;

  /// What it is at: English and Japanese.
  [[nodiscard]] std::string stageText() const;
  /// Of the stage, 0 to 1.
  [[nodiscard]] double progress() const;

  /// Complete once done.
  [[nodiscard]] ImportPlan& plan() { return plan_; }

 private:
  enum class Stage { opening, logs, rows, tables };

  Status open();
  Result<bool> readRow();
  Status take(const ImportedRecord& record);
  void add(TablePlan& table, const ImportedRecord& record, std::string_view key);
  Result<bool> compareBlock();
  void compareLine(TablePlan& table, std::string_view line);
  Status openTable();
  void noteLetterFields();

  Folders folders_;
  Encoding encoding_;
  std::filesystem::path file_;
  ImportWish wish_;
  ImportLimits limits_;
  Stage stage_ = Stage::opening;
  StationMentions mentions_;
  std::unique_ptr<MentionReading> reading_;
  std::unique_ptr<ImportSource> source_;
  std::vector<ImportedRecord> records_;  // of the row at hand
  std::string line_;
  bool lettersHaveFour_ = false;
  ImportPlan plan_;
  std::size_t compared_ = 0;  // tables
  std::unique_ptr<LineBlocks> table_;
  // Of each record of the table at hand: 0 not in the table, 1 the same, above
  // that the number of its difference, from 2.
  std::vector<std::uint32_t> met_;
};

/// The fields of a table's line, at most as many as its records have, decoded.
[[nodiscard]] std::vector<std::string> fieldsOfLine(const Encoding& encoding, Table table,
                                                    std::string_view line);

}  // namespace vel
