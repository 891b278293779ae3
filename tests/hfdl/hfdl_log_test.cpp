#include "hfdl/hfdl_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "log/dated_logs.h"
#include "tests/support/test_files.h"

namespace vel {

bool operator==(const HfdlRecord& a, const HfdlRecord& b) {
  return a.timeStamp == b.timeStamp && a.tag == b.tag && a.direction == b.direction &&
         a.groundStation == b.groundStation && a.address == b.address &&
         a.registration == b.registration && a.flightId == b.flightId;
}

void PrintTo(const HfdlRecord& r, std::ostream* out) {
  for (const auto& field :
       {r.timeStamp, r.tag, r.direction, r.groundStation, r.address, r.registration, r.flightId}) {
    *out << '"' << field << "\" ";
  }
}

namespace test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kDots = "  ..............................";
constexpr const char* kHeader = "[3]------------------------[2026/11/17 00:01:24]";

class HfdlLogTest : public ::testing::Test {
 protected:
  std::vector<HfdlRecord> readBytesOf(std::string_view bytes,
                                      const Encoding& encoding = Encoding::codePage932()) {
    const auto path = folder_ / "202611170000_HFDL_FMT.log";
    writeBytes(path, bytes);
    HfdlReader reader(InputFile::open(path).value(), encoding);
    std::vector<HfdlRecord> records;
    while (true) {
      const auto step = reader.step();
      if (!step.ok()) {
        ADD_FAILURE() << step.error().text();
        break;
      }
      if (*step == HfdlReader::Step::end) break;
      if (*step == HfdlReader::Step::record) records.push_back(reader.record());
    }
    return records;
  }

  std::vector<HfdlRecord> read(std::initializer_list<std::string_view> lines) {
    return readBytesOf(cp932Lines(lines));
  }

  TemporaryFolder folder_;
};

TEST_F(HfdlLogTest, MessageGivesOneLineWithEveryField) {
  EXPECT_THAT(read({kHeader, " DOWN LINK", "  GS NAME         = Reykjavik, Iceland",
                    "   ICAO24 ADDRESS = 706071", "   REGISTRATION   = 9K-APK",
                    "   FLIGHT ID      = PK0370", "   POSITION       = N35.123 E139.456", kDots}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "D", " Reykjavik, Iceland",
                                     "706071", "9K-APK", "PK0370"}));
}

TEST_F(HfdlLogTest, TwoSubRecordsShareTimeTagDirectionAndGroundStation) {
  EXPECT_THAT(read({kHeader, " UP LINK", "  GS NAME         = Shannon, Ireland",
                    "   ICAO24 ADDRESS = A254FF", "   REGISTRATION   = N24988",
                    "   FLIGHT ID      = WS4213", kDots, "   ICAO24 ADDRESS = 3C54A1", kDots}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "U", " Shannon, Ireland",
                                     "A254FF", "N24988", "WS4213"},
                          HfdlRecord{"2026/11/17 00:01:24", "[3]", "U", " Shannon, Ireland",
                                     "3C54A1", "", ""}));
}

TEST_F(HfdlLogTest, SubRecordWithoutDottedLineIsShownAtTheNextHeader) {
  EXPECT_THAT(read({kHeader, " DOWN LINK", "   ICAO24 ADDRESS = A254FF",
                    "[1]------------------------[2026/11/17 00:05:02]", " SQUITTER"}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "D", "", "A254FF", "", ""}));
}

TEST_F(HfdlLogTest, SubRecordWithoutDottedLineIsShownAtTheEndOfTheFile) {
  EXPECT_THAT(read({kHeader, " DOWN LINK", "   ICAO24 ADDRESS = A254FF"}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "D", "", "A254FF", "", ""}));
}

TEST_F(HfdlLogTest, SubRecordWithoutAddressIsDropped) {
  EXPECT_THAT(
      read({kHeader, " DOWN LINK", "   REGISTRATION   = N213BZ", "   FLIGHT ID      = 796", kDots}),
      IsEmpty());
}

TEST_F(HfdlLogTest, DroppedSubRecordLeavesNothingToTheNextOne) {
  EXPECT_THAT(read({kHeader, "   REGISTRATION   = N213BZ", "   FLIGHT ID      = 796", kDots,
                    "   ICAO24 ADDRESS = A254FF", kDots}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "", "", "A254FF", "", ""}));
}

TEST_F(HfdlLogTest, NextMessageTakesNothingOverFromTheLastOne) {
  EXPECT_THAT(
      read({kHeader, " DOWN LINK", "  GS NAME         = Shannon, Ireland",
            "   REGISTRATION   = N24988", "   FLIGHT ID      = WS4213",
            "ABC------------------------[2026/11/17 00:05:02]", "   ICAO24 ADDRESS = A254FF"}),
      ElementsAre(HfdlRecord{"2026/11/17 00:05:02", "ABC", "", "", "A254FF", "", ""}));
}

TEST_F(HfdlLogTest, SecondAddressWithoutDottedLineReplacesTheFirst) {
  EXPECT_THAT(
      read({kHeader, "   ICAO24 ADDRESS = 7892A3", "   ICAO24 ADDRESS = 781B47",
            "   FLIGHT ID      = G34109"}),
      ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "", "", "781B47", "", "G34109"}));
}

TEST_F(HfdlLogTest, DirectionAndEndMarksMustBeTheWholeLine) {
  EXPECT_THAT(
      read({kHeader, " DOWN LINK ", "DOWN LINK", " UP LINK 1", "   ICAO24 ADDRESS = 706071",
            " ..............................", "  ............................. ",
            "  ...............................", "   FLIGHT ID      = PK0370"}),
      ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "", "", "706071", "", "PK0370"}));
}

TEST_F(HfdlLogTest, LabelsCountAnywhereInALineButValuesBeginInTheirColumn) {
  EXPECT_THAT(
      read({"xxx <------------------------[2026/11/17 00:01:24]", "ICAO24 ADDRESS = 706071",
            "     REGISTRATION   = 9K-APK", "    FLIGHT ID      = PK0370"}),
      // The header's date stands behind its bracket.
      ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "xxx", "", "", "071", "= 9K-APK", " PK0370"}));
}

TEST_F(HfdlLogTest, LabelsAreCaseSensitiveAndTheirBlanksExact) {
  EXPECT_THAT(read({kHeader, "   icao24 address = 706071", "   ICAO24 ADDRESS= 706071",
                    "   ICAO24  ADDRESS = 706071", "   ICAO24 ADDRESS =706071"}),
              IsEmpty());
}

TEST_F(HfdlLogTest, FirstLabelOfTheTableDecidesALineWithTwo) {
  EXPECT_THAT(read({kHeader, "   ICAO24 ADDRESS = 706071 FLIGHT ID      = PK0370",
                    "   FLIGHT ID      = ICAO24 ADDRESS = A254FF", kDots}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "", "",
                                     "ICAO24 ADDRESS = A254FF", "", ""}));
}

TEST_F(HfdlLogTest, ValuesAreNotTrimmed) {
  EXPECT_THAT(read({kHeader, "  GS NAME         =  Agana ", "   ICAO24 ADDRESS =  706071 ",
                    "   REGISTRATION   =  9K-APK ", "   FLIGHT ID      =  PK0370 "}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "", "  Agana ", " 706071 ",
                                     " 9K-APK ", " PK0370 "}));
}

TEST_F(HfdlLogTest, ValueOfTheLabelAloneIsEmpty) {
  EXPECT_THAT(read({kHeader, "   ICAO24 ADDRESS = ", kDots, "  GS NAME         =",
                    "   ICAO24 ADDRESS = 706071", "   REGISTRATION   = ", "   FLIGHT ID      = "}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "", "", "706071", "", ""}));
}

TEST_F(HfdlLogTest, GroundStationKeepsTheBlankBehindTheEqualsSign) {
  EXPECT_THAT(read({kHeader, "  GS NAME         =Agana", "   ICAO24 ADDRESS = 706071", kDots}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "", "Agana", "706071", "", ""}));
}

TEST_F(HfdlLogTest, HeaderTooShortForItsColumnsGivesAShorterTimeStamp) {
  EXPECT_THAT(read({"[3]------------------------[2026/1", "   ICAO24 ADDRESS = 706071",
                    "------------------------[", "   ICAO24 ADDRESS = 706072"}),
              ElementsAre(HfdlRecord{"2026/1 --[2026/", "[3]", "", "", "706071", "", ""},
                          HfdlRecord{" --------", "---", "", "", "706072", "", ""}));
}

TEST_F(HfdlLogTest, AddressBeforeAnyHeaderGivesALineWithoutATime) {
  EXPECT_THAT(read({" DOWN LINK", "   ICAO24 ADDRESS = 706071", kDots}),
              ElementsAre(HfdlRecord{"", "", "D", "", "706071", "", ""}));
}

TEST_F(HfdlLogTest, PositionsCountCharactersNotBytes) {
  EXPECT_THAT(read({"東京局------------------------[2026/11/17 00:01:24]",
                    "  GS NAME         = 東京, 日本", "日本国ICAO24 ADDRESS = 706071",
                    "   REGISTRATION   = ＪＡ０１", "   FLIGHT ID      = ｱｲｳ"}),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "東京局", "", " 東京, 日本", "706071",
                                     "ＪＡ０１", "ｱｲｳ"}));
}

TEST_F(HfdlLogTest, SecondByteOfACharacterIsNoLetterOfALabel) {
  // 0x83 0x49 is one katakana character whose second byte is an "I".
  std::string bytes = cp932Lines({kHeader});
  bytes += "   \x83ICAO24 ADDRESS = 706071\r\n  .\r\n";
  EXPECT_THAT(readBytesOf(bytes), IsEmpty());
}

TEST_F(HfdlLogTest, ReadsAnotherEncodingWhereTheUserChoseOne) {
  EXPECT_THAT(readBytesOf("[3]------------------------[2026/11/17 00:01:24]\n"
                          "  GS NAME         = Krasnoyarsk – Россия\n   ICAO24 ADDRESS = 706071\n",
                          Encoding::named("UTF-8").value()),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "", " Krasnoyarsk – Россия",
                                     "706071", "", ""}));
}

TEST_F(HfdlLogTest, LineFeedAloneEndsALineToo) {
  EXPECT_THAT(readBytesOf("[3]------------------------[2026/11/17 00:01:24]\n UP LINK\n"
                          "   ICAO24 ADDRESS = 706071\n  ..............................\n"),
              ElementsAre(HfdlRecord{"2026/11/17 00:01:24", "[3]", "U", "", "706071", "", ""}));
}

TEST_F(HfdlLogTest, FileCutInTheMiddleOfARecordShowsWhatItHas) {
  const std::string whole = cp932Lines({kHeader, " DOWN LINK", "  GS NAME         = Agana, Guam",
                                        "   ICAO24 ADDRESS = 706071", "   REGISTRATION   = 9K-APK",
                                        "   FLIGHT ID      = PK0370", kDots});
  const std::size_t addressLine = whole.find("   ICAO24");
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const auto records = readBytesOf(std::string_view(whole).substr(0, size));
    const bool hasAddress = size > addressLine + 20;
    ASSERT_EQ(records.size(), hasAddress ? 1U : 0U) << size;
    if (hasAddress) {
      EXPECT_THAT(std::string("706071\r"), ::testing::StartsWith(records[0].address)) << size;
      EXPECT_EQ(records[0].timeStamp, "2026/11/17 00:01:24");
    }
  }
}

TEST_F(HfdlLogTest, NulBytesAndBrokenTextAreShownAsTheyCame) {
  std::string bytes = cp932Lines({kHeader});
  bytes += std::string(
      "   ICAO24 ADDRESS = 70\0"
      "6071\r\n",
      29);
  bytes += "   REGISTRATION   = \x81\r\n\0\0\0\r\n";
  const auto records = readBytesOf(bytes);
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].address, std::string("70\0"
                                            "6071",
                                            7));
  EXPECT_EQ(records[0].registration, "\xEF\xBF\xBD");
}

TEST_F(HfdlLogTest, EndlessLineCostsNoMoreThanItsLimit) {
  std::string bytes = cp932Lines({kHeader, "   ICAO24 ADDRESS = 706071"});
  bytes += "   REGISTRATION   = " + std::string(3'000'000, 'X') + "\r\n";
  bytes += cp932Lines({"   FLIGHT ID      = PK0370"});
  const auto records = readBytesOf(bytes);
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].registration, std::string(kLongestHfdlLine - 20, 'X'));
  EXPECT_EQ(records[0].flightId, "PK0370");
}

TEST_F(HfdlLogTest, LongGroundStationIsNotRepeatedWholeInEveryRecord) {
  std::string bytes = cp932Lines({kHeader});
  bytes += "  GS NAME         =" + std::string(50'000, 'G') + "\r\n";
  for (int i = 0; i < 3; ++i) bytes += cp932Lines({"   ICAO24 ADDRESS = 706071", kDots});
  const auto records = readBytesOf(bytes);
  ASSERT_EQ(records.size(), 3U);
  EXPECT_EQ(records[2].groundStation, std::string(256, 'G'));
}

TEST_F(HfdlLogTest, MillionUnknownLinesAreReadInPiecesAndIgnored) {
  std::string bytes;
  for (int i = 0; i < 1'000'000; ++i) bytes += "x\n";
  const auto path = folder_ / "20.log";
  writeBytes(path, bytes);
  HfdlReader reader(InputFile::open(path).value(), Encoding::codePage932());
  int pauses = 0;
  while (true) {
    const auto step = reader.step();
    ASSERT_TRUE(step.ok());
    if (*step == HfdlReader::Step::end) break;
    ASSERT_EQ(*step, HfdlReader::Step::pause);
    ++pauses;
  }
  EXPECT_EQ(reader.bytesRead(), bytes.size());
  EXPECT_EQ(pauses, 500);
  EXPECT_EQ(*reader.step(), HfdlReader::Step::end);
}

TEST_F(HfdlLogTest, GrowingLogIsReadToWhereItEndsThen) {
  const auto path = folder_ / "20.log";
  writeBytes(path, cp932Lines({kHeader, "   ICAO24 ADDRESS = 706071", kDots}));
  HfdlReader reader(InputFile::open(path).value(), Encoding::codePage932());
  ASSERT_EQ(*reader.step(), HfdlReader::Step::record);
  writeBytes(path, "");
  EXPECT_EQ(*reader.step(), HfdlReader::Step::end);
  EXPECT_EQ(reader.record().address, "706071");
}

TEST(HfdlLogs, AreTheDatedFormattedLogsAndTheNewestIsChosenFirst) {
  const TemporaryBase base;
  for (const char* name : {"202611170000_HFDL_FMT.log", "202611160000_hfdl_fmt.LOG",
                           "20261117_list.csv", "HFDL_FMT.log"}) {
    writeBytes(base.folders.logs / name, "");
  }
  const auto names = hfdlLogs(base.folders);
  EXPECT_THAT(names, ElementsAre("202611160000_hfdl_fmt.LOG", "202611170000_HFDL_FMT.log"));
  EXPECT_EQ(chooseLog(names, ""), 1);
  EXPECT_EQ(chooseLog(names, "202611160000_hfdl_fmt.LOG"), 0);
}

TEST(HfdlLogs, WithNoFileNothingIsChosenAndTheMessageIsThis) {
  const TemporaryBase base;
  EXPECT_EQ(chooseLog(hfdlLogs(base.folders), ""), -1);
  EXPECT_STREQ(kNoHfdlLog,
               "Can't find correct HFDL_FMT log file in the log folder. Use log function by "
               "date-naming. "
               "logsフォルダに日付別のHFDLのFMTログファイルが見つかりません");
}

}  // namespace
}  // namespace test
}  // namespace vel
