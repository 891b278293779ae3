#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/folders.h"
#include "core/result.h"
#include "core/text.h"
#include "exchange/import_rows.h"
#include "tables/table_files.h"

namespace vel {

/// What is imported: each kind of file is described in docs/formats/imports.md.
enum class ImportFormat {
  ourAirports,
  openFlightsAirports,
  standingAirports,
  openFlightsAirlines,
  standingAirlines,
  openSky,
  readsb,
  baseStation,
  standingAircraft,
  standingRoutes,
  ownAircraft,
  ownFlight,
  ownAirport,
  ownLetter,
  ownIcao24,
};

/// What the user is told that a file is.
[[nodiscard]] std::string nameOf(ImportFormat format);

/// The tables that it fills, in the order of kTables.
[[nodiscard]] std::vector<Table> tablesFilledBy(ImportFormat format);

/// A record as a row of the file gives it: the fields of its table. Texts are
/// UTF-8, without the blanks around them, and not yet made storable.
struct ImportedRecord {
  Table table = Table::aircraft;
  std::array<std::string, 5> fields;
};

/// How many fields a table's records have.
[[nodiscard]] std::size_t fieldsOf(Table table);

/// The airline codes of letter.csv, in both directions.
class AirlineCodes;

/// A file to be imported: recognised by its header or its shape, whatever its
/// name, and read row by row.
class ImportSource {
 public:
  /// `only` says which table is wanted, where one is, and so tells what VEL's
  /// own tables are that look alike. An Error with its message where the file
  /// is none of those that can be read, or does not fill that table; the
  /// message says what was expected.
  static Result<std::unique_ptr<ImportSource>> open(const Folders& folders,
                                                    const Encoding& encoding,
                                                    const std::filesystem::path& file,
                                                    std::optional<Table> only,
                                                    const ImportLimits& limits = {});
  ~ImportSource();

  [[nodiscard]] ImportFormat format() const { return format_; }

  /// The records of the next row, none or up to two; false at the end.
  Result<bool> next(std::vector<ImportedRecord>& records);

  /// Rows read so far, the header left out.
  [[nodiscard]] std::size_t rows() const { return rows_; }
  /// Those of them that gave no record: without a code, of a closed airport, of
  /// an airline that letter.csv does not have.
  [[nodiscard]] std::size_t unusable() const { return unusable_; }
  [[nodiscard]] double progress() const { return rowSource_->progress(); }

 private:
  ImportSource() = default;
  static Result<std::unique_ptr<ImportSource>> openDatabase(const std::filesystem::path& file,
                                                            const ImportLimits& limits);
  [[nodiscard]] std::string_view at(std::size_t column) const;
  void convert(std::vector<ImportedRecord>& records);
  void addAirport(std::vector<ImportedRecord>& records, std::string_view code,
                  std::string_view shortCode, std::string_view place, std::string_view name) const;
  void addAirline(std::vector<ImportedRecord>& records, std::string_view prefix,
                  std::string_view code, std::string_view name) const;
  void addAircraft(std::vector<ImportedRecord>& records, std::string_view address,
                   std::string_view registration, std::string_view equipment,
                   std::string_view threeLetter, std::string_view twoLetter) const;
  void addRoute(std::vector<ImportedRecord>& records, std::string_view airline,
                std::string_view number, std::string_view airports) const;
  void addOwn(std::vector<ImportedRecord>& records) const;

  ImportFormat format_ = ImportFormat::ownAircraft;
  std::unique_ptr<Encoding> encoding_;  // of a text that is not UTF-8
  std::unique_ptr<ImportRows> rowSource_;
  std::unique_ptr<AirlineCodes> airlines_;
  std::vector<std::size_t> columns_;  // of the format's fields
  std::size_t fewestFields_ = 0;
  bool hasHeader_ = false;
  std::vector<std::string_view> row_;
  std::size_t rows_ = 0;
  std::size_t unusable_ = 0;
};

}  // namespace vel
