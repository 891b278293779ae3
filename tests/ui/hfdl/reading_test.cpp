#include <QComboBox>
#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/hfdl_window.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kNoLog =
    "Can't find correct HFDL_FMT log file in the log folder. Use log function by date-naming. "
    "logsフォルダに日付別のHFDLのFMTログファイルが見つかりません";

class HfdlReading : public test::HfdlWindowTest {
 protected:
  [[nodiscard]] std::vector<std::string> flights() const { return column(kHfdlFlight); }
  void writeMany(const char* name, int rows) const {
    std::string log = "[1]------------------------[2026/01/02 09:00:00]\r\n";
    for (int i = 0; i < rows; ++i) {
      log += "   ICAO24 ADDRESS = FFFFFF\r\n  ..............................\r\n";
    }
    test::writeBytes(base_.folders.logs / name, log);
  }
};

TEST_F(HfdlReading, TheNewestLogIsShownWithAllTwelveColumns) {
  writeAircraftLog("202601010000_HFDL_FMT.log", {"111111 OLD -"});
  start();
  EXPECT_THAT(logNames(), ElementsAre("202601010000_HFDL_FMT.log", kLog));
  EXPECT_EQ(logs().currentText(), kLog);
  EXPECT_EQ(line(0),
            "0001|2026/01/02 09:01:00|[1]|D| Agana, Guam|84C27D|JA8089|JL0012| JA8089 JAL JL B744|"
            "o|RJTT|KLAX");
  EXPECT_EQ(line(2),
            "0003|2026/01/02 09:03:00|[1]|D| Agana, Guam|861234|JA731A|| JA731A ANA NH B773|x||");
  EXPECT_EQ(line(3), "0004|2026/01/02 09:04:00|[1]|D| Agana, Guam|AAAAAA|N123|XX0001||x||");
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(HfdlReading, AFlightOf123IsLookedUpAsJL0123WhileItsColumnShows123) {
  start();
  EXPECT_EQ(line(1),
            "0002|2026/01/02 09:02:00|[1]|D| Agana, Guam|84C27D|JA8089|123| JA8089 JAL JL B744|o|"
            "RJAA|PHNL");
}

TEST_F(HfdlReading, AFlightOfFiveCharactersIsLookedUpAsItStands) {
  base_.writeData("FLIGHT.csv", {"12345,RJTTKLAX,-", "JL12345,RJAAPHNL,-"});
  writeAircraftLog(kLog, {"84C27D JA8089 12345"});
  start();
  EXPECT_EQ(column(kHfdlOrigin), std::vector<std::string>{"RJTT"});
}

TEST_F(HfdlReading, AMessageWithTwoAircraftGivesTwoLinesOfTheSameMessage) {
  base_.writeLog(kLog, {"[3]------------------------[2026/01/02 10:11:12]", " UP LINK",
                        "  GS NAME         =Shannon", "   ICAO24 ADDRESS = 84C27D",
                        "   REGISTRATION   = JA8089", kEndOfSubRecord, "   ICAO24 ADDRESS = 861234",
                        kEndOfSubRecord});
  start();
  EXPECT_EQ(line(0),
            "0001|2026/01/02 10:11:12|[3]|U|Shannon|84C27D|JA8089|| JA8089 JAL JL B744|o||");
  EXPECT_EQ(line(1), "0002|2026/01/02 10:11:12|[3]|U|Shannon|861234||| JA731A ANA NH B773|x||");
}

TEST_F(HfdlReading, ASubRecordWithoutItsDottedLineComesWithTheNextHeaderOrTheEndOfTheFile) {
  base_.writeLog(kLog,
                 {"[1]------------------------[2026/01/02 10:00:00]", "   ICAO24 ADDRESS = 84C27D",
                  "[2]------------------------[2026/01/02 10:01", "   ICAO24 ADDRESS = 861234"});
  start();
  EXPECT_THAT(column(kHfdlAddress), ElementsAre("84C27D", "861234"));
  EXPECT_THAT(column(kHfdlTag), ElementsAre("[1]", "[2]"));
}

TEST_F(HfdlReading, ASubRecordWithoutAnAddressGivesNoLine) {
  base_.writeLog(kLog,
                 {"[1]------------------------[2026/01/02 10:00:00]", "   REGISTRATION   = JA8089",
                  "   FLIGHT ID      = JL0012", kEndOfSubRecord, "   ICAO24 ADDRESS = "});
  start();
  EXPECT_EQ(window().model()->rowCount(), 0);
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(HfdlReading, AnAddressInLowerCaseFindsNoAircraft) {
  writeAircraftLog(kLog, {"84c27d JA8089 123"});
  start();
  EXPECT_EQ(line(0), "0001|2026/01/02 09:01:00|[1]|D| Agana, Guam|84c27d|JA8089|123||o||");
}

TEST_F(HfdlReading, LinesOfFewerThanFiveFieldsAreNoAircraft) {
  base_.writeData("ICAO24.csv", {"", "84C27D", "84C27D,a", "84C27D,a,b", "84C27D,a,b,c",
                                 "84C27D,JAL,JL,JA8089,B744,six"});
  start();
  EXPECT_EQ(column(kHfdlAircraft)[0], " JA8089 JAL JL B744");
}

TEST_F(HfdlReading, TheTenThousandthLineShowsFourZeros) {
  writeMany(kLog, 10001);
  start();
  ASSERT_EQ(window().model()->rowCount(), 10001);
  EXPECT_EQ(column(kHfdlNumber)[9998], "9999");
  EXPECT_EQ(column(kHfdlNumber)[9999], "0000");
  EXPECT_EQ(column(kHfdlNumber)[10000], "0001");
}

TEST_F(HfdlReading, WithoutAnyLogTheMessageIsShownAndNothingIsRead) {
  fs::remove(base_.folders.logs / kLog);
  start();
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoLog));
  EXPECT_EQ(logs().currentIndex(), -1);
  EXPECT_EQ(window().model()->rowCount(), 0);
  EXPECT_FALSE(isShown("Label7"));
}

TEST_F(HfdlReading, RefreshKeepsTheShownLogAndReadsWhatWasAdded) {
  writeAircraftLog("202601010000_HFDL_FMT.log", {"111111 OLD -"});
  start();
  logs().setCurrentIndex(0);
  test::finishJobs();
  ASSERT_THAT(column(kHfdlAddress), ElementsAre("111111"));
  writeAircraftLog("202601010000_HFDL_FMT.log", {"111111 OLD -", "222222 NEW -"});
  writeAircraftLog("202601030000_HFDL_FMT.log", {"333333 NEXT -"});
  click("Command5");
  EXPECT_THAT(logNames(), SizeIs(3));
  EXPECT_EQ(logs().currentText(), QStringLiteral("202601010000_HFDL_FMT.log"));
  EXPECT_THAT(column(kHfdlAddress), ElementsAre("111111", "222222"));
}

TEST_F(HfdlReading, AShownLogThatIsGoneLeavesNoneSelectedAndTheListEmpty) {
  writeAircraftLog("202601010000_HFDL_FMT.log", {"111111 OLD -"});
  start();
  select(0);
  fs::remove(base_.folders.logs / kLog);
  const long before = reads();
  click("Command5");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoLog));
  EXPECT_THAT(logNames(), ElementsAre("202601010000_HFDL_FMT.log"));
  EXPECT_EQ(logs().currentIndex(), -1);
  EXPECT_EQ(window().model()->rowCount(), 0);
  EXPECT_EQ(reads(), before);
  EXPECT_FALSE(isShown("Frame1"));
  EXPECT_FALSE(isShown("Label7"));
  logs().setCurrentIndex(0);
  test::finishJobs();
  EXPECT_THAT(column(kHfdlAddress), ElementsAre("111111"));
}

TEST_F(HfdlReading, ALogThatCannotBeOpenedGivesItsErrorNumberAndTheProgramGoesOn) {
  writeAircraftLog("202601010000_HFDL_FMT.log", {"111111 OLD -"});
  start();
  fs::remove(base_.folders.logs / "202601010000_HFDL_FMT.log");
  logs().setCurrentIndex(0);
  test::finishJobs();
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  EXPECT_EQ(window().model()->rowCount(), 0);
  EXPECT_FALSE(desktop_.ended);
  EXPECT_FALSE(isShown("Label7"));
  logs().setCurrentIndex(1);
  test::finishJobs();
  EXPECT_EQ(window().model()->rowCount(), 5);
}

TEST_F(HfdlReading, AMissingAircraftTableEndsTheProgramAtStart) {
  fs::remove(base_.folders.data / "ICAO24.csv");
  startAndEnd();
  EXPECT_THAT(desktop_.messages, ElementsAre("Not found data\\ICAO24.csv"));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_FALSE(fileExists(base_.folders.program / "vel.env"));
}

TEST_F(HfdlReading, AMissingFlightTableEndsTheProgramAtStart) {
  fs::remove(base_.folders.data / "FLIGHT.csv");
  startAndEnd();
  EXPECT_THAT(desktop_.messages, ElementsAre("Not found data\\flight.csv"));
  EXPECT_EQ(desktop_.exitStatus, 1);
}

TEST_F(HfdlReading, WithoutAnyFlightTheFlightTableIsNotNeeded) {
  writeAircraftLog(kLog, {"84C27D JA8089 -"});
  fs::remove(base_.folders.data / "FLIGHT.csv");
  start();
  EXPECT_EQ(window().model()->rowCount(), 1);
  EXPECT_FALSE(desktop_.ended);
}

TEST_F(HfdlReading, EachOfBothFirstReadsCountsTheStartDown) {
  start();
  EXPECT_EQ(program_->readsToEnd(), 0);
}

TEST_F(HfdlReading, WhileBothReadTheSplashCountsTheLinesOfBoth) {
  writeMany(kLog, 30000);
  std::vector<std::string> progress;
  const test::BetweenSteps look([&] {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() != QLatin1String("Splash")) continue;
      progress.push_back(test::control<QLabel>(*widget, "Progress").text().toStdString());
    }
  });
  start();
  EXPECT_THAT(progress, Contains("FMT:30000 LIST:1"));
}

TEST_F(HfdlReading, AReadHidesTheDetailsAndShowsLoadingUntilItEnds) {
  start();
  select(0);
  ASSERT_TRUE(isShown("Frame1") && isShown("Frame2"));
  ASSERT_EQ(text("Label1"), "150 x 100");
  bool seen = false;
  const test::BetweenSteps look([&] {
    if (program_->context().jobs.isIdle()) return;
    seen = true;
    EXPECT_FALSE(isShown("Frame1"));
    EXPECT_FALSE(isShown("Frame2"));
    EXPECT_TRUE(isShown("Label7"));
    EXPECT_EQ(text("Label7"), "Loading");
    EXPECT_EQ(text("Label1"), "");
  });
  window().GetLogData();
  test::finishJobs();
  EXPECT_TRUE(seen);
  EXPECT_FALSE(isShown("Label7"));
  EXPECT_FALSE(isShown("Frame1"));
  EXPECT_EQ(list().listIndex(), -1);
}

TEST_F(HfdlReading, WhileLoadingIsSuppressedNothingIsRead) {
  start();
  const long before = reads();
  window().withoutReading([this] { window().GetLogData(); });
  test::finishJobs();
  EXPECT_EQ(reads(), before);
  window().GetLogData();
  EXPECT_EQ(reads(), before + 1);
}

TEST_F(HfdlReading, TheRunLogTellsListingAndReading) {
  start();
  desktop_.runLogLines.clear();
  click("Command5");
  EXPECT_THAT(desktop_.runLogLines, ElementsAre("Start GetLogFileList", "Start GetLogData",
                                                "End GetLogData", "Coplete GetLogFileList"));
}

TEST_F(HfdlReading, WithTheSettingTheSelectedLineIsKeptAndShownInDetail) {
  start();
  settings().env_keepCsrPos = 1;
  select(2);
  click("Command5");
  settle();
  EXPECT_EQ(list().listIndex(), 2);
  EXPECT_EQ(address(), "861234");
  EXPECT_TRUE(isShown("Frame1"));
}

TEST_F(HfdlReading, ALinePastTheNewEndIsSelectedNoMore) {
  start();
  settings().env_keepCsrPos = 1;
  select(4);
  writeAircraftLog(kLog, {"84C27D JA8089 JL0012", "84C27D JA8089 -"});
  click("Command5");
  settle();
  EXPECT_EQ(list().listIndex(), -1);
  EXPECT_FALSE(isShown("Frame1"));
}

TEST_F(HfdlReading, WithoutTheSettingNoLineIsSelectedAfterARead) {
  start();
  select(2);
  click("Command5");
  settle();
  EXPECT_EQ(list().listIndex(), -1);
}

TEST_F(HfdlReading, TheKeptLineIsThatOfTheShownOrder) {
  start();
  settings().env_keepCsrPos = 1;
  clickTitle(kHfdlAddress);
  clickTitle(kHfdlAddress);
  ASSERT_EQ(column(kHfdlAddress)[0], "AAAAAA");
  select(0);
  click("Command5");
  settle();
  EXPECT_EQ(list().listIndex(), 0);
  EXPECT_EQ(address(), "AAAAAA");
}

TEST_F(HfdlReading, ALogChosenDuringAReadIsTheOneThatIsShown) {
  writeMany("202601010000_HFDL_FMT.log", 100000);
  start();
  int turns = 0;
  const test::BetweenSteps look([&] {
    if (!program_->context().jobs.isIdle() && ++turns == 3) logs().setCurrentIndex(1);
  });
  logs().setCurrentIndex(0);
  test::finishJobs();
  EXPECT_GE(turns, 3);
  EXPECT_EQ(window().model()->rowCount(), 5);
  EXPECT_THAT(flights(), ElementsAre("JL0012", "123", "", "XX0001", "JL0123"));
  EXPECT_FALSE(isShown("Label7"));
}

TEST_F(HfdlReading, ARefreshInsideTheListingIsTheOneThatCounts) {
  start();
  desktop_.runLogLines.clear();
  bool nested = false;
  const test::BetweenSteps look([&] {
    if (program_->context().jobs.isIdle() || std::exchange(nested, true)) return;
    window().GetLogFileList();
  });
  click("Command5");
  EXPECT_EQ(reads(), 1);
  EXPECT_EQ(window().model()->rowCount(), 5);
}

TEST_F(HfdlReading, AFileCutInTheMiddleOfARecordShowsWhatItHolds) {
  base_.writeLog(kLog, {"[1]------------------------[2026/01/02 10:00:00]", " DOWN LINK",
                        "   ICAO24 ADDRESS = 84C27D"});
  std::string cut = test::readBytes(base_.folders.logs / kLog);
  test::writeBytes(base_.folders.logs / kLog, cut + "   REGISTRATION   = JA80");
  start();
  EXPECT_EQ(line(0), "0001|2026/01/02 10:00:00|[1]|D||84C27D|JA80|| JA8089 JAL JL B744|x||");
}

TEST_F(HfdlReading, ARegistrationThatWouldLeaveItsFolderHasNoPhoto) {
  test::writePhoto(base_.folders.base / "secret.jpg", 10, 10);
  writeAircraftLog(kLog, {"84C27D ../secret -"});
  start();
  EXPECT_THAT(column(kHfdlPhoto), Each("x"));
}

}  // namespace
}  // namespace vel
