#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.h"

namespace vel {

/// What a search over all days takes its text for.
enum class SearchMeaning { registration, flight, airport, address, anyText };

/// The logs that a message was found in.
enum class HistorySource { list, hfdl, raw };

/// Days from the first to the last one, both among them; open where there is
/// none.
struct DayRange {
  std::optional<std::chrono::local_days> first = {};
  std::optional<std::chrono::local_days> last = {};

  [[nodiscard]] bool holds(std::chrono::local_days day) const {
    return (!first || day >= *first) && (!last || day <= *last);
  }
  /// True when no day is left out, so that what has no date belongs to it too.
  [[nodiscard]] bool isAll() const { return !first && !last; }
};

/// So many days up to and with `today`.
[[nodiscard]] DayRange lastDays(std::chrono::local_days today, int count);

/// What is searched for, and where.
struct HistoryQuery {
  std::string text = {};  ///< UTF-8
  SearchMeaning meaning = SearchMeaning::registration;
  bool ignoreCase = false;
  DayRange days = {};
  bool lists = true;
  bool hfdl = true;
  bool rawLogs = true;
};

/// Why a query finds nothing.
enum class QueryProblem {
  none,
  emptyText,      ///< refused: everything would be found
  noLogs,         ///< refused: no kind of log is chosen
  daysBackwards,  ///< refused: the first day lies behind the last one
  notInEncoding,  ///< no log can hold the text
};

[[nodiscard]] QueryProblem problemOf(const HistoryQuery& query, const Encoding& encoding);

/// What the user is told about it, in English and Japanese; empty for none.
[[nodiscard]] std::string hintFor(QueryProblem problem);

/// The text of a query, ready to be compared with the bytes of logs. Fields are
/// compared as characters, without the blanks around them. In a registration,
/// a hyphen may be missing on either side.
class SearchText {
 public:
  /// The query has no problem.
  SearchText(const HistoryQuery& query, const Encoding& encoding);

  /// Bytes of which at least one stands in every line that fits; without any,
  /// every line has to be looked at. In lower case (ASCII letters only) where
  /// the case is ignored.
  [[nodiscard]] const std::vector<std::string>& scanBytes() const { return scanBytes_; }
  [[nodiscard]] bool ignoresCase() const { return ignoreCase_; }

  /// The same for formatted logs, where a flight of fewer than five characters
  /// stands for the one that its aircraft's airline completes.
  [[nodiscard]] std::vector<std::string> hfdlScanBytes() const;

  /// True when the bytes of a field are the text.
  [[nodiscard]] bool isField(std::string_view bytes) const;
  /// The same for a field that has been decoded.
  [[nodiscard]] bool isDecodedField(std::string_view utf8) const;
  /// True when the text can be what an airline's code and the end that is given
  /// make together.
  [[nodiscard]] bool canEndIn(std::string_view utf8) const;
  /// True when the text occurs in the bytes of some lines.
  [[nodiscard]] bool isIn(std::string_view bytes) const;
  [[nodiscard]] bool isInDecoded(std::string_view utf8) const;

 private:
  Encoding encoding_;
  std::string text_;  // in lower case where that is ignored; without hyphen in a registration
  bool ascii_;
  bool ignoreCase_;
  bool isRegistration_;
  bool isFlight_;
  std::vector<std::string> scanBytes_;
};

/// Lower case of ASCII letters alone.
[[nodiscard]] inline char foldedByte(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

}  // namespace vel
