#pragma once

#include <QElapsedTimer>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "core/job.h"
#include "log/log_reader.h"
#include "log/ui/log_list_model.h"

namespace vel {

/// The job that reads one log into a list. Its rows show in batches, at most 30
/// times a second.
class LogReading : public Job {
 public:
  /// Opens the log at the job's first step; an Error is the user's to be told.
  using Open = std::function<Result<std::unique_ptr<LogReader>>()>;

  /// How long a step may take where the list is sorted as it is read.
  static constexpr std::chrono::milliseconds kSortedSlice{3};

  /// Adds to the model, which outlives the job. `shown` is told after each batch.
  LogReading(LogListModel& model, Open open, std::function<void()> shown);

  /// Ends with an Error only where a table that the rows need cannot be read. An
  /// error of the log itself is a message.
  Result<JobProgress> step(Clock::time_point deadline) override;

  /// What the user is to be told next; empty when there is nothing. The job goes
  /// on with the step after the one that found it.
  struct Message {
    std::string text = {};
    bool isError = false;  ///< the log cannot be read; otherwise its report
  };
  [[nodiscard]] Message takeMessage() { return std::exchange(message_, {}); }

 private:
  enum class Stage { open, read, report, done };

  [[nodiscard]] Result<JobProgress> readOn(Clock::time_point deadline);
  void showBatch();

  LogListModel& model_;
  Open open_;
  std::function<void()> shown_;
  std::unique_ptr<LogReader> reader_;
  QElapsedTimer sinceBatch_;
  Message message_;
  Stage stage_ = Stage::open;
};

}  // namespace vel
