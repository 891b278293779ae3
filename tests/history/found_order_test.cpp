#include "history/found_order.h"

#include <algorithm>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/log_place.h"
#include "tests/history/find_in_logs.h"

namespace vel {
namespace {

using std::chrono::local_days;
using testing::ElementsAre;
using namespace std::chrono_literals;

std::vector<std::size_t> ordered(const FoundMessages& found, const FoundFilter& filter,
                                 FoundSort sort) {
  FoundOrdering job(found, filter, sort);
  while (*job.step(Job::Clock::time_point::min()) == JobProgress::more) {
  }
  EXPECT_EQ(job.looked(), found.size());
  std::vector<std::size_t> order;
  for (const FoundPlace& place : job.takeOrder()) order.push_back(place.index);
  return order;
}

TEST(FoundOrder, ManyMessagesAreSortedStablyInBothDirections) {
  FoundMessages found;
  const std::uint32_t log = found.addLog({HistorySource::list, "a"});
  std::minstd_rand random(3);
  constexpr std::size_t kCount = 100'000;
  for (std::size_t i = 0; i < kCount; ++i) {
    // Many are equal in their first eight characters, and some altogether.
    found.add(log, {.flight = "FLIGHT000" + std::to_string(random() % 5000)});
  }
  for (const bool descending : {false, true}) {
    const std::vector<std::size_t> order = ordered(found, {}, {kFoundFlight, descending});
    std::vector<std::size_t> expected(kCount);
    for (std::size_t i = 0; i < kCount; ++i) expected[i] = i;
    std::stable_sort(expected.begin(), expected.end(), [&](std::size_t left, std::size_t right) {
      const int compared = found.text(left, kFoundFlight).compare(found.text(right, kFoundFlight));
      return descending ? compared > 0 : compared < 0;
    });
    EXPECT_EQ(order, expected);
  }
}

TEST(FoundOrder, TheDateSortsByDayAndTime) {
  FoundMessages found;
  const std::uint32_t log = found.addLog({HistorySource::list, "a"});
  const local_days day{2026y / 11 / 20};
  found.add(log, {.day = day, .time = "10:00:00"});
  found.add(log, {.day = day, .time = "9:00:00"});
  found.add(log, {.time = "00:00:00"});
  found.add(log, {.day = day - std::chrono::days(1), .time = "23:00:00"});
  EXPECT_THAT(ordered(found, {}, {kFoundDate, false}), ElementsAre(2, 3, 1, 0));
  EXPECT_THAT(ordered(found, {}, {kFoundDate, true}), ElementsAre(0, 1, 3, 2));
  EXPECT_THAT(ordered(found, {}, {}), ElementsAre(0, 1, 2, 3));
}

TEST(FoundOrder, OnlyWhatPassesTheFilterIsShown) {
  FoundMessages found;
  const std::uint32_t log = found.addLog({HistorySource::list, "a"});
  const std::uint32_t raw = found.addLog({HistorySource::raw, "b"});
  const local_days day{2026y / 11 / 20};
  found.add(log, {.day = day, .time = "10:00:00", .flight = "JL0012"});
  found.add(raw, {.day = day + std::chrono::days(1), .time = "10:00:00", .flight = "JL0013"});
  found.add(raw, {.time = "11:00:00", .flight = "JL0012"});
  EXPECT_THAT(ordered(found, {.values = {{kFoundFlight, "JL0012"}}}, {}), ElementsAre(0, 2));
  EXPECT_THAT(ordered(found, {.values = {{kFoundFlight, "JL0012"}, {kFoundSource, "Raw log"}}}, {}),
              ElementsAre(2));
  EXPECT_THAT(ordered(found, {.values = {{kFoundDate, "2026/11/20"}}}, {}), ElementsAre(0));
  EXPECT_THAT(ordered(found, {.firstDay = day, .lastDay = day}, {}), ElementsAre(0));
  EXPECT_THAT(ordered(found, {.hour = 10}, {}), ElementsAre(0, 1));
}

TEST(LogPlace, TellsTheRowOfEachMessageInItsList) {
  const test::TemporaryBase base;
  base.writeLog("20261120_list.csv", {"Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time",
                                      "not a record", "JL0001,X,JA0001,RJTT,RJAA,B789,-,9:05:00",
                                      "a,b", "JL0002,X,JA0002,RJTT,RJAA,B789,-,9:05:00"});
  base.writeLog("202611200000_HFDL_FMT.log",
                {"[2]------------------------[2026/11/20 00:04:19]", "   ICAO24 ADDRESS = 000001",
                 "  ..............................", "   REGISTRATION   = JA0001",
                 "  ..............................", "   ICAO24 ADDRESS = 000002",
                 "[2]------------------------[2026/11/20 00:04:20]", "   ICAO24 ADDRESS = 000003"});
  test::writeBytes(base.folders.eachLogs / "JA0001.log",
                   "H>+*<SYN><SYN><SOH>2.JA0001<NAK>200<STX>M00AJL0001<ETX>\r\n"
                   "H>+*<SYN><SYN><SOH>2.JA0001<NAK>200<STX>M00AJL0002BODY<ETX>\r\n"
                   "a line 0003 in another form\r\n"
                   "H>+*<SYN><SYN><SOH>2.JA0001<NAK>200<STX>M00AJL0003BODY<ETX>\r\n");
  const test::Finding finding =
      test::findIn(base.folders, {.text = "000", .meaning = SearchMeaning::anyText});
  std::vector<std::size_t> rows;
  for (std::size_t i = 0; i < finding.found.size(); ++i) {
    const FoundMessages::Log& log = finding.found.log(i);
    const bool isRaw = log.source == HistorySource::raw;
    LogPlace place((isRaw ? base.folders.eachLogs : base.folders.logs) / log.name, log.source,
                   finding.found.offset(i), Encoding::codePage932());
    while (*place.step(Job::Clock::time_point::min()) == JobProgress::more) {
    }
    ASSERT_TRUE(place.row().has_value()) << i;
    rows.push_back(*place.row());
  }
  EXPECT_THAT(rows, ElementsAre(0, 1, 0, 1, 2, 0, 1));

  LogPlace gone(base.folders.logs / "20261120_list.csv", HistorySource::list, 1,
                Encoding::codePage932());
  while (*gone.step(Job::Clock::time_point::min()) == JobProgress::more) {
  }
  EXPECT_EQ(gone.row(), std::nullopt);
}

}  // namespace
}  // namespace vel
