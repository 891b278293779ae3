// No step of a search keeps a window waiting: each takes a part of the work, also
// where there are many logs or a line has no end.

#include <string>

#include <gtest/gtest.h>

#include "history/history_search.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using std::chrono::local_days;
using namespace std::chrono_literals;

TEST(HistorySearchSteps, TenThousandLogsAndAnEndlessLineAreTakenInParts) {
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
  int steps = 0;
  for (bool more = true; more; ++steps) {
    const auto step = search.step(Job::Clock::time_point::min());
    ASSERT_TRUE(step.ok());
    more = *step == JobProgress::more;
  }
  // Each kind of log, each log, and each piece of the long one.
  constexpr int kLargestPiece = 1 << 20;
  EXPECT_GT(steps, 3 + 10'000 + (50 << 20) / kLargestPiece);
  EXPECT_EQ(search.logsInAll(), 10'000U);
  EXPECT_EQ(found.size(), 51U);
}

}  // namespace
}  // namespace vel
