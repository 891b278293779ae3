#pragma once

#include <functional>

#include "core/job.h"
#include "tests/ui/support/window_driver.h"

namespace vel::test {

/// Starts a rewrite with `press` and calls `look` twice: before it has touched
/// a file (1), and once the new table is written, before any rename (2). Then
/// waits until it is over.
inline void watchRewrite(JobRunner& jobs, const std::function<void()>& press,
                         const std::function<void(int moment)>& look) {
  press();
  look(1);
  JobSlot watch(jobs);
  bool looked = false;
  // Jobs are stepped in the order in which they came.
  watch.start(makeJob([&](Job::Clock::time_point) {
                look(2);
                looked = true;
                return JobProgress::done;
              }),
              {});
  finishJobs();
  EXPECT_TRUE(looked);
}

}  // namespace vel::test
