#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/file.h"
#include "core/folders.h"
#include "core/line_reader.h"
#include "core/result.h"
#include "core/text.h"
#include "hfdl/hfdl_parser.h"

namespace vel {

/// How the names of the formatted logs end: `yyyymmdd0000_HFDL_FMT.log`.
constexpr std::string_view kHfdlLogSuffix = "_HFDL_FMT.log";

/// What the user is told where no log can be selected.
constexpr const char* kNoHfdlLog =
    "Can't find correct HFDL_FMT log file in the log folder. Use log function by date-naming. "
    "logsフォルダに日付別のHFDLのFMTログファイルが見つかりません";

/// The names of the formatted logs, sorted; see datedLogs and chooseLog.
[[nodiscard]] std::vector<std::string> hfdlLogs(const Folders& folders);

/// One aircraft's part of a message, as it was received. UTF-8; nothing is
/// trimmed.
struct HfdlRecord {
  std::string timeStamp;      ///< yyyy/mm/dd hh:mm:ss
  std::string tag;            ///< the header's first three characters
  std::string direction;      ///< "D", "U", or empty
  std::string groundStation;  ///< at most kLongestStationName characters
  std::string address;        ///< ICAO 24-bit address
  std::string registration;
  std::string flightId;
};

/// The kinds of lines that records are made of.
constexpr HfdlLines kRecordLines{
    HfdlLine::header,        HfdlLine::subRecordEnd, HfdlLine::downLink,     HfdlLine::upLink,
    HfdlLine::groundStation, HfdlLine::address,      HfdlLine::registration, HfdlLine::flight};

/// Makes a record of an aircraft's part of a message.
void fillRecord(HfdlRecord& record, const HfdlMessage& message, const HfdlAircraft& aircraft);

/// Reads a formatted log piece by piece, so that window events can run between
/// the pieces. Lines that it does not know, and lines before the first header,
/// are ignored; a record without an address is dropped.
class HfdlReader : private HfdlListener {
 public:
  enum class Step {
    record,  ///< record() holds the next one
    pause,   ///< nothing yet; call again
    end,     ///< the file has been read
  };

  /// Lines and bytes after which a step pauses: some milliseconds at most.
  static constexpr std::size_t kStepLines = 2000;
  static constexpr std::size_t kStepBytes = std::size_t{1} << 18;

  HfdlReader(InputFile file, const Encoding& encoding);

  /// Reads on up to the next record. A file that cannot be read any further
  /// gives the error; the records so far stand.
  Result<Step> step(std::size_t mostLines = kStepLines);

  /// The record of the last step; valid until the next one.
  [[nodiscard]] const HfdlRecord& record() const { return record_; }

  /// Bytes of the log read so far.
  [[nodiscard]] std::size_t bytesRead() const { return lines_.bytesRead(); }

 private:
  void aircraftEnded(const HfdlMessage& message, const HfdlAircraft& aircraft) override;

  LineReader lines_;
  HfdlParser parser_;
  bool atEnd_ = false;
  bool complete_ = false;  // the last step came to the end of a record
  HfdlRecord record_;
};

}  // namespace vel
