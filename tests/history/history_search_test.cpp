#include "history/history_search.h"

#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/history/find_in_logs.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using std::chrono::local_days;
using test::findIn;
using test::Finding;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

constexpr const char* kHeader = "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time";

class HistorySearchTest : public testing::Test {
 protected:
  HistorySearchTest() {
    base.writeLog("20261119_list.csv", {kHeader, "JL0012,X,JA-8089,RJTT,RJAA,B789,-,9:05:00",
                                        "AB12,X,N24988,EGJJ,EDDT,E545,JA8089,0:00:04"});
    base.writeLog("20261120_list.csv", {kHeader, " JL0013 ,○,JA8089,,RJTT,B789,羽田アジア,10:00:01",
                                        "JL0012,X,JA8090,RJTT,RJAA,B789,-,10:05:00",
                                        "JL0012,X,JA8089,RJTT,RJAA,B789,-,10:05:00,9"});
    base.writeLog(
        "202611200000_HFDL_FMT.log",
        {"   REGISTRATION   = JA8089", "[2]------------------------[2026/11/20 00:04:19]",
         " DOWN LINK", "  GS NAME         = Riverhead, New York", "   ICAO24 ADDRESS = 3482D8",
         "   REGISTRATION   = JA-8089", "   FLIGHT ID      = JL0012",
         "   POSITION       = N35.123 E139.456", "  ..............................",
         "   ICAO24 ADDRESS = 781F65", "   REGISTRATION   = B-223P", "   FLIGHT ID      = 12",
         "  ..............................", "   REGISTRATION   = JA8089",
         "[1]------------------------[2026/11/20 00:17:02]", " SQUITTER",
         "  GS NAME         = San Francisco, California"});
    test::writeBytes(
        base.folders.eachLogs / "JA-8089.log",
        "2026/11/20 01:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>2.JA8089<NAK>200<STX>M00AJL0012"
        "POSN23457<CR><VF>RJTT<ETX><CRC><DEL>\r\n"
        "a line in another form JA8089\r\n"
        "2026/11/18 01:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>2.JA8089<NAK>200<STX>M00AJL0012"
        "<ETX><CRC><DEL>\r\n");
    test::writeBytes(
        base.folders.eachLogs / "N24988.log",
        "2026/11/18 02:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>2.N24988<NAK>H10<STX>M00AAB0012"
        "TO JA8089<ETX><CRC><DEL>\r\n");
  }

  HistoryQuery query(const std::string& text, SearchMeaning meaning) {
    return {.text = text, .meaning = meaning};
  }

  test::TemporaryBase base;
};

TEST_F(HistorySearchTest, ARegistrationIsFoundInAllThreeKindsOfLogsOldestDayFirst) {
  for (const char* typed : {"JA8089", "JA-8089"}) {
    const Finding finding = findIn(base.folders, query(typed, SearchMeaning::registration));
    EXPECT_THAT(
        finding.lines(),
        ElementsAre("2026/11/19|09:05:00|ACARS|JL0012|JA-8089|RJTT|RJAA|B789|-",
                    "2026/11/20|10:00:01|ACARS|JL0013|JA8089||RJTT|B789|羽田アジア",
                    "2026/11/20|00:04:19|HFDL|JL0012|JA-8089||||D Riverhead, New York 3482D8",
                    "2026/11/20|01:00:11|Raw log|JL0012|JA8089||||20 POSN23457 RJTT"));
    EXPECT_THAT(finding.problems, IsEmpty());
  }
}

TEST_F(HistorySearchTest, TheOtherMeaningsLookAtTheirOwnFields) {
  const auto registrations = [this](const std::string& text, SearchMeaning meaning) {
    return findIn(base.folders, query(text, meaning)).column(kFoundRegistration);
  };
  EXPECT_THAT(registrations("JL0012", SearchMeaning::flight),
              ElementsAre("JA-8089", "JA8090", "JA-8089", "JA8089"));
  EXPECT_THAT(registrations("12", SearchMeaning::flight), ElementsAre("B-223P"));
  EXPECT_THAT(registrations("RJTT", SearchMeaning::airport),
              ElementsAre("JA-8089", "JA8089", "JA8090", "JA8089"));
  EXPECT_THAT(registrations("781F65", SearchMeaning::address), ElementsAre("B-223P"));
  EXPECT_THAT(registrations("JA8089", SearchMeaning::anyText),
              ElementsAre("N24988", "JA8089", "JA8089", "N24988"));
  EXPECT_THAT(registrations("Riverhead", SearchMeaning::anyText), ElementsAre("JA-8089"));
  EXPECT_THAT(registrations("アジ", SearchMeaning::anyText), ElementsAre("JA8089"));
}

TEST_F(HistorySearchTest, AShortFlightOfHfdlIsFoundUnderItsAirlineToo) {
  base.writeData("ICAO24.csv",
                 {"000001,JAL,JL,JA1,B789", "000002,BAW,BA,G-A,B744", "000003,XXX,XY,N1,B77W"});
  std::string log;
  const auto add = [&log](const std::string& address, const std::string& flight) {
    log += "[2]------------------------[2026/11/18 00:04:19]\r\n   ICAO24 ADDRESS = " + address +
           "\r\n   FLIGHT ID      = " + flight + "\r\n";
  };
  for (const char* address : {"000001", "000002", "00000F"}) {
    for (const char* flight : {"7", "007", "0007", "  7 ", "123", "12A", "JL0007", "17"}) {
      add(address, flight);
    }
  }
  test::writeBytes(base.folders.logs / "202611180000_HFDL_FMT.log", log);
  const auto flights = [this](const std::string& text, bool ignoreCase = false) {
    HistoryQuery asked = query(text, SearchMeaning::flight);
    asked.ignoreCase = ignoreCase;
    asked.lists = asked.rawLogs = false;
    const Finding finding = findIn(base.folders, asked);
    std::vector<std::string> found;
    for (std::size_t i = 0; i < finding.found.size(); ++i) {
      const std::string text_ = finding.found.cell(i, kFoundText);
      found.push_back(text_.substr(text_.size() - 1) + " " + finding.found.cell(i, kFoundFlight));
    }
    return found;
  };
  EXPECT_THAT(flights("JL0007"),
              ElementsAre("1 7", "1 007", "1 0007", "1 7", "1 JL0007", "2 JL0007", "F JL0007"));
  EXPECT_THAT(flights("jl0007", true), SizeIs(7));
  EXPECT_THAT(flights("jl0007"), IsEmpty());
  EXPECT_THAT(flights("BA0123"), ElementsAre("2 123"));
  EXPECT_THAT(flights("BA012A"), ElementsAre("2 12A"));
  EXPECT_THAT(flights("0123"), ElementsAre("F 123"));
  EXPECT_THAT(flights("123"), ElementsAre("1 123", "2 123", "F 123"));
  EXPECT_THAT(flights("XY0007"), IsEmpty());
  std::filesystem::remove(base.folders.data / "ICAO24.csv");
  EXPECT_THAT(flights("BA0123"), IsEmpty());
  EXPECT_THAT(flights("JL0007"), SizeIs(3));
}

TEST_F(HistorySearchTest, CaseCountsUnlessItIsSwitchedOff) {
  HistoryQuery asked = query("riverHEAD", SearchMeaning::anyText);
  EXPECT_THAT(findIn(base.folders, asked).lines(), IsEmpty());
  asked.ignoreCase = true;
  EXPECT_THAT(findIn(base.folders, asked).lines(), SizeIs(1));
  asked = query("ja8089", SearchMeaning::registration);
  EXPECT_THAT(findIn(base.folders, asked).lines(), IsEmpty());
  asked.ignoreCase = true;
  EXPECT_THAT(findIn(base.folders, asked).lines(), SizeIs(4));
}

TEST_F(HistorySearchTest, OnlyTheDaysAndTheLogsThatWereAskedForAreRead) {
  HistoryQuery asked = query("JA8089", SearchMeaning::registration);
  asked.days = {local_days{2026y / 11 / 19}, local_days{2026y / 11 / 19}};
  EXPECT_THAT(findIn(base.folders, asked).column(kFoundDate), ElementsAre("2026/11/19"));
  asked.days = {local_days{2026y / 11 / 20}, {}};
  EXPECT_THAT(findIn(base.folders, asked).column(kFoundSource),
              ElementsAre("ACARS", "HFDL", "Raw log"));
  asked.days = {};
  asked.lists = asked.rawLogs = false;
  EXPECT_THAT(findIn(base.folders, asked).column(kFoundSource), ElementsAre("HFDL"));
}

TEST_F(HistorySearchTest, ACommaFindsTheRecordsOfTheListLogs) {
  HistoryQuery asked = query(",", SearchMeaning::anyText);
  asked.hfdl = asked.rawLogs = false;
  EXPECT_THAT(findIn(base.folders, asked).column(kFoundRegistration),
              ElementsAre("JA-8089", "N24988", "JA8089", "JA8090"));
  asked = query(",", SearchMeaning::registration);
  EXPECT_THAT(findIn(base.folders, asked).lines(), IsEmpty());
}

TEST_F(HistorySearchTest, TenThousandCharactersAreLookedForLikeAnyText) {
  const std::string giant(10'000, 'x');
  for (const SearchMeaning meaning : {SearchMeaning::registration, SearchMeaning::flight,
                                      SearchMeaning::airport, SearchMeaning::anyText}) {
    EXPECT_THAT(findIn(base.folders, query(giant, meaning)).lines(), IsEmpty());
  }
  base.writeLog("20261121_list.csv", {"JL0012,X,JA8089,RJTT,RJAA,B789," + giant + ",1:00:00"});
  EXPECT_THAT(findIn(base.folders, query(giant, SearchMeaning::anyText)).lines(), SizeIs(1));
  EXPECT_THAT(findIn(base.folders, query(giant + "x", SearchMeaning::anyText)).lines(), IsEmpty());
}

TEST_F(HistorySearchTest, LogsThatGoGrowOrCannotBeReadAreToldOnceAndCostNothingElse) {
  test::writeBytes(base.folders.logs / "20261117_list.csv",
                   "JL0012,X,JA8089,RJTT,RJAA,B789,-,1:00:00\r\n");
  test::writeBytes(base.folders.logs / "20261118_list.csv", "x\r\n");
  HistoryQuery asked = query("JA8089", SearchMeaning::registration);
  asked.hfdl = asked.rawLogs = false;
  FoundMessages found;
  HistorySearch search(base.folders, Encoding::codePage932(), asked, found);
  const auto step = [&] { return *search.step(Job::Clock::time_point::min()); };
  EXPECT_EQ(step(), JobProgress::more);  // the folders are listed
  EXPECT_EQ(search.logsInAll(), 4U);
  EXPECT_EQ(step(), JobProgress::more);  // the first log is read
  std::ofstream(base.folders.logs / "20261117_list.csv", std::ios::binary | std::ios::app) << "y\n";
  std::filesystem::remove(base.folders.logs / "20261118_list.csv");
  while (step() == JobProgress::more) {
  }
  EXPECT_EQ(search.logsRead(), 4U);
  EXPECT_EQ(found.size(), 3U);
  EXPECT_EQ(reportOf(search.problems()),
            "2 logs could not be read completely.  完全に読み込めないログが 2件 ありました。\r\n"
            "\r\n20261117_list.csv: grew meanwhile 読込み中に追記されました"
            "\r\n20261118_list.csv: gone 削除されました");
}

TEST_F(HistorySearchTest, ManyProblemsAreNotAllNamed) {
  std::vector<LogProblem> problems(
      12, {"a.log", LogProblem::Kind::unreadable, ErrorNumber::permissionDenied});
  const std::string report = reportOf(problems);
  EXPECT_TRUE(report.starts_with("12 logs could not be read completely."));
  EXPECT_TRUE(report.ends_with("a.log: ERROR #70\r\n..."));
  EXPECT_EQ(reportOf({}), "");
}

TEST_F(HistorySearchTest, WithoutFoldersThereIsNothingToFind) {
  const Folders nowhere = Folders::of(base.path() / "nowhere" / "vel");
  EXPECT_THAT(findIn(nowhere, query("JA8089", SearchMeaning::registration)).lines(), IsEmpty());
}

TEST_F(HistorySearchTest, DamagedBytesEndNothing) {
  std::string bytes;
  unsigned state = 7;
  for (int i = 0; i < 300'000; ++i) {
    state = state * 1664525 + 1013904223;
    bytes += static_cast<char>(state >> 24);
  }
  const std::string line = "JL0012,X,JA8089,RJTT,RJAA,B789,-,1:00:00\n";
  test::writeBytes(base.folders.logs / "20261121_list.csv", bytes + "\n" + line + bytes);
  test::writeBytes(base.folders.logs / "202611210000_HFDL_FMT.log", bytes);
  test::writeBytes(base.folders.eachLogs / "x.log", bytes);
  const Finding finding = findIn(base.folders, query("JA8089", SearchMeaning::registration));
  EXPECT_THAT(finding.column(kFoundDate), testing::Contains("2026/11/21").Times(1));
  for (const char* text : {"-", "\x01", "A"}) {
    const Finding any = findIn(base.folders, query(text, SearchMeaning::anyText));
    EXPECT_THAT(any.problems, IsEmpty());
  }
}

TEST_F(HistorySearchTest, TheOffsetIsWhereTheLineBegins) {
  const Finding finding = findIn(base.folders, query("JA8090", SearchMeaning::registration));
  ASSERT_EQ(finding.found.size(), 1U);
  EXPECT_EQ(finding.found.log(0).name, "20261120_list.csv");
  const std::string bytes = test::readBytes(base.folders.logs / "20261120_list.csv");
  EXPECT_TRUE(bytes.substr(finding.found.offset(0)).starts_with("JL0012,X,JA8090"));
}

}  // namespace
}  // namespace vel
