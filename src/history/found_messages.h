#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "history/query.h"
#include "log/row_store.h"

namespace vel {

/// The columns of what was found.
enum FoundColumn : int {
  kFoundDate,
  kFoundTime,
  kFoundSource,
  kFoundFlight,
  kFoundRegistration,
  kFoundFrom,
  kFoundTo,
  kFoundEquipment,
  kFoundText,
  kFoundColumns
};

/// A message as the search hands it over; UTF-8.
struct FoundMessage {
  std::optional<std::chrono::local_days> day = {};
  std::string_view time = {};
  std::string_view flight = {};
  std::string_view registration = {};
  std::string_view from = {};
  std::string_view to = {};
  std::string_view equipment = {};
  std::string_view text = {};
  std::uint64_t offset = 0;  ///< of its line within the log
};

/// What a search has found, in the order in which it was: 40 bytes for a
/// message beside its text. Messages are only added, or cleared all at once.
class FoundMessages {
 public:
  /// More of a message's text is not kept, in characters.
  static constexpr std::size_t kLongestText = 2000;

  /// A log, by the name of its file.
  struct Log {
    HistorySource source;
    std::string name;
  };

  [[nodiscard]] std::size_t size() const { return rows_.size(); }

  /// The number by which add() knows the log.
  std::uint32_t addLog(Log log);
  void add(std::uint32_t log, const FoundMessage& message);
  void clear();

  /// A cell in UTF-8; the view lives until the next change, or the next call
  /// for the date.
  [[nodiscard]] std::string cell(std::size_t index, int column) const;
  /// A cell behind the source; the view lives until clear().
  [[nodiscard]] std::string_view text(std::size_t index, int column) const;

  [[nodiscard]] std::optional<std::chrono::local_days> day(std::size_t index) const;
  /// 0 to 23, nothing where the time is none.
  [[nodiscard]] std::optional<int> hour(std::size_t index) const;
  [[nodiscard]] const Log& log(std::size_t index) const;
  [[nodiscard]] std::uint64_t offset(std::size_t index) const { return at_[index].offset; }

  /// Bytes of memory beside the messages' text.
  [[nodiscard]] std::size_t overhead() const;

 private:
  struct At {
    std::uint64_t offset;
    std::uint32_t log;
    std::int32_t day;
  };

  RowStore rows_{'\n'};
  std::deque<At> at_;
  std::vector<Log> logs_;
};

/// "ACARS", "HFDL" or "Raw log".
[[nodiscard]] const char* nameOf(HistorySource source);

/// yyyy/mm/dd.
[[nodiscard]] std::string dayText(std::chrono::local_days day);

}  // namespace vel
