#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "acars/short_lines.h"
#include "core/line_reader.h"
#include "core/result.h"
#include "core/text.h"
#include "log/log_reader.h"
#include "log/row_store.h"
#include "tables/tables.h"

namespace vel {

/// The columns of the ACARS list.
enum ListColumn : int {
  kListLine,
  kListFlight,
  kListPict,
  kListRegistration,
  kListDeparture,
  kListDestination,
  kListEquipment,
  kListRemarks,
  kListTime,
  kListColumns
};

/// Lines by their photo mark, in the order in which the window offers them.
enum class PhotoFilter { all, available, unavailable };

/// How a time is compared with that of a line, in the order in which the window
/// offers it: up to it, beginning with it, from it on.
enum class TimeComparison { earlier, prefix, later };

/// What the list shows of a log. Texts are UTF-8; an empty text passes every row.
struct ListFilter {
  PhotoFilter photo = PhotoFilter::all;
  TimeComparison timeComparison = TimeComparison::prefix;
  std::string time = {};
  std::string flight = {};
  std::string registration = {};
  std::string airport = {};  ///< in the departure or in the destination
  std::string equipment = {};
  std::string remarks = {};
  bool unknownAirlineOnly = false;  ///< only flights that the table does not find
};

/// The lines of a log that were no records.
struct MalformedLines {
  std::size_t count = 0;    ///< those with a comma at least
  std::string example;      ///< text of the last one counted
  std::string lineNumbers;  ///< all of them, joined by ","

  /// The report that is shown once after a read; empty when there is none.
  [[nodiscard]] std::string report() const;
};

/// The name of a day's list log ends so.
constexpr std::string_view kListLogSuffix = "_list.csv";

/// The message where there is none.
constexpr const char* kNoListLog =
    "Can't find correct log in the log folder. Use log function by date-naming. "
    "logsフォルダに日付別の航空機リストのログファイルが見つかりません";

/// Four digits at least: "0001".
[[nodiscard]] std::string listLineNumber(std::size_t number);

/// Reads a day's list log into rows, step by step, so that events can run in
/// between. Rows hold fields 1 to 8 as the list shows them, in the bytes of
/// the log's encoding, joined by commas.
class ListLogReader : public LogReader {
 public:
  static constexpr char kSeparator = ',';

  /// The tables are only read when the filter asks for unknown airlines.
  ListLogReader(InputFile file, const Encoding& encoding, const ListFilter& filter,
                const Tables& tables);

  /// Rows that pass the filter are added to `rows`.
  Result<bool> step(std::chrono::steady_clock::time_point deadline, RowStore& rows) override;

  [[nodiscard]] const MalformedLines& malformed() const { return malformed_; }
  [[nodiscard]] bool failedLookUp() const override { return failedLookUp_; }
  [[nodiscard]] std::string report() const override { return malformed_.report(); }

 private:
  // A filter text in both of its forms.
  struct Needle {
    std::string utf8;
    bool ascii = true;
  };
  struct Fields {
    std::string_view field[8];
  };

  Needle needle(const std::string& utf8) const;
  bool contains(std::string_view field, const Needle& needle) const;
  bool passesPhoto(std::string_view mark) const;
  bool passesTime(std::string_view time) const;
  Result<bool> passes(const Fields& fields, std::string_view flight, std::string_view time);
  Status take(std::string_view line, RowStore& rows);
  void chooseProbe();
  bool cannotPass(const ShortLine& line) const;
  Status takeShort(const char* line, const ShortLine& cut, RowStore& rows);
  Result<bool> takeShortLines(RowStore& rows);
  void reject(std::string_view line);

  LineReader lines_;
  Encoding encoding_;
  const Tables& tables_;
  ListFilter filter_;
  Needle flight_;
  Needle registration_;
  Needle airport_;
  Needle equipment_;
  Needle remarks_;
  bool anyText_ = false;
  bool anyFilter_ = false;
  // A line can only pass when this byte stands in these fields of it, or a
  // byte that is not ASCII does.
  const Needle* probed_ = nullptr;
  std::size_t probedFrom_ = 0;  // fields
  std::size_t probedTo_ = 0;
  std::string photoMark_;  // the full-width form, in the log's bytes
  std::string noPhotoMark_;
  MalformedLines malformed_;
  std::size_t lineNumber_ = 0;
  std::string time_;  // of the row at hand, filled with zeros
  bool failedLookUp_ = false;
};

}  // namespace vel
