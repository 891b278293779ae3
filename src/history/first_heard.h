#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "core/folders.h"
#include "core/job.h"
#include "core/text.h"
#include "history/earlier_names.h"
#include "history/history_search.h"
#include "history/log_blocks.h"
#include "tables/byte_pattern.h"

namespace vel {

/// Finds out which aircraft and flights no earlier log holds: reads the dated
/// logs of both decoders before a day, the newest one first, until every name
/// has turned up or all are read.
class FirstHeard : public Job {
 public:
  struct Names {
    std::vector<std::string> aircraft;  ///< registrations, UTF-8
    std::vector<std::string> flights;
  };
  struct Logs {
    bool lists = true;
    bool hfdl = true;
  };

  FirstHeard(const Folders& folders, const Encoding& encoding, const Names& names,
             std::chrono::local_days day, Logs logs);
  FirstHeard(const Folders& folders, const Encoding& encoding, const Names& names,
             std::chrono::local_days day)
      : FirstHeard(folders, encoding, names, day, Logs{}) {}

  Result<JobProgress> step(Clock::time_point deadline) override;

  /// The names that no log read so far holds, in the order given.
  [[nodiscard]] Names heardFirst() const;

  [[nodiscard]] std::size_t logsRead() const { return next_; }
  [[nodiscard]] std::size_t logsInAll() const { return logs_.size(); }
  [[nodiscard]] const std::vector<LogProblem>& problems() const { return problems_; }

 private:
  struct Log {
    HistorySource source;
    std::string name;
    std::chrono::local_days day;
  };

  void listLogs(HistorySource source);
  bool open();
  void close();
  void strikeHfdlNames(std::string_view block, BytePattern& label, WantedNames& names) const;

  Folders folders_;
  Encoding encoding_;
  std::chrono::local_days day_;
  Logs which_;
  WantedNames aircraft_;  // as the bytes of the logs
  WantedNames flights_;
  BytePattern registrationLabel_;
  BytePattern flightLabel_;
  int listings_ = 0;  // of the folder, one for each kind of log
  std::vector<Log> logs_;
  std::size_t next_ = 0;
  bool isOpen_ = false;
  LogBlocks blocks_;
  std::vector<LogProblem> problems_;
};

}  // namespace vel
