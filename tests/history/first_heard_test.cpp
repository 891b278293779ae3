#include "history/first_heard.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tables/byte_pattern.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using std::chrono::local_days;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

FirstHeard::Names firstHeard(const Folders& folders, const FirstHeard::Names& names,
                             local_days day) {
  FirstHeard job(folders, Encoding::codePage932(), names, day);
  while (true) {
    const auto step = job.step(Job::Clock::time_point::min());
    EXPECT_TRUE(step.ok());
    if (!step || *step == JobProgress::done) break;
  }
  EXPECT_THAT(job.problems(), IsEmpty());
  return job.heardFirst();
}

TEST(FirstHeard, OnlyWhatNoEarlierLogHoldsIsLeft) {
  const test::TemporaryBase base;
  base.writeLog("20261118_list.csv", {"Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time",
                                      " JL0012 ,X,JA8089,RJTT,RJAA,B789,-,9:05:00",
                                      "JL0099,X,JA8090,RJTT,RJAA,B789,-,9:05:00,9 fields",
                                      "羽田,X,ア,RJTT,RJAA,B789,-,9:05:00"});
  base.writeLog("202611170000_HFDL_FMT.log",
                {"[2]------------------------[2026/11/17 00:04:19]", "   ICAO24 ADDRESS = 3482D8",
                 "   REGISTRATION   = VH-OQA", "   FLIGHT ID      = QF0001 "});
  base.writeLog("20261120_list.csv", {"XX0001,X,JA0001,RJTT,RJAA,B789,-,9:05:00"});
  base.writeLog("20261121_list.csv", {"XX0002,X,JA0002,RJTT,RJAA,B789,-,9:05:00"});
  const FirstHeard::Names left =
      firstHeard(base.folders,
                 {.aircraft = {"JA0001", "JA8089", "JA8090", "VH-OQA", "JA0002", "ア", "イ"},
                  .flights = {"JL0012", "JL0099", "QF0001", "XX0001", "羽田"}},
                 local_days{2026y / 11 / 20});
  EXPECT_THAT(left.aircraft, ElementsAre("JA0001", "JA8090", "JA0002", "イ"));
  EXPECT_THAT(left.flights, ElementsAre("JL0099", "XX0001"));
}

TEST(FirstHeard, ReadingEndsWhenEveryNameHasTurnedUp) {
  const test::TemporaryBase base;
  for (const char* name : {"20261117_list.csv", "20261118_list.csv", "20261119_list.csv"}) {
    base.writeLog(name, {"JL0012,X,JA8089,RJTT,RJAA,B789,-,9:05:00"});
  }
  FirstHeard job(base.folders, Encoding::codePage932(), {{"JA8089"}, {"JL0012"}},
                 local_days{2026y / 11 / 20});
  while (*job.step(Job::Clock::time_point::min()) == JobProgress::more) {
  }
  EXPECT_EQ(job.logsInAll(), 3U);
  EXPECT_EQ(job.logsRead(), 0U);  // not even the newest to its end
  EXPECT_THAT(job.heardFirst().aircraft, IsEmpty());
}

// Every way in which a line may lie over the pieces that are looked at at once.
TEST(EarlierNames, LinesOfAnyLengthAreCut) {
  for (std::size_t length = 0; length < 140; ++length) {
    std::string lines = std::string(length, 'x') + ",,,,,,,\n";
    lines += "JL0012,X,JA8089,RJTT,RJAA,B789,-," + std::string(length, '1') + "\r\n";
    lines += "JL0013,X,JA8090,RJTT,RJAA,B789,-,no end";
    WantedNames aircraft({"JA8089", "JA8090", "JA8091", "JA"});
    WantedNames flights({"JL0012", "JL0013", "RJTT"});
    const std::size_t size = lines.size();
    lines.append(BytePattern::kSlack, ',');
    strikeListNames(std::string_view(lines).substr(0, size), aircraft, flights);
    EXPECT_THAT(aircraft.left(), ElementsAre("JA8091", "JA")) << length;
    EXPECT_THAT(flights.left(), ElementsAre("RJTT")) << length;
  }
}

TEST(EarlierNames, NamesThatLookAlikeAreToldApart) {
  std::vector<std::string> names;
  std::string lines;
  for (int i = 0; i < 2000; ++i) {
    names.push_back("NAME" + std::to_string(i) + "SAMEEND!");
    if (i % 2 == 0) lines += "F,X," + names.back() + ",,,,,\n";
  }
  const std::size_t size = lines.size();
  lines.append(BytePattern::kSlack, ' ');
  WantedNames aircraft(names);
  WantedNames flights({});
  EXPECT_TRUE(flights.isDone());
  strikeListNames(std::string_view(lines).substr(0, size), aircraft, flights);
  ASSERT_EQ(aircraft.left().size(), 1000U);
  EXPECT_EQ(aircraft.left()[0], "NAME1SAMEEND!");
}

}  // namespace
}  // namespace vel
