#include "hfdl/frequency_tables.h"

#include <cstdio>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

class FrequencyTablesTest : public ::testing::Test {
 protected:
  void read(std::initializer_list<std::string_view> lines) { tables_.readLines(cp932Lines(lines)); }

  static std::string header(int second) {
    char line[64];
    std::snprintf(line, sizeof line, "[3]------------------------[2026/11/17 %02d:%02d:%02d]\r\n",
                  second / 3600, second / 60 % 60, second % 60);
    return line;
  }

  std::vector<std::string> timePoints(std::size_t station) const {
    std::vector<std::string> stamps;
    for (std::size_t i = 0; i < tables_.points(station).size(); ++i) {
      stamps.push_back(tables_.timePoint(station, i));
    }
    return stamps;
  }

  FrequencyTables tables_{Encoding::codePage932()};
};

TEST_F(FrequencyTablesTest, EntersStationsTimesFrequenciesAndMarksAsTheyAppear) {
  read({"[3]------------------------[2026/11/17 00:00:01]", " SQUITTER",
        "   FREQUENCIES    = [ 2998 6532 ] (Shannon)",
        "   FREQUENCIES    = [ 5655 6535 ] (Hat Yai)",
        "[1]------------------------[2026/11/17 00:10:00]",
        "   FREQUENCIES    = [ 6532 8843 ] (Shannon)"});
  ASSERT_EQ(tables_.stationCount(), 2U);
  EXPECT_EQ(tables_.stationName(0), "Shannon");
  EXPECT_EQ(tables_.stationName(1), "Hat Yai");
  EXPECT_THAT(tables_.frequencies(0), ElementsAre("2998", "6532", "8843"));
  EXPECT_THAT(timePoints(0), ElementsAre("2026/11/17 00:00:01", "2026/11/17 00:10:00"));
  EXPECT_EQ(tables_.marks(0, 0), "11        ");
  EXPECT_EQ(tables_.marks(0, 1), " 11       ");
  EXPECT_THAT(timePoints(1), ElementsAre("2026/11/17 00:00:01"));
  EXPECT_EQ(tables_.points(0)[1].moment,
            std::chrono::local_days(2026y / 11 / 17) + std::chrono::minutes(10));
}

TEST_F(FrequencyTablesTest, SameTimeStampIsOneTimePointHoweverOftenItComesBack) {
  const std::string list = "   FREQUENCIES    = [ 2998 ] (Shannon)\r\n";
  const std::string other = "   FREQUENCIES    = [ 6532 ] (Shannon)\r\n";
  tables_.readLines(header(5) + list + header(9) + list + header(5) + other + header(7) + other +
                    header(9) + other);
  EXPECT_THAT(timePoints(0),
              ElementsAre("2026/11/17 00:00:05", "2026/11/17 00:00:09", "2026/11/17 00:00:07"));
  EXPECT_EQ(tables_.marks(0, 0), "11        ");
  EXPECT_EQ(tables_.marks(0, 1), "11        ");
  EXPECT_EQ(tables_.marks(0, 2), " 1        ");
}

TEST_F(FrequencyTablesTest, LineBeforeAnyHeaderHasAnEmptyTimeStampAndIsNoMoment) {
  read({"   FREQUENCIES    = [ 2998 ] (Shannon)",
        "[3]------------------------[2026/11/17 00:00:01]",
        "   FREQUENCIES    = [ 6532 ] (Shannon)"});
  EXPECT_THAT(timePoints(0), ElementsAre("", "2026/11/17 00:00:01"));
  EXPECT_EQ(tables_.points(0)[0].moment, FrequencyTables::kNoMoment);
  EXPECT_EQ(tables_.marks(0, 0), "1         ");
  EXPECT_EQ(tables_.marks(0, 1), " 1        ");
}

TEST_F(FrequencyTablesTest, LineBeforeTheFilesFirstHeaderCarriesTheLastFilesTimeStamp) {
  read({"[3]------------------------[2026/11/17 23:59:58]", " SQUITTER"});
  read({"   FREQUENCIES    = [ 2998 ] (Shannon)"});
  EXPECT_THAT(timePoints(0), ElementsAre("2026/11/17 23:59:58"));
}

TEST_F(FrequencyTablesTest, HeaderWithoutATimeStandsAtMidnight) {
  read({"[3]------------------------[2026/11/17]", "   FREQUENCIES    = [ 2998 ] (Shannon)",
        "[3]------------------------[2026/11/17 12:00]", "   FREQUENCIES    = [ 2998 ] (Shannon)"});
  EXPECT_THAT(timePoints(0), ElementsAre("2026/11/17 0:00:00"));
  EXPECT_EQ(tables_.points(0)[0].moment, std::chrono::local_days(2026y / 11 / 17));
}

TEST_F(FrequencyTablesTest, HeaderWithoutADateIsKeptAsATextOnly) {
  read({"[3]------------------------[", "   FREQUENCIES    = [ 2998 ] (Shannon)"});
  EXPECT_THAT(timePoints(0), ElementsAre(" 0:00:00"));
  EXPECT_EQ(tables_.points(0)[0].moment, FrequencyTables::kNoMoment);
}

TEST_F(FrequencyTablesTest, ListAndNameStandInTheirFirstBrackets) {
  read({"[3]------------------------[2026/11/17 00:00:01]",
        "   FREQUENCIES    = [  2998 6532.0  ] (Hat (Yai)) [ 1 ] (x)"});
  ASSERT_EQ(tables_.stationCount(), 1U);
  EXPECT_EQ(tables_.stationName(0), "Hat (Yai");
  EXPECT_THAT(tables_.frequencies(0), ElementsAre("2998", "6532.0"));
}

TEST_F(FrequencyTablesTest, EmptyListEntersTheTimeAndNoFrequency) {
  read({"[3]------------------------[2026/11/17 00:00:01]", "   FREQUENCIES    = [ ] (Shannon)"});
  ASSERT_EQ(tables_.stationCount(), 1U);
  EXPECT_EQ(tables_.timePointCount(0), 1U);
  EXPECT_THAT(tables_.frequencies(0), IsEmpty());
  EXPECT_EQ(tables_.marks(0, 0), "          ");
}

TEST_F(FrequencyTablesTest, LinesCutShortOrWithoutANameAreLeftOut) {
  read({"[3]------------------------[2026/11/17 00:00:01]", "   FREQUENCIES    = [",
        "   FREQUENCIES    = [ 2998", "   FREQUENCIES    = [ 2998 ]",
        "   FREQUENCIES    = [ 2998 ] (", "   FREQUENCIES    = [ 2998 ] (Sha",
        "   FREQUENCIES    = [ 2998 ] ()", "   FREQUENCIES    = [ 2998 ] ( )",
        "   FREQUENCIES = [ 2998 ] (Shannon)", "   frequencies    = [ 2998 ] (Shannon)"});
  EXPECT_EQ(tables_.stationCount(), 0U);
  EXPECT_EQ(tables_.excessStations(), 0U);
}

TEST_F(FrequencyTablesTest, NamesAreReadInTheirEncoding) {
  read({"[3]------------------------[2026/11/17 00:00:01]", "   FREQUENCIES    = [ 2998 ] (東京)"});
  EXPECT_EQ(tables_.stationName(0), "東京");
  // 0x83 0x46 is one character whose second byte is an "F".
  tables_.readLines(
      "   \x83"
      "FREQUENCIES    = [ 2998 ] (Oslo)\r\n");
  EXPECT_EQ(tables_.stationCount(), 1U);
}

TEST_F(FrequencyTablesTest, LineWithABracketOfItsOwnIsReadByTheLabelBehindIt) {
  tables_.readLines(
      "[[x]------------------------[2026/11/17 00:00:01]\n"
      "[ ( [   FREQUENCIES    = [ 2998 ] (Shannon)\n"
      "[\n\n[ x ] FREQUENCIES    = [ 6532 ] (Hat Yai)");
  ASSERT_EQ(tables_.stationCount(), 2U);
  EXPECT_EQ(tables_.stationName(0), " [   FREQUENCIES    = [ 2998 ] (Shannon");
  EXPECT_EQ(tables_.stationName(1), "Hat Yai");
  EXPECT_THAT(tables_.frequencies(1), ElementsAre("x"));
  EXPECT_THAT(timePoints(1), ElementsAre("2026/11/17 00:00:01"));
}

TEST_F(FrequencyTablesTest, TwelfthFrequencyOfAStationIsLeftOutAndCounted) {
  std::string line = "   FREQUENCIES    = [";
  for (int f = 1; f <= 13; ++f) line += ' ' + std::to_string(1000 + f);
  line += " ] (Shannon)\r\n";
  tables_.readLines(header(1) + line + header(2) + line);
  EXPECT_EQ(tables_.frequencies(0).size(), 11U);
  EXPECT_EQ(tables_.frequencies(0).back(), "1011");
  EXPECT_EQ(tables_.excessFrequencies(), 2U);
  EXPECT_EQ(tables_.marks(0, 0), "11111111111");
  EXPECT_EQ(tables_.marks(0, 1), "11111111111");
}

TEST_F(FrequencyTablesTest, ThirtySecondStationIsLeftOutAndCounted) {
  std::string lines = header(1);
  for (int again = 0; again < 2; ++again) {
    for (int s = 1; s <= 34; ++s) {
      lines += "   FREQUENCIES    = [ 2998 ] (Station " + std::to_string(s) + ")\r\n";
    }
  }
  tables_.readLines(lines);
  EXPECT_EQ(tables_.stationCount(), 31U);
  EXPECT_EQ(tables_.stationName(30), "Station 31");
  EXPECT_EQ(tables_.excessStations(), 3U);
  EXPECT_EQ(tables_.excessFrequencies(), 0U);
}

TEST_F(FrequencyTablesTest, TenThousandTimesOfOneListSetTheOverflowFlag) {
  const std::string list = "   FREQUENCIES    = [ 2998 ] (Shannon)\r\n";
  std::string lines;
  for (int i = 0; i < 9999; ++i) lines += header(i) + list;
  tables_.readLines(lines);
  EXPECT_FALSE(tables_.overflowed());
  tables_.readLines(header(9999) + list);
  EXPECT_TRUE(tables_.overflowed());
  EXPECT_EQ(tables_.largestTimePointCount(), 10000U);
}

TEST_F(FrequencyTablesTest, TimesPastTheTableOverwriteItsLastCell) {
  const std::string list = "   FREQUENCIES    = [ 2998 ] (Shannon)\r\n";
  const std::string other = "   FREQUENCIES    = [ 6532 ] (Shannon)\r\n";
  std::string lines;
  for (int i = 0; i < 10001; ++i) lines += header(i) + list;
  tables_.readLines(lines);
  EXPECT_EQ(tables_.timePointCount(0), 10001U);
  EXPECT_EQ(tables_.points(0).size(), 10001U);
  EXPECT_EQ(tables_.timePoint(0, 10000), "2026/11/17 02:46:40");

  tables_.readLines(header(20000) + other);
  EXPECT_EQ(tables_.timePointCount(0), 10002U);
  EXPECT_EQ(tables_.points(0).size(), 10001U);
  EXPECT_EQ(tables_.timePoint(0, 10000), "2026/11/17 05:33:20");
  EXPECT_EQ(tables_.marks(0, 10000), "11        ") << "folded into the last cell";

  tables_.readLines(header(20000) + list);
  EXPECT_EQ(tables_.timePointCount(0), 10002U) << "the stamp in the last cell is known";
  tables_.readLines(header(10000) + list);
  EXPECT_EQ(tables_.timePointCount(0), 10003U) << "the overwritten stamp is not";
  tables_.readLines(header(77) + other);
  EXPECT_EQ(tables_.timePointCount(0), 10003U);
  EXPECT_EQ(tables_.marks(0, 77), "11        ");
  EXPECT_EQ(tables_.timePoint(0, 10000), "2026/11/17 02:46:40");
}

TEST_F(FrequencyTablesTest, OddTimeStampsPastTheTableAreReplacedLikeOthers) {
  const std::string list = "   FREQUENCIES    = [ 2998 ] (Shannon)\r\n";
  for (int i = 0; i < 10005; ++i) {
    char line[64];
    std::snprintf(line, sizeof line, "[3]------------------------[day %06d 00:00:00]\r\n", i);
    tables_.readLines(line + list);
  }
  EXPECT_EQ(tables_.timePointCount(0), 10005U);
  EXPECT_EQ(tables_.timePoint(0, 0), "day 000000 00:00:00");
  EXPECT_EQ(tables_.timePoint(0, 10000), "day 010004 00:00:00");
}

TEST_F(FrequencyTablesTest, AddFrq2AryPutsAOneAtTheFrequencysPlace) {
  const std::size_t station = tables_.enterStation("Shannon").value();
  const std::size_t point = tables_.enterTimePoint(station, "2026/11/17 00:00:01");
  tables_.addFrq2Ary(station, "2998", point);
  tables_.addFrq2Ary(station, "6532", point);
  const std::size_t later = tables_.enterTimePoint(station, "2026/11/17 00:00:02");
  tables_.addFrq2Ary(station, "6532", later);
  EXPECT_EQ(tables_.marks(station, point), "11        ");
  EXPECT_EQ(tables_.marks(station, later), " 1        ");
}

TEST_F(FrequencyTablesTest, MoreDifferentLinesThanAreRememberedAreAllRead) {
  std::string lines;
  for (int i = 0; i < 6000; ++i) {
    lines += header(i) + "   FREQUENCIES    = [ 2998 ] (Shannon) " + std::to_string(i) + "\r\n";
  }
  lines += header(6000) + "   FREQUENCIES    = [ 6532 ] (Shannon) 5999\r\n";
  tables_.readLines(lines);
  EXPECT_EQ(tables_.timePointCount(0), 6001U);
  EXPECT_EQ(tables_.marks(0, 5999), "1         ");
  EXPECT_EQ(tables_.marks(0, 6000), " 1        ");
}

TEST_F(FrequencyTablesTest, NulBytesAndEndlessLinesDoNoHarm) {
  std::string bytes(300'000, '\0');
  bytes +=
      "[\r\n" + header(1) + "   FREQUENCIES    = [ 2998 ] (" + std::string(200'000, 'S') + ")\r\n";
  bytes += "   FREQUENCIES    = [ 2998 ] (" + std::string(1000, 'T') + ")";
  tables_.readLines(bytes);
  ASSERT_EQ(tables_.stationCount(), 1U) << "the first name has no end within the limit";
  EXPECT_EQ(tables_.stationName(0), std::string(256, 'T'));
}

}  // namespace
}  // namespace vel::test
