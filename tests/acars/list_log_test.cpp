#include <gmock/gmock.h>

#include "tests/acars/read_list.h"

namespace vel {
namespace {

using test::ListLogTest;
using test::ListRead;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST_F(ListLogTest, AFileWithOnlyTheHeaderGivesAnEmptyListAndNoReport) {
  const ListRead read = readLines({kHeaderLine});
  EXPECT_THAT(read.rows, IsEmpty());
  EXPECT_EQ(read.malformed.report(), "");
  EXPECT_EQ(read.malformed.lineNumbers, "");
}

TEST_F(ListLogTest, AnEmptyFileGivesAnEmptyListAndNoReport) {
  const ListRead read = readBytesAsLog("");
  EXPECT_THAT(read.rows, IsEmpty());
  EXPECT_EQ(read.malformed.report(), "");
}

TEST_F(ListLogTest, ARecordShowsItsEightFieldsInOrder) {
  const ListRead read = readLines({kHeaderLine, "JL0012,O,JA8089,RJTT,KLAX,B744,Daily,12:34:56"});
  EXPECT_THAT(read.rows, ElementsAre("JL0012,O,JA8089,RJTT,KLAX,B744,Daily,12:34:56"));
}

TEST_F(ListLogTest, TheFlightLosesTheBlanksAroundItAndNothingElseDoes) {
  const ListRead read =
      readLines({"  JL0012 , O , JA8089 , RJTT , KLAX , B744 , On time ,12:34:56"});
  EXPECT_THAT(read.rows,
              ElementsAre("JL0012, O , JA8089 , RJTT , KLAX , B744 , On time ,12:34:56"));
}

TEST_F(ListLogTest, ATimeBeforeTenIsFilledWithZerosToEightCharacters) {
  const ListRead read = readLines({"A1,O,R,D,E,Q,M,9:05:00", "A2,O,R,D,E,Q,M,",
                                   "A3,O,R,D,E,Q,M,19:05:00", "A4,O,R,D,E,Q,M,119:05:00"});
  EXPECT_THAT(read.rows, ElementsAre("A1,O,R,D,E,Q,M,09:05:00", "A2,O,R,D,E,Q,M,00000000",
                                     "A3,O,R,D,E,Q,M,19:05:00", "A4,O,R,D,E,Q,M,119:05:00"));
}

TEST_F(ListLogTest, ATimeOfFullWidthCharactersIsFilledByCharacters) {
  const ListRead read = readLines({"A1,O,R,D,E,Q,M,９時"});
  EXPECT_THAT(read.rows, ElementsAre("A1,O,R,D,E,Q,M,000000９時"));
}

TEST_F(ListLogTest, TheFirstColumnHoldsFourDigitsAndMoreOnlyWhereNeeded) {
  EXPECT_EQ(listLineNumber(1), "0001");
  EXPECT_EQ(listLineNumber(42), "0042");
  EXPECT_EQ(listLineNumber(9999), "9999");
  EXPECT_EQ(listLineNumber(10000), "10000");
  EXPECT_EQ(listLineNumber(1000000), "1000000");
}

TEST_F(ListLogTest, JapaneseTextAndHalfWidthKatakanaAreShownAsWritten) {
  const ListRead read = readLines({"JL0012,○,JA8089,RJTT,KLAX,B744,定期便ﾃｽﾄ表ソ,12:34:56"});
  EXPECT_THAT(read.rows, ElementsAre("JL0012,○,JA8089,RJTT,KLAX,B744,定期便ﾃｽﾄ表ソ,12:34:56"));
}

TEST_F(ListLogTest, LineEndsOfLineFeedAloneAndALastLineWithoutOneAreAccepted) {
  const ListRead read =
      readBytesAsLog("A1,O,R,D,E,Q,M,01:00:00\nA2,O,R,D,E,Q,M,02:00:00\r\nA3,O,R,D,E,Q,M,03:00:00");
  EXPECT_THAT(read.rows, ElementsAre("A1,O,R,D,E,Q,M,01:00:00", "A2,O,R,D,E,Q,M,02:00:00",
                                     "A3,O,R,D,E,Q,M,03:00:00"));
  EXPECT_EQ(read.malformed.lineNumbers, "");
}

TEST_F(ListLogTest, ALineOfNineFieldsIsCountedShownAsExampleAndListed) {
  const ListRead read =
      readLines({kHeaderLine, "A1,O,R,D,E,Q,M,01:00:00", "A2,O,R,D,E,Q,M,more,02:00:00"});
  EXPECT_THAT(read.rows, SizeIs(1));
  EXPECT_EQ(read.malformed.report(),
            "Found 1 lines of incorrect data.  不正な行が 1行 ありました。\r\n\r\n"
            "ex.: A2,O,R,D,E,Q,M,more,02:00:00\r\n\r\n"
            "Error line:3");
}

TEST_F(ListLogTest, ALineOfSevenFieldsIsMalformedToo) {
  const ListRead read = readLines({"A2,O,R,D,E,Q,02:00:00"});
  EXPECT_THAT(read.rows, IsEmpty());
  EXPECT_EQ(read.malformed.report(),
            "Found 1 lines of incorrect data.  不正な行が 1行 ありました。\r\n\r\n"
            "ex.: A2,O,R,D,E,Q,02:00:00\r\n\r\n"
            "Error line:1");
}

TEST_F(ListLogTest, OfTwoMalformedLinesFiveAndNineTheSecondIsTheExample) {
  const ListRead read =
      readLines({kHeaderLine, "A2,O,R,D,E,Q,M,02:00:00", "A3,O,R,D,E,Q,M,03:00:00",
                 "A4,O,R,D,E,Q,M,04:00:00", "five,bad", "A6,O,R,D,E,Q,M,06:00:00",
                 "A7,O,R,D,E,Q,M,07:00:00", "A8,O,R,D,E,Q,M,08:00:00", "nine,壊れた行"});
  EXPECT_THAT(read.rows, SizeIs(6));
  EXPECT_EQ(read.malformed.report(),
            "Found 2 lines of incorrect data.  不正な行が 2行 ありました。\r\n\r\n"
            "ex.: nine,壊れた行\r\n\r\n"
            "Error line:5,9");
}

TEST_F(ListLogTest, ABlankLineAndOneWithoutACommaAreListedButNotCounted) {
  const ListRead read = readLines({"", "no comma here", "one,comma", ""});
  EXPECT_EQ(read.malformed.report(),
            "Found 1 lines of incorrect data.  不正な行が 1行 ありました。\r\n\r\n"
            "ex.: one,comma\r\n\r\n"
            "Error line:1,2,3,4");
}

TEST_F(ListLogTest, BlankLinesAloneAreNotReported) {
  const ListRead read = readLines({"", "no comma here", "A1,O,R,D,E,Q,M,01:00:00"});
  EXPECT_THAT(read.rows, SizeIs(1));
  EXPECT_EQ(read.malformed.lineNumbers, "1,2");
  EXPECT_EQ(read.malformed.report(), "");
}

TEST_F(ListLogTest, OnlyTheExactHeaderIsSkipped) {
  const ListRead read = readLines({"Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time",
                                   "Flight No.1,O,R,D,E,Q,M,01:00:00",
                                   "flight no.,O,R,D,E,Q,M,02:00:00", "A1,O,R,D,E,Q,M,03:00:00",
                                   "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time"});
  EXPECT_THAT(read.rows, ElementsAre("Flight No.1,O,R,D,E,Q,M,01:00:00",
                                     "flight no.,O,R,D,E,Q,M,02:00:00", "A1,O,R,D,E,Q,M,03:00:00"));
  EXPECT_EQ(read.malformed.lineNumbers, "");
}

TEST_F(ListLogTest, AReadGoesOnWhereItsStepEnded) {
  std::string log;
  for (int i = 0; i < 1000; ++i) {
    log += "A" + std::to_string(i) + ",O,R,D,E,Q,M,01:00:00\r\n";
  }
  const ListRead read = readBytesAsLog(log);
  ASSERT_THAT(read.rows, SizeIs(1000));
  EXPECT_EQ(read.rows.front(), "A0,O,R,D,E,Q,M,01:00:00");
  EXPECT_EQ(read.rows.back(), "A999,O,R,D,E,Q,M,01:00:00");
}

}  // namespace
}  // namespace vel
