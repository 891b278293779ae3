#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/folders.h"
#include "core/job.h"
#include "core/text.h"
#include "history/history_search.h"
#include "history/history_tally.h"
#include "history/log_blocks.h"
#include "history/message_match.h"
#include "tables/tables.h"

namespace vel {

/// The decoder whose day is reported on.
enum class ReportKind { list, hfdl };

/// What one day's log holds, in numbers.
struct DayCounts {
  std::chrono::local_days day{};
  bool hasLog = false;
  std::size_t messages = 0;
  NameCounts aircraft;   ///< registrations
  NameCounts addresses;  ///< HFDL only
  NameCounts flights;    ///< without the blanks around them, as received
  /// HFDL only: those of flights that are completed by the aircraft's airline
  /// before they are looked up, each as flight, LF, address.
  NameCounts shortFlights;
  NameCounts airlines;  ///< the first two characters of the other flights
  NameCounts types;
  NameCounts airports;  ///< ACARS only: of departures and destinations
  std::array<std::size_t, 24> hours{};

  /// The hour with the most messages, the first of several; nothing without
  /// any message.
  [[nodiscard]] std::optional<int> busiestHour() const;
};

/// True for a flight of a formatted log that the aircraft's airline completes.
[[nodiscard]] bool isShortFlight(std::string_view flight);

/// Counts a day and the seven days before it.
class DayCounting : public Job {
 public:
  static constexpr int kDaysBefore = 7;

  DayCounting(const Tables& tables, ReportKind kind, std::chrono::local_days day);

  Result<JobProgress> step(Clock::time_point deadline) override;

  /// The day itself, then the day before it and so on; those read so far.
  [[nodiscard]] const std::vector<DayCounts>& days() const { return days_; }
  /// What the user is told about logs that could not be read; empty for none.
  [[nodiscard]] const std::vector<LogProblem>& problems() const { return problems_; }

 private:
  bool open();
  void count(std::string_view block);
  void countHour(std::string_view time);
  void countFlight(std::string_view flight, std::string_view address);
  /// Looks one address of the day up; false when all are.
  Result<bool> countType();

  Tables tables_;
  ReportKind kind_;
  std::chrono::local_days day_;
  HfdlParts parts_;
  std::vector<DayCounts> days_;
  bool isOpen_ = false;
  LogBlocks blocks_;
  std::vector<std::pair<std::string, std::size_t>> addresses_;  // still to be looked up
  std::vector<LogProblem> problems_;
};

/// The name of a kind's log of a day as the folder has it; nothing when there
/// is none.
[[nodiscard]] std::optional<std::string> logOfDay(const Folders& folders, ReportKind kind,
                                                  std::chrono::local_days day);

}  // namespace vel
