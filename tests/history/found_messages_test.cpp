#include "history/found_messages.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/history_tally.h"
#include "tests/support/heap_meter.h"

namespace vel {
namespace {

using std::chrono::local_days;
using testing::ElementsAre;
using testing::Pair;
using namespace std::chrono_literals;

TEST(FoundMessages, AMillionTakeAtMost64BytesEachBesideTheirText) {
  constexpr std::size_t kCount = 1'000'000;
  const std::size_t before = test::heapInUse();
  FoundMessages found;
  const std::uint32_t log = found.addLog({HistorySource::list, "20261120_list.csv"});
  const FoundMessage message{.day = local_days{2026y / 11 / 20},
                             .time = "09:05:00",
                             .flight = "JL0012",
                             .registration = "JA8089",
                             .from = "RJTT",
                             .to = "RJAA",
                             .equipment = "B789",
                             .text = "-"};
  constexpr std::size_t kText = 8 + 6 + 6 + 4 + 4 + 4 + 1;
  for (std::size_t i = 0; i < kCount; ++i) found.add(log, message);
  const std::size_t taken = test::heapInUse() - before;
  EXPECT_LE(taken - kCount * kText, kCount * 64);
  EXPECT_LE(found.overhead(), kCount * 64);
  RecordProperty("bytes_each_beside_text", static_cast<int>((taken - kCount * kText) / kCount));
}

TEST(FoundMessages, HoldWhatEachColumnShows) {
  FoundMessages found;
  const std::uint32_t log = found.addLog({HistorySource::raw, "JA8089.log"});
  found.add(log, {.time = "24:00:00", .text = "a"});
  found.add(log, {.day = local_days{2026y / 1 / 2}, .time = "9:05:00", .flight = "JL0012"});
  EXPECT_EQ(found.cell(0, kFoundDate), "");
  EXPECT_EQ(found.cell(0, kFoundSource), "Raw log");
  EXPECT_EQ(found.cell(0, kFoundText), "a");
  EXPECT_EQ(found.hour(0), std::nullopt);
  EXPECT_EQ(found.cell(1, kFoundDate), "2026/01/02");
  EXPECT_EQ(found.cell(1, kFoundFlight), "JL0012");
  EXPECT_EQ(found.hour(1), 9);
  EXPECT_EQ(found.log(1).name, "JA8089.log");
}

TEST(FoundMessages, AGiantTextIsCutBehindACharacter) {
  FoundMessages found;
  std::string giant;
  for (std::size_t i = 0; i < FoundMessages::kLongestText + 5; ++i) giant += "羽";
  found.add(found.addLog({HistorySource::raw, "a.log"}), {.text = giant});
  EXPECT_EQ(found.cell(0, kFoundText).size(), 3 * FoundMessages::kLongestText);
}

TEST(HistoryTally, TellsWhenUnderWhichFlightsAndWithWhichAircraft) {
  FoundMessages found;
  const std::uint32_t log = found.addLog({HistorySource::list, "20261120_list.csv"});
  const local_days day{2026y / 11 / 20};
  HistoryTally tally;
  found.add(log, {.day = day, .time = "09:05:00", .flight = "JL0012", .registration = "JA8089"});
  tally.countNew(found);
  EXPECT_EQ(tally.firstHeard(), "2026/11/20 09:05:00");
  EXPECT_EQ(tally.lastHeard(), "2026/11/20 09:05:00");
  found.add(log, {.day = day,
                  .time = "08:05:00",
                  .flight = "JL0013",
                  .registration = "JA8089",
                  .from = "RJTT",
                  .to = "RJAA"});
  found.add(
      log,
      {.day = day + std::chrono::days(2), .time = "08:59:59", .flight = "JL0013", .from = "RJTT"});
  found.add(log, {.flight = "JL0013"});
  tally.countNew(found);
  EXPECT_EQ(tally.messages(), 4U);
  EXPECT_EQ(tally.firstHeard(), "2026/11/20 08:05:00");
  EXPECT_EQ(tally.lastHeard(), "2026/11/22 08:59:59");
  EXPECT_THAT(tally.days(), ElementsAre(Pair(day, 2U), Pair(day + std::chrono::days(2), 1U)));
  EXPECT_EQ(tally.hours()[8], 2U);
  EXPECT_EQ(tally.hours()[9], 1U);
  EXPECT_THAT(tally.flights().mostFirst(), ElementsAre(Pair("JL0013", 3U), Pair("JL0012", 1U)));
  EXPECT_THAT(tally.aircraft().mostFirst(), ElementsAre(Pair("JA8089", 2U)));
  EXPECT_THAT(tally.routes().mostFirst(), ElementsAre(Pair("RJTT-RJAA", 1U)));
}

}  // namespace
}  // namespace vel
