#include "core/job.h"

#include <algorithm>
#include <utility>

namespace vel {
namespace {

class FunctionJob : public Job {
 public:
  explicit FunctionJob(std::function<Result<JobProgress>(Clock::time_point)> step)
      : step_(std::move(step)) {}

  Result<JobProgress> step(Clock::time_point deadline) override { return step_(deadline); }

 private:
  std::function<Result<JobProgress>(Clock::time_point)> step_;
};

}  // namespace

std::unique_ptr<Job> makeJob(std::function<Result<JobProgress>(Job::Clock::time_point)> step) {
  return std::make_unique<FunctionJob>(std::move(step));
}

bool JobRunner::turn() {
  // A call-back may end any slot: each is looked for again before its step.
  const std::vector<JobSlot*> slots = slots_;
  for (JobSlot* slot : slots) {
    if (ends()) break;
    if (std::find(slots_.begin(), slots_.end(), slot) != slots_.end() && slot->isReady()) {
      slot->step();
    }
  }
  if (ends()) {
    for (JobSlot* slot : slots_) slot->stop();
  }
  return !isIdle();
}

bool JobRunner::isIdle() const {
  return std::none_of(slots_.begin(), slots_.end(),
                      [](const JobSlot* slot) { return slot->isReady(); });
}

JobSlot::JobSlot(JobRunner& runner) : runner_(runner) { runner_.slots_.push_back(this); }

JobSlot::~JobSlot() {
  stop();
  std::erase(runner_.slots_, this);
}

void JobSlot::start(std::unique_ptr<Job> job, Watch watch, std::chrono::milliseconds slice) {
  stop();
  current_ = std::make_shared<Running>(Running{std::move(job), std::move(watch), slice});
  if (runner_.wake) runner_.wake();
}

void JobSlot::stop() {
  if (current_ == nullptr) return;
  current_->ended = true;
  current_.reset();
}

void JobSlot::step() {
  // Keeps the job while it is called, also when the call ends it or the slot.
  const std::shared_ptr<Running> running = current_;
  JobRunner& runner = runner_;
  running->calling = true;
  const auto slice = std::min(running->slice, runner.longestSlice);
  const Result<JobProgress> progress = running->job->step(Job::Clock::now() + slice);
  if (running->ended || runner.ends()) return;
  if (progress && *progress == JobProgress::more) {
    if (running->watch.stepped) running->watch.stepped();
    running->calling = false;
  } else {
    current_.reset();
    if (running->watch.ended) {
      running->watch.ended(progress ? Status() : Status(progress.error()));
    }
  }
  if (runner.wake) runner.wake();
}

}  // namespace vel
