#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/folders.h"
#include "core/job.h"
#include "core/text.h"
#include "history/found_messages.h"
#include "history/log_blocks.h"
#include "history/message_match.h"
#include "history/query.h"
#include "tables/byte_pattern.h"

namespace vel {

/// A log that could not be read as it was expected.
struct LogProblem {
  enum class Kind { gone, unreadable, grew, shrank };
  std::string name;
  Kind kind;
  ErrorNumber number = ErrorNumber::none;
};

/// What the user is told once about all of them, in English and Japanese; empty
/// when there are none. Names the first ones only.
[[nodiscard]] std::string reportOf(const std::vector<LogProblem>& problems);

/// Searches all logs of a station, the oldest day first and the raw logs last,
/// and adds what fits to the found messages.
class HistorySearch : public Job {
 public:
  /// The search ends where so many messages have been found.
  static constexpr std::size_t kMostFound = 1'000'000;

  /// The query has no problem; `found` outlives the job.
  HistorySearch(const Folders& folders, const Encoding& encoding, const HistoryQuery& query,
                FoundMessages& found);

  Result<JobProgress> step(Clock::time_point deadline) override;

  /// Logs read so far, of so many; both 0 until the folders have been listed.
  [[nodiscard]] std::size_t logsRead() const { return next_; }
  [[nodiscard]] std::size_t logsInAll() const { return logs_.size(); }

  [[nodiscard]] const std::vector<LogProblem>& problems() const { return problems_; }
  /// True when the search ended because too much was found.
  [[nodiscard]] bool isCutShort() const { return cutShort_; }

 private:
  struct Log {
    HistorySource source;
    std::string name;
    std::optional<std::chrono::local_days> day;
  };

  void listLogs(HistorySource source);
  bool open();
  void close(std::optional<LogProblem::Kind> problem, ErrorNumber number = ErrorNumber::none);
  void scan(std::string_view block);
  void takePlace(std::string_view block, const char*& place);

  Folders folders_;
  HistoryQuery query_;
  MessageMatch match_;
  FoundMessages& found_;
  std::vector<BytePattern> patterns_;
  std::vector<BytePattern> hfdlPatterns_;
  std::vector<HistorySource> unlisted_;  // in the order of logs_
  std::vector<Log> logs_;
  std::size_t next_ = 0;  // of logs_
  bool isOpen_ = false;
  bool everyLine_ = false;                                     // of the open log is looked at
  MessageMatch::RawLog rawLog_ = MessageMatch::RawLog::ofAny;  // the open one
  std::uint32_t foundLog_ = 0;
  LogBlocks blocks_;
  std::vector<char> folded_;
  std::vector<LogProblem> problems_;
  bool cutShort_ = false;
};

}  // namespace vel
