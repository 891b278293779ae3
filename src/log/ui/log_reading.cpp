#include "log/ui/log_reading.h"

#include <algorithm>
#include <utility>

namespace vel {
namespace {

constexpr int kBatchInterval = 34;
// With a sort in force, rows are sorted in before they show: many at once would
// hold up events for too long.
constexpr std::size_t kSortedAtOnce = 40'000;

}  // namespace

LogReading::LogReading(LogListModel& model, Open open, std::function<void()> shown)
    : model_(model), open_(std::move(open)), shown_(std::move(shown)) {}

void LogReading::showBatch() {
  model_.publish();
  shown_();
  sinceBatch_.restart();
}

Result<JobProgress> LogReading::step(Clock::time_point deadline) {
  switch (stage_) {
    case Stage::open: {
      Result<std::unique_ptr<LogReader>> reader = open_();
      sinceBatch_.start();
      if (reader) {
        reader_ = std::move(*reader);
        stage_ = Stage::read;
      } else {
        message_ = {reader.error().text(), true};
        stage_ = Stage::done;
      }
      return JobProgress::more;
    }
    case Stage::read:
      return readOn(deadline);
    case Stage::report:
      message_ = {reader_->report(), false};
      stage_ = Stage::done;
      return JobProgress::more;
    case Stage::done:
      break;
  }
  return JobProgress::done;
}

Result<JobProgress> LogReading::readOn(Clock::time_point deadline) {
  const bool sorted = model_.sortColumn() >= 0;
  if (sorted) deadline = std::min(deadline, Clock::now() + kSortedSlice);
  const Result<bool> read = reader_->step(deadline, model_.rows());
  const bool more = read && *read;
  const std::size_t unseen = model_.rows().size() - static_cast<std::size_t>(model_.rowCount());
  const bool many = sorted && unseen >= kSortedAtOnce;
  if (!more || many || sinceBatch_.elapsed() >= kBatchInterval) showBatch();
  if (more) return JobProgress::more;
  if (!read && reader_->failedLookUp()) return read.error();
  if (!read) message_ = {read.error().text(), true};
  stage_ = Stage::report;
  return JobProgress::more;
}

}  // namespace vel
