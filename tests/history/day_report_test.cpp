#include "history/day_report.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel {
namespace {

using std::chrono::local_days;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using namespace std::chrono_literals;

constexpr local_days kDay{2026y / 11 / 20};

void finish(Job& job) {
  while (true) {
    const auto step = job.step(Job::Clock::time_point::min());
    ASSERT_TRUE(step.ok()) << step.error().text();
    if (*step == JobProgress::done) return;
  }
}

class DayReportTest : public testing::Test {
 protected:
  DayReportTest() {
    base.writeData("aircraft.csv", {"JA8089,B789"});
    base.writeData("FLIGHT.csv", {"JL0012,RJTTKSFO,-", "QF0001,YSSYZZZZ,-"});
    base.writeData("letter.csv", {"JL,JAL,Japan Airlines", "QF,QFA,Qantas"});
    base.writeData("airport.csv", {"RJTT,Tokyo HND", "KSFO,San Francisco SFO", "YSSY,Sydney SYD"});
    base.writeData("ICAO24.csv", {"3482D8,JAL,JL,JA8089,B789", "781F65,QFA,QF,VH-OQA,A388"});
    test::writeBytes(base.folders.pics / "JA8089.jpg", "x");
    base.writeLog(
        "20261120_list.csv",
        {"Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time",
         "JL0012,O,JA8089,RJTT,KSFO,B789,-,9:05:00", " JL0012 ,O,JA8089,RJTT,XXXX,B789,-,9:06:00",
         "ZZ0001,X,ZS-A<B,-,HND,A388,-,10:06:00", "ZZ0001,X,ZS-A<B,-,LAX,A388,-,23:06:00", "a,b"});
    base.writeLog("20261118_list.csv", {"JL0099,O,JA8089,RJTT,KSFO,B789,-,0:05:00"});
    base.writeLog("20261112_list.csv", {"JL0098,O,JA8080,RJTT,KSFO,B789,-,0:05:00"});
    base.writeLog(
        "202611200000_HFDL_FMT.log",
        {"[2]------------------------[2026/11/20 00:04:19]", " DOWN LINK",
         "   ICAO24 ADDRESS = 3482D8", "   REGISTRATION   = JA8089", "   FLIGHT ID      = 12",
         "  ..............................", "   ICAO24 ADDRESS = 781F65",
         "   REGISTRATION   = VH-OQA", "   FLIGHT ID      = QF0001",
         "  ..............................", "   ICAO24 ADDRESS = 000001", "   FLIGHT ID      = 7",
         "  .............................."});
  }

  std::vector<DayCounts> counted(ReportKind kind) {
    DayCounting job(tables, kind, kDay);
    finish(job);
    EXPECT_THAT(job.problems(), IsEmpty());
    return job.days();
  }

  std::vector<std::string> missing(ReportKind kind, GapKind gap) {
    const std::vector<DayCounts> days = counted(kind);
    TableGaps job(tables, kind, days.front());
    finish(job);
    std::vector<std::string> lines;
    for (const TableGap& found : job.gaps(gap)) {
      lines.push_back(found.name + " " + found.heardAs + " " + std::to_string(found.count));
    }
    return lines;
  }

  test::TemporaryBase base;
  Tables tables{base.folders, Encoding::codePage932()};
};

TEST_F(DayReportTest, ADayAndTheSevenBeforeItAreCountedSideBySide) {
  const std::vector<DayCounts> days = counted(ReportKind::list);
  ASSERT_EQ(days.size(), 8U);
  EXPECT_THAT(countTable({days[0], days[1], days[2]}),
              ElementsAre(ElementsAre("", "2026/11/20", "2026/11/19", "2026/11/18"),
                          ElementsAre("Messages / 受信数", "4", "", "1"),
                          ElementsAre("Aircraft / 機体", "2", "", "1"),
                          ElementsAre("Flights / 便", "2", "", "1"),
                          ElementsAre("Airlines / 航空会社", "2", "", "1"),
                          ElementsAre("Types / 機種", "2", "", "1"),
                          ElementsAre("Busiest hour / 最多時間帯", "09 (2)", "", "00 (1)")));
  EXPECT_EQ(days[0].hours[23], 1U);
  EXPECT_EQ(days[7].day, local_days{2026y / 11 / 13});
  EXPECT_FALSE(days[7].hasLog);
}

TEST_F(DayReportTest, ADayOfHfdlIsCountedByItsRecords) {
  const DayCounts day = counted(ReportKind::hfdl).front();
  EXPECT_EQ(day.messages, 3U);
  EXPECT_EQ(day.aircraft.size(), 2U);
  EXPECT_EQ(day.addresses.size(), 3U);
  EXPECT_EQ(day.flights.size(), 3U);
  EXPECT_EQ(day.airlines.of("QF"), 1U);
  EXPECT_EQ(day.airlines.size(), 1U);
  EXPECT_EQ(day.types.of("A388"), 1U);
  EXPECT_EQ(day.types.of("B789"), 1U);
  EXPECT_EQ(day.hours[0], 3U);
}

TEST_F(DayReportTest, WhatTheTablesDoNotHaveIsListedMostOftenHeardFirst) {
  EXPECT_THAT(missing(ReportKind::list, GapKind::aircraft), ElementsAre("ZS-A<B ZS-A<B 2"));
  EXPECT_THAT(missing(ReportKind::list, GapKind::flight), ElementsAre("ZZ0001 ZZ0001 2"));
  EXPECT_THAT(missing(ReportKind::list, GapKind::prefix), ElementsAre("ZZ ZZ 2"));
  EXPECT_THAT(missing(ReportKind::list, GapKind::airport), ElementsAre("LAX LAX 1", "XXXX XXXX 1"));
  EXPECT_THAT(missing(ReportKind::list, GapKind::photo), ElementsAre("ZS-A<B ZS-A<B 2"));
}

TEST_F(DayReportTest, ShortFlightsOfHfdlAreLookedUpUnderTheAircraftsAirline) {
  EXPECT_THAT(missing(ReportKind::hfdl, GapKind::aircraft), ElementsAre("000001 000001 1"));
  EXPECT_THAT(missing(ReportKind::hfdl, GapKind::flight), ElementsAre("0007 7 1"));
  EXPECT_THAT(missing(ReportKind::hfdl, GapKind::prefix), IsEmpty());
  EXPECT_THAT(missing(ReportKind::hfdl, GapKind::airport), ElementsAre("ZZZZ ZZZZ 1"));
  EXPECT_THAT(missing(ReportKind::hfdl, GapKind::photo), ElementsAre("VH-OQA VH-OQA 1"));
}

TEST_F(DayReportTest, ATableThatIsMissingIsSaid) {
  std::filesystem::remove(base.folders.data / "FLIGHT.csv");
  const std::vector<DayCounts> days = counted(ReportKind::list);
  TableGaps job(tables, ReportKind::list, days.front());
  while (true) {
    const auto step = job.step(Job::Clock::time_point::min());
    if (!step) {
      EXPECT_EQ(step.error().text(), "Not found data\\flight.csv");
      return;
    }
    ASSERT_EQ(*step, JobProgress::more);
  }
}

TEST_F(DayReportTest, ThePageHoldsEverythingInBothLanguagesAndTextIsOnlyText) {
  DayReport report;
  report.log = "<b>&.csv";
  report.days = counted(ReportKind::list);
  report.gaps[0] = {{GapKind::aircraft, "<script>alert('1')</script>\x01", "", 7}};
  report.firstHeard = {.aircraft = {"\"JA\"&"}, .flights = {"羽田"}};
  const std::string html = reportHtml(report);
  EXPECT_THAT(html, Not(HasSubstr("<script")));
  EXPECT_THAT(html, HasSubstr("<td>&lt;script&gt;alert(&#39;1&#39;)&lt;/script&gt;\xEF\xBF\xBD"
                              "</td><td>7</td>"));
  EXPECT_THAT(html, HasSubstr("<title>VEL ACARS &lt;b&gt;&amp;.csv</title>"));
  EXPECT_THAT(html, HasSubstr("<td>&quot;JA&quot;&amp;</td>"));
  EXPECT_THAT(html, HasSubstr("<h3>Aircraft without a record / 未登録の機体 (1)</h3>"));
  EXPECT_THAT(html, HasSubstr("<h2>Flights heard for the first time / 初めて受信した便</h2>\n"
                              "<table>\n<tr><td>羽田</td></tr>"));
  EXPECT_THAT(html, HasSubstr("<svg xmlns"));
  EXPECT_THAT(html, HasSubstr("<title>09: 2</title>"));
  EXPECT_THAT(html, HasSubstr("<td>Messages / 受信数</td><td>4</td>"));
}

TEST_F(DayReportTest, TheCsvQuotesWhatNeedsItAndHoldsNoFormula) {
  DayReport report;
  report.log = "20261120_list.csv";
  report.days = counted(ReportKind::list);
  report.gaps[0] = {{GapKind::aircraft, "=1+1", "", 7}, {GapKind::aircraft, "a,\"b\"", "", 1}};
  const std::string csv = reportCsv(report);
  EXPECT_THAT(csv, testing::StartsWith("\xEF\xBB\xBFVEL ACARS 20261120_list.csv\r\n"));
  EXPECT_THAT(csv, HasSubstr("Aircraft without a record / 未登録の機体\r\n'=1+1,7\r\n"
                             "\"a,\"\"b\"\"\",1\r\n"));
  EXPECT_THAT(csv, HasSubstr("Messages / 受信数,4,"));
  EXPECT_THAT(csv, HasSubstr("2026/11/20,0,0,0,0,0,0,0,0,0,2,1,"));
}

}  // namespace
}  // namespace vel
