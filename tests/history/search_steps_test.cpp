// No step of a search keeps a window waiting, measured in processor time so
// that other programs do not count.

#include <algorithm>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "history/history_search.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using std::chrono::local_days;
using namespace std::chrono_literals;

TEST(HistorySearchSteps, TenThousandLogsAndAnEndlessLineNeverTakeLong) {
  const test::TemporaryBase base;
  for (int i = 0; i < 5000; ++i) {
    const auto day = local_days{2010y / 1 / 1} + std::chrono::days(i);
    std::string digits = dayText(day);
    std::erase(digits, '/');
    test::writeBytes(base.folders.logs / (digits + "_list.csv"),
                     "JL0012,X,JA" + std::to_string(i % 100) + ",RJTT,KSFO,B789,-,9:05:00\r\n");
    test::writeBytes(base.folders.logs / (digits + "0000_HFDL_FMT.log"), "");
  }
  test::writeBytes(
      base.folders.logs / "20100101_list.csv",
      std::string(std::size_t{50} << 20, '\0') + "\r\nJL0012,X,JA42,RJTT,KSFO,B789,-,9:05:00\r\n");
  FoundMessages found;
  HistorySearch search(base.folders, Encoding::codePage932(), {.text = "JA42"}, found);
  const auto processorTime = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
  };
  double longest = 0;
  while (true) {
    const double before = processorTime();
    const auto step = search.step(Job::Clock::now());
    longest = std::max(longest, processorTime() - before);
    ASSERT_TRUE(step.ok());
    if (*step == JobProgress::done) break;
  }
  EXPECT_EQ(search.logsInAll(), 10'000U);
  EXPECT_EQ(found.size(), 51U);
  RecordProperty("longest_ms", static_cast<int>(longest));
  EXPECT_LE(longest, 50);
}

}  // namespace
}  // namespace vel
