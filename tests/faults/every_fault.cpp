#include "tests/faults/every_fault.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vel::test {
namespace {

using testing::IsEmpty;

std::vector<FaultAt> faultsAt(std::size_t call, const std::string& name) {
  std::vector<FaultAt> faults = {{call, Fault::killBefore}, {call, Fault::killAfter}};
  for (const int code : {ENOSPC, EIO, EACCES, EINTR}) {
    faults.push_back({call, Fault::refused, code});
  }
  if (transfersBytes(name)) faults.push_back({call, Fault::shortCount});
  return faults;
}

std::string shown(const FaultAt& fault, const std::string& name) {
  constexpr const char* kWhat[] = {"nothing", "killed before", "killed after", "refused", "short"};
  return "call " + std::to_string(fault.call) + " (" + name + ") " +
         kWhat[static_cast<int>(fault.fault)] +
         (fault.code == 0 ? "" : " with " + std::to_string(fault.code));
}

}  // namespace

Tally tryEveryFault(const std::string& name, const Trial& trial, Faults faults) {
  constexpr std::size_t kMany = 100;
  constexpr std::size_t kSampled = 20;
  const bool all = faults == Faults::all || std::getenv("VEL_EVERY_FAULT") != nullptr;
  trial.prepare();
  const TracedRun whole = runTraced(trial.work);
  EXPECT_THAT(whole.unknownCalls, IsEmpty());
  EXPECT_EQ(whole.exitStatus, 0);
  trial.check(whole, Fault::none);

  std::vector<FaultAt> tried;
  for (std::size_t call = 0; call < whole.fileCalls.size(); ++call) {
    for (const FaultAt& fault : faultsAt(call, whole.fileCalls[call])) tried.push_back(fault);
  }
  const std::size_t most = faults == Faults::many ? kMany : kSampled;
  const std::size_t stride = all ? 1 : 1 + tried.size() / most;
  Tally tally{whole.fileCalls.size(), 0};
  for (std::size_t i = 0; i < tried.size(); i += stride) {
    const FaultAt& fault = tried[i];
    SCOPED_TRACE(shown(fault, whole.fileCalls[fault.call]));
    trial.prepare();
    const TracedRun run = runTraced(trial.work, fault);
    EXPECT_TRUE(run.reached);
    EXPECT_THAT(run.unknownCalls, IsEmpty());
    trial.check(run, fault.fault);
    ++tally.faults;
    if (testing::Test::HasFailure()) break;
  }
  std::printf("%s: %zu calls touch files, %zu faults\n", name.c_str(), tally.calls, tally.faults);
  return tally;
}

}  // namespace vel::test
