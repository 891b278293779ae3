#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "core/result.h"

namespace vel {

/// How far a piece of long work has come.
enum class JobProgress { more, done };

/// Work that takes longer than a window may stand still: reading a log, looking
/// many rows up, an export. It is done in steps between window events.
class Job {
 public:
  using Clock = std::chrono::steady_clock;

  virtual ~Job() = default;

  /// Works until about the deadline. An Error ends the job; what it has done so
  /// far stands. Not called again after `done` or an Error.
  virtual Result<JobProgress> step(Clock::time_point deadline) = 0;
};

/// A job made of a function with the signature of Job::step.
[[nodiscard]] std::unique_ptr<Job> makeJob(
    std::function<Result<JobProgress>(Job::Clock::time_point deadline)> step);

class JobSlot;

/// Steps the jobs of all slots in turn. It knows no event loop: what drives it
/// is woken through `wake` and then calls turn() between events until that
/// answers false. Outlives its slots.
class JobRunner {
 public:
  /// How long one turn steps each job.
  static constexpr std::chrono::milliseconds kSlice{8};

  JobRunner() = default;
  JobRunner(const JobRunner&) = delete;
  JobRunner& operator=(const JobRunner&) = delete;

  /// The longest that one turn steps a job; shorter slices let others look in
  /// between more often.
  std::chrono::milliseconds longestSlice = std::chrono::milliseconds::max();

  /// Called when there is something to do again; set by what drives the runner.
  std::function<void()> wake;

  /// Whether the program is ending; may be empty. Jobs are then given up: there
  /// is neither a step nor a call-back after that.
  std::function<bool()> isEnding;

  /// Gives every job one step. True when there is more to do. May be entered
  /// again from a job's own call-back (a message box that it shows): that job
  /// waits then, the others go on.
  bool turn();

  /// True when no slot has a job that could be stepped now.
  [[nodiscard]] bool isIdle() const;

 private:
  friend class JobSlot;
  [[nodiscard]] bool ends() const { return isEnding && isEnding(); }

  std::vector<JobSlot*> slots_;
};

/// The place of one kind of job. Starting a job ends the one before it, which
/// then does nothing more: neither a step nor a call-back. So does the end of
/// the slot.
class JobSlot {
 public:
  /// What the owner wants to know. Each may start or stop jobs, or end the slot.
  struct Watch {
    /// After each step but the last one.
    std::function<void()> stepped = {};
    /// The job is done or has failed; the slot is free again.
    std::function<void(const Status& result)> ended = {};
  };

  explicit JobSlot(JobRunner& runner);
  ~JobSlot();
  JobSlot(const JobSlot&) = delete;
  JobSlot& operator=(const JobSlot&) = delete;

  /// Takes the job; its first step comes with the runner's next turn.
  /// `slice` is how long each of its steps may take.
  void start(std::unique_ptr<Job> job, Watch watch,
             std::chrono::milliseconds slice = JobRunner::kSlice);

  /// Ends the running job, if any.
  void stop();

  [[nodiscard]] bool isRunning() const { return current_ != nullptr; }

 private:
  friend class JobRunner;
  struct Running {
    std::unique_ptr<Job> job;
    Watch watch;
    std::chrono::milliseconds slice;
    bool calling = false;  // one of its calls is on the stack
    bool ended = false;    // by start(), stop() or the end of the slot
  };

  [[nodiscard]] bool isReady() const { return current_ != nullptr && !current_->calling; }
  void step();

  JobRunner& runner_;
  std::shared_ptr<Running> current_;
};

}  // namespace vel
