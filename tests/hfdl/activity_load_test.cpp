#include "hfdl/activity_load.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel::test {
namespace {

using std::chrono::local_days;
using std::chrono::local_seconds;
using ::testing::ElementsAre;
using namespace std::chrono_literals;

local_seconds at(int day, int hour, int minute, int second = 0) {
  return local_days(2026y / 11 / day) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
         std::chrono::seconds(second);
}

const local_seconds kEndOf17th = at(18, 0, 0);

class ActivityLoadTest : public ::testing::Test {
 protected:
  ActivityLoad load(std::string_view bytes, ActivityQuery query = {kEndOf17th, std::nullopt}) {
    const auto path = folder_ / "202611170000_HFDL_FMT.log";
    writeBytes(path, bytes);
    ActivityLoad load(InputFile::open(path).value(), Encoding::codePage932(), std::move(query));
    while (true) {
      const auto progress = load.step(Job::Clock::now());
      if (!progress.ok()) ADD_FAILURE() << progress.error().text();
      if (!progress.ok() || *progress == JobProgress::done) return load;
    }
  }

  static std::string message(std::string_view time, std::string_view kind,
                             std::string_view station = "Agana, Guam") {
    return "[3]------------------------[2026/11/17 " + std::string(time) + "]\r\n" +
           std::string(kind) + "\r\n  GS NAME         = " + std::string(station) + "\r\n";
  }

  static std::vector<std::string> names(const ActivityLoad& load) {
    std::vector<std::string> names;
    for (const StationTotal& station : load.stations()) names.push_back(station.name);
    return names;
  }

  TemporaryFolder folder_;
};

TEST_F(ActivityLoadTest, CountsEachKindInItsTenMinutes) {
  const auto loaded = load(message("00:00:00", " UP LINK") + message("00:09:59", " UP LINK") +
                           message("00:10:00", " DOWN LINK") + message("12:00:00", " SQUITTER") +
                           message("23:59:59", " SQUITTER"));
  const ActivityCounts& counts = loaded.counts();
  EXPECT_EQ(counts.uplinks[0], 2);
  EXPECT_EQ(counts.downlinks[1], 1);
  EXPECT_EQ(counts.squitters[72], 1);
  EXPECT_EQ(counts.squitters[143], 1);
  EXPECT_EQ(counts.total(144), 0);
  EXPECT_EQ(counts.largestTotal, 2);
}

TEST_F(ActivityLoadTest, CurrentAt1205PutsAMessageOf1158IntoSlot143) {
  const local_seconds reference = currentReference(at(17, 12, 5, 47));
  EXPECT_EQ(reference, at(17, 12, 5));
  EXPECT_EQ(slotOf(at(17, 11, 58), reference), 143U);
  const auto loaded = load(message("11:58:00", " SQUITTER"), {reference, std::nullopt});
  EXPECT_EQ(loaded.counts().squitters[143], 1);
}

TEST_F(ActivityLoadTest, SlotsReachFrom24HoursBeforeTheReferenceTo16HoursAfterIt) {
  const local_seconds reference = at(17, 12, 5);
  EXPECT_EQ(slotOf(at(16, 12, 5), reference), 0U);
  EXPECT_EQ(slotOf(at(16, 12, 4, 59), reference), std::nullopt);
  EXPECT_EQ(slotOf(reference, reference), 144U);
  EXPECT_EQ(slotOf(at(17, 12, 4, 59), reference), 143U);
  EXPECT_EQ(slotOf(at(18, 4, 14, 59), reference), 240U);
  EXPECT_EQ(slotOf(at(18, 4, 15), reference), std::nullopt);
}

TEST_F(ActivityLoadTest, CurrentShortlyAfterMidnightLeavesTheSlotsBeforeMidnightEmpty) {
  const local_seconds reference = currentReference(at(17, 0, 30));
  const auto loaded =
      load(message("00:10:00", " UP LINK") + message("00:29:00", " UP LINK"), {reference, {}});
  for (std::size_t slot = 0; slot < 141; ++slot) EXPECT_EQ(loaded.counts().total(slot), 0) << slot;
  EXPECT_EQ(loaded.counts().uplinks[142], 1);
  EXPECT_EQ(loaded.counts().uplinks[143], 1);
}

TEST_F(ActivityLoadTest, DayIsReadFromTheNameOfTheLog) {
  EXPECT_EQ(dayReference("202611170000_HFDL_FMT.log"), kEndOf17th);
  EXPECT_EQ(dayReference("202612310000_HFDL_FMT.log"), local_days(2027y / 1 / 1));
  EXPECT_EQ(dayReference("20_HFDL_FMT.log"), std::nullopt);
  EXPECT_EQ(dayReference("202613170000_HFDL_FMT.log"), std::nullopt);
}

TEST_F(ActivityLoadTest, LogWithoutADayInItsNameIsOfTheDayOfItsFirstDatedHeader) {
  const auto loaded = load("[3]------------------------[2026/99/99 00:00:00]\r\n UP LINK\r\n" +
                               message("00:05:00", " UP LINK"),
                           {std::nullopt, std::nullopt});
  EXPECT_EQ(loaded.reference(), kEndOf17th);
  EXPECT_EQ(loaded.counts().uplinks[0], 1);
}

TEST_F(ActivityLoadTest, FailedCheckCountsInsteadOfTheKind) {
  const auto loaded = load(message("00:00:00", " DOWN LINK") + "   CRC FAILED\r\n" +
                           message("00:01:00", " DOWN LINK") + message("00:02:00", "x") +
                           "    CRC FAILED (2)\r\n" + message("00:03:00", "  CRC FAILED"));
  EXPECT_EQ(loaded.counts().failed[0], 2);
  EXPECT_EQ(loaded.counts().downlinks[0], 1);
  EXPECT_EQ(loaded.counts().total(0), 3);
  EXPECT_EQ(loaded.counts().largestTotal, 3);
}

TEST_F(ActivityLoadTest, MessageOfNoKindIsNotCounted) {
  const auto loaded = load(message("00:00:00", " DOWN LINK ") + message("00:00:00", "SQUITTER"));
  EXPECT_EQ(loaded.counts().total(0), 0);
  EXPECT_EQ(loaded.counts().largestTotal, 0);
}

TEST_F(ActivityLoadTest, HeaderWithoutATimeCountsAtMidnight) {
  const auto loaded = load("[3]------------------------[2026/11/17]\r\n SQUITTER\r\n" +
                           message("9:05:00", " UP LINK"));
  EXPECT_EQ(loaded.counts().squitters[0], 1);
  EXPECT_EQ(loaded.counts().uplinks[54], 1);
}

TEST_F(ActivityLoadTest, HeaderWithoutAReadableMomentIsNotCounted) {
  const auto loaded = load(
      "[3]------------------------[\r\n SQUITTER\r\n"
      "[3]------------------------[2026/02/30 00:00:00]\r\n SQUITTER\r\n"
      "[3]------------------------[2026/11/17 24:00:00]\r\n SQUITTER\r\n"
      "[3]------------------------[2026/11/17 aa:bb:cc]\r\n SQUITTER\r\n");
  for (std::size_t slot = 0; slot < ActivityCounts::kSlots; ++slot) {
    EXPECT_EQ(loaded.counts().total(slot), 0) << slot;
  }
}

TEST_F(ActivityLoadTest, LinesBeforeTheFirstHeaderAreNotCounted) {
  const auto loaded = load(" SQUITTER\r\n  GS NAME         = Agana\r\n" + message("00:00:00", "x"));
  EXPECT_EQ(loaded.counts().largestTotal, 0);
}

TEST_F(ActivityLoadTest, LogOfAnotherDayCountsNothing) {
  const auto loaded = load(message("00:00:00", " UP LINK"), {at(25, 0, 0), std::nullopt});
  EXPECT_EQ(loaded.counts().largestTotal, 0);
}

TEST_F(ActivityLoadTest, ChosenStationAloneIsCountedAndAllAreListed) {
  const std::string log = message("00:00:00", " UP LINK", "Agana, Guam") +
                          message("00:00:00", " UP LINK", "Shannon, Ireland") +
                          message("00:00:00", " UP LINK", "Shannon, Ireland");
  const auto all = load(log);
  EXPECT_EQ(all.counts().uplinks[0], 3);
  EXPECT_THAT(names(all), ElementsAre(" Agana, Guam", " Shannon, Ireland"));
  const auto one = load(log, {kEndOf17th, " Shannon, Ireland"});
  EXPECT_EQ(one.counts().uplinks[0], 2);
  EXPECT_EQ(one.counts().largestTotal, 2);
  EXPECT_THAT(names(one), ElementsAre(" Agana, Guam", " Shannon, Ireland"));
  EXPECT_EQ(one.countedStation(), 1U);
  EXPECT_EQ(all.countedStation(), std::nullopt);
}

TEST_F(ActivityLoadTest, EachStationHasTheTotalOfItsDrawnMessagesWhateverIsCounted) {
  const std::string log = message("00:00:00", " UP LINK", "Agana, Guam") +
                          message("00:00:00", "x", "Agana, Guam") +
                          message("11:00:00", " SQUITTER", "Shannon, Ireland") +
                          message("00:30:00", " DOWN LINK", "Agana, Guam") + "   CRC FAILED\r\n";
  for (const auto& wanted :
       {std::optional<std::string>(), std::optional<std::string>(" Agana, Guam")}) {
    EXPECT_THAT(load(log, {kEndOf17th, wanted}).stations(),
                ElementsAre(StationTotal{" Agana, Guam", 2}, StationTotal{" Shannon, Ireland", 1}));
  }
  // Seen at one o'clock, eleven o'clock is still to come: counted, not drawn.
  EXPECT_THAT(load(log, {at(17, 1, 0), std::nullopt}).stations(),
              ElementsAre(StationTotal{" Agana, Guam", 2}, StationTotal{" Shannon, Ireland", 0}));
}

TEST_F(ActivityLoadTest, StationThatTheLogDoesNotHaveGivesAllStations) {
  const auto loaded = load(message("00:00:00", " UP LINK") + message("00:20:00", " UP LINK"),
                           {kEndOf17th, " Shannon, Ireland"});
  EXPECT_EQ(loaded.countedStation(), std::nullopt);
  EXPECT_EQ(loaded.counts().uplinks[0], 1);
  EXPECT_EQ(loaded.counts().uplinks[2], 1);
  EXPECT_THAT(names(loaded), ElementsAre(" Agana, Guam"));
}

TEST_F(ActivityLoadTest, StationWithoutANameCountsAmongAllAndIsNotListed) {
  const auto loaded = load(
      "[3]------------------------[2026/11/17 00:00:00]\r\n UP LINK\r\n"
      "  GS NAME         =\r\n" +
      message("00:00:00", " UP LINK", ""));
  EXPECT_EQ(loaded.counts().uplinks[0], 2);
  EXPECT_TRUE(loaded.stations().empty());
}

TEST_F(ActivityLoadTest, StationPastThe31stIsCountedAmongAllAndToldOnce) {
  std::string log;
  for (int i = 1; i <= 33; ++i) {
    for (int again = 0; again < 2; ++again) {
      log += message("00:00:00", " UP LINK", "Station " + std::to_string(i));
    }
  }
  const auto loaded = load(log);
  EXPECT_EQ(loaded.stations().size(), 31U);
  EXPECT_EQ(loaded.stations().back().name, " Station 31");
  EXPECT_EQ(loaded.counts().uplinks[0], 66);
  EXPECT_EQ(loaded.excessText(), "2 stations are not shown. 2局は表示されません。");
  EXPECT_EQ(load(message("00:00:00", " UP LINK")).excessText(), "");
}

TEST_F(ActivityLoadTest, NulBytesLongLinesAndCutFilesDoNoHarm) {
  const std::string whole = message("00:00:00", " UP LINK") + message("00:10:00", " DOWN LINK");
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const auto cut = load(std::string_view(whole).substr(0, size));
    EXPECT_LE(cut.counts().largestTotal, 1) << size;
  }
  std::string odd = message("00:00:00", " UP LINK");
  odd += std::string(2'000'000, '\0') + "\r\n  GS NAME         =" + std::string(100'000, 'G');
  const auto loaded = load(odd);
  EXPECT_EQ(loaded.counts().uplinks[0], 1);
  EXPECT_THAT(names(loaded), ElementsAre(" Agana, Guam", std::string(256, 'G')));
}

}  // namespace
}  // namespace vel::test
