#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "history/day_counts.h"
#include "history/first_heard.h"
#include "history/table_gaps.h"

namespace vel {

/// All that is reported of a day.
struct DayReport {
  ReportKind kind = ReportKind::list;
  std::string log;                                     ///< the name of the day's log
  std::vector<DayCounts> days;                         ///< the day, then the days before it
  std::vector<std::vector<TableGap>> gaps{kGapKinds};  ///< by GapKind
  FirstHeard::Names firstHeard;
};

/// A name in English and Japanese.
struct TwoNames {
  const char* english;
  const char* japanese;
};

/// What a kind of gap is called: "Aircraft without a record".
[[nodiscard]] TwoNames nameOf(GapKind kind);

/// The numbers of the days side by side: one line for each kind of count, its
/// first cell in English and Japanese, the others one for each day. The first
/// line holds the dates.
[[nodiscard]] std::vector<std::vector<std::string>> countTable(const std::vector<DayCounts>& days);

/// The report as one HTML page in both languages, with its charts inside. All
/// text from logs is text only. UTF-8.
[[nodiscard]] std::string reportHtml(const DayReport& report);

/// The report as CSV in UTF-8 with a byte order mark, CR LF, a table below the
/// other. A text that a spreadsheet would take for a formula gets an
/// apostrophe in front.
[[nodiscard]] std::string reportCsv(const DayReport& report);

}  // namespace vel
