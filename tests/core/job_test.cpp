#include "core/job.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Jobs : public testing::Test {
 protected:
  // A job of so many steps that writes its name at each of them.
  std::unique_ptr<Job> steps(const std::string& name, int count) {
    return makeJob([this, name, left = count](Job::Clock::time_point) mutable {
      done_.push_back(name);
      return Result<JobProgress>(--left > 0 ? JobProgress::more : JobProgress::done);
    });
  }
  JobSlot::Watch noted(const std::string& name) {
    return {[this, name] { done_.push_back(name + " stepped"); },
            [this, name](const Status& result) {
              done_.push_back(name + (result ? " ended" : " failed " + result.error().text()));
            }};
  }
  void runAll() {
    while (runner_.turn()) {
    }
  }

  JobRunner runner_;
  JobSlot slot_{runner_};
  std::vector<std::string> done_;
};

TEST_F(Jobs, AJobIsSteppedUntilItIsDone) {
  slot_.start(steps("a", 3), noted("a"));
  EXPECT_THAT(done_, IsEmpty());
  EXPECT_TRUE(slot_.isRunning());
  runAll();
  EXPECT_THAT(done_, ElementsAre("a", "a stepped", "a", "a stepped", "a", "a ended"));
  EXPECT_FALSE(slot_.isRunning());
  EXPECT_TRUE(runner_.isIdle());
}

TEST_F(Jobs, AnErrorEndsTheJobAndIsHandedOver) {
  slot_.start(
      makeJob([](Job::Clock::time_point) { return Result<JobProgress>(ErrorNumber::deviceIo); }),
      noted("a"));
  runAll();
  EXPECT_THAT(done_, ElementsAre("a failed ERROR #57"));
  EXPECT_FALSE(slot_.isRunning());
}

TEST_F(Jobs, ANewJobOfAKindEndsTheOldOneSilently) {
  slot_.start(steps("old", 5), noted("old"));
  runner_.turn();
  done_.clear();
  slot_.start(steps("new", 1), noted("new"));
  runAll();
  EXPECT_THAT(done_, ElementsAre("new", "new ended"));
}

TEST_F(Jobs, JobsOfTwoKindsTakeTurns) {
  JobSlot other(runner_);
  slot_.start(steps("a", 2), {});
  other.start(steps("b", 2), {});
  runAll();
  EXPECT_THAT(done_, ElementsAre("a", "b", "a", "b"));
}

TEST_F(Jobs, AStoppedJobDoesNothingMore) {
  slot_.start(steps("a", 5), noted("a"));
  runner_.turn();
  done_.clear();
  slot_.stop();
  runAll();
  EXPECT_THAT(done_, IsEmpty());
  EXPECT_TRUE(runner_.isIdle());
}

TEST_F(Jobs, AJobThatStartsItsSuccessorFromWithinAStepIsNotHeardOf) {
  slot_.start(makeJob([this](Job::Clock::time_point) {
                slot_.start(steps("new", 1), noted("new"));
                return Result<JobProgress>(JobProgress::done);
              }),
              noted("old"));
  runAll();
  EXPECT_THAT(done_, ElementsAre("new", "new ended"));
}

TEST_F(Jobs, TheNextJobMayBeStartedWhenOneEnds) {
  slot_.start(steps("a", 1),
              {.ended = [this](const Status&) { slot_.start(steps("b", 1), noted("b")); }});
  runAll();
  EXPECT_THAT(done_, ElementsAre("a", "b", "b ended"));
}

TEST_F(Jobs, ASlotMayEndWithinItsOwnCall) {
  auto slot = std::make_unique<JobSlot>(runner_);
  slot->start(steps("a", 1), {.ended = [&slot](const Status&) { slot.reset(); }});
  runAll();
  EXPECT_EQ(slot, nullptr);
  EXPECT_THAT(done_, ElementsAre("a"));
}

TEST_F(Jobs, AnEndedSlotIsNotSteppedInTheSameTurn) {
  auto other = std::make_unique<JobSlot>(runner_);
  slot_.start(steps("a", 1), {.ended = [&other](const Status&) { other.reset(); }});
  other->start(steps("b", 1), {});
  runAll();
  EXPECT_THAT(done_, ElementsAre("a"));
}

TEST_F(Jobs, WhileACallOfAJobLastsOnlyTheOthersGoOn) {
  JobSlot other(runner_);
  other.start(steps("b", 3), {});
  slot_.start(steps("a", 2), {.stepped = [this] {
                // As a message box does: it runs the events, and the jobs with them.
                while (runner_.turn()) {
                }
                done_.push_back("answered");
              }});
  runAll();
  EXPECT_THAT(done_, ElementsAre("a", "b", "b", "b", "answered", "a"));
}

TEST_F(Jobs, StartingAJobWakesWhatDrivesTheRunner) {
  int woken = 0;
  runner_.wake = [&woken] { ++woken; };
  slot_.start(steps("a", 1), {});
  EXPECT_EQ(woken, 1);
}

TEST_F(Jobs, AStepIsToldItsDeadline) {
  Job::Clock::time_point deadline;
  slot_.start(makeJob([&deadline](Job::Clock::time_point until) {
                deadline = until;
                return Result<JobProgress>(JobProgress::done);
              }),
              {}, std::chrono::hours(1));
  const Job::Clock::time_point before = Job::Clock::now();
  runAll();
  EXPECT_GE(deadline, before + std::chrono::hours(1));
  EXPECT_LE(deadline, Job::Clock::now() + std::chrono::hours(1));
}

}  // namespace
}  // namespace vel
