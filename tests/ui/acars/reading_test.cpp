#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kNoLog =
    "Can't find correct log in the log folder. Use log function by date-naming. "
    "logsフォルダに日付別の航空機リストのログファイルが見つかりません";

class AcarsReading : public test::AcarsWindowTest {
 protected:
  // More rows than one turn of the event loop takes.
  static constexpr std::size_t kManyRows = 300000;

  void writeLarge(const char* name) const {
    std::string log;
    for (std::size_t i = 0; i < kManyRows; ++i) {
      log +=
          "FL" + std::to_string(i) + ",O,JA" + std::to_string(i) + ",RJTT,KLAX,B744,,12:00:00\r\n";
    }
    test::writeBytes(base_.folders.logs / name, log);
  }
  [[nodiscard]] bool framesShown() const {
    return find<QWidget>("Frame1").isVisible() || find<QWidget>("Frame2").isVisible() ||
           find<QWidget>("Frame3").isVisible();
  }
};

TEST_F(AcarsReading, TheNewestLogIsShownAtStart) {
  base_.writeLog("20260101_list.csv", {"OLD001,O,R,D,E,Q,M,01:00:00"});
  start();
  EXPECT_THAT(logNames(), ElementsAre("20260101_list.csv", "20260102_list.csv"));
  EXPECT_EQ(logs().currentText(), kLog);
  EXPECT_EQ(line(0), "0001|JL0012|O|JA8089|RJTT|KLAX|B744|Log remark|09:05:00");
  EXPECT_EQ(line(1), "0002|NH0105|X|JA731A|RJTT|PHNL|B773|定期便|09:35:00");
  EXPECT_THAT(flights(), ElementsAre("JL0012", "NH0105", "BA0007", "ZZ0009"));
  EXPECT_EQ(text("Label3"), "4");
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(AcarsReading, TheListHasItsNineColumns) {
  start();
  std::vector<std::string> titles;
  for (int i = 0; i < window().model()->columnCount(); ++i) {
    titles.push_back(
        window().model()->headerData(i, Qt::Horizontal, Qt::DisplayRole).toString().toStdString());
  }
  EXPECT_THAT(titles, ElementsAre("Line", "Flight", "Pict", "Regist.", "Dept.", "Dest.",
                                  "Equipment", "Remarks", "Time"));
}

TEST_F(AcarsReading, TheRunLogTellsTheStartInOrder) {
  start();
  EXPECT_THAT(desktop_.runLogLines,
              ElementsAre("Start main", "Start LoadEnv", "End LoadEnv", "End main",
                          "Start Form_Load", "Start GetLogFileList", "Start GetLogData",
                          "End GetLogData", "Coplete GetLogFileList", "End Form_Load"));
}

TEST_F(AcarsReading, OnlyDatedListLogsAreOffered) {
  for (const char* name : {"19991231_list.csv", "list.csv", "20260101.csv", "20260101_list.txt",
                           "20260101_HFDL_FMT.log", "20260101_LIST.CSV"}) {
    base_.writeLog(name, {});
  }
  start();
  EXPECT_THAT(logNames(), ElementsAre("20260101_LIST.CSV", "20260102_list.csv"));
}

TEST_F(AcarsReading, AnotherLogIsReadWhenItIsChosen) {
  base_.writeLog("20260101_list.csv", {"OLD001,O,R,D,E,Q,M,01:00:00"});
  start();
  test::choose(logs(), 0);
  EXPECT_THAT(flights(), ElementsAre("OLD001"));
  EXPECT_EQ(text("Label3"), "1");
}

TEST_F(AcarsReading, WithoutADatedLogTheMessageIsShownAndTheProgramGoesOn) {
  fs::remove(base_.folders.logs / kLog);
  start();
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoLog));
  EXPECT_EQ(logs().currentIndex(), -1);
  EXPECT_THAT(flights(), IsEmpty());
  EXPECT_FALSE(desktop_.ended);
}

TEST_F(AcarsReading, WithoutALogsFolderTheSameMessageIsShown) {
  fs::remove_all(base_.folders.logs);
  start();
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoLog));
  EXPECT_FALSE(desktop_.ended);
}

TEST_F(AcarsReading, WithoutALogAFilterReadsNothingAndSaysNothing) {
  fs::remove(base_.folders.logs / kLog);
  start();
  desktop_.messages.clear();
  const long before = reads();
  test::typeKeys(box("Text4(0)"), "jl");
  click("Command9");
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(reads(), before);
  EXPECT_THAT(flights(), IsEmpty());
}

TEST_F(AcarsReading, RefreshKeepsTheChosenLogAndReadsItAgain) {
  base_.writeLog("20260101_list.csv", {"OLD001,O,R,D,E,Q,M,01:00:00"});
  start();
  test::choose(logs(), 0);
  base_.writeLog("20260101_list.csv",
                 {"OLD001,O,R,D,E,Q,M,01:00:00", "OLD002,O,R,D,E,Q,M,02:00:00"});
  base_.writeLog("20260103_list.csv", {"NEW001,O,R,D,E,Q,M,01:00:00"});
  const long before = reads();
  click("Command5");
  EXPECT_EQ(logs().currentText(), "20260101_list.csv");
  EXPECT_THAT(logNames(),
              ElementsAre("20260101_list.csv", "20260102_list.csv", "20260103_list.csv"));
  EXPECT_THAT(flights(), ElementsAre("OLD001", "OLD002"));
  EXPECT_EQ(reads(), before + 1);
}

TEST_F(AcarsReading, RefreshTakesTheNewestWhenTheChosenLogIsGone) {
  base_.writeLog("20260101_list.csv", {"OLD001,O,R,D,E,Q,M,01:00:00"});
  start();
  test::choose(logs(), 0);
  fs::remove(base_.folders.logs / "20260101_list.csv");
  QTest::keyClick(&window(), Qt::Key_F5);
  test::finishJobs();
  EXPECT_EQ(logs().currentText(), kLog);
  EXPECT_THAT(flights(), SizeIs(4));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(AcarsReading, RefreshWithoutAnyLogLeftEmptiesTheListAndThePanel) {
  start();
  select(0);
  ASSERT_TRUE(framesShown());
  fs::remove(base_.folders.logs / kLog);
  click("Command5");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoLog));
  EXPECT_THAT(flights(), IsEmpty());
  EXPECT_EQ(text("Label3"), "0");
  EXPECT_FALSE(framesShown());
}

TEST_F(AcarsReading, ALogThatVanishedIsToldOnceAndTheProgramGoesOn) {
  base_.writeLog("20260101_list.csv", {"OLD001,O,R,D,E,Q,M,01:00:00"});
  start();
  select(0);
  fs::remove(base_.folders.logs / "20260101_list.csv");
  test::choose(logs(), 0);
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  EXPECT_THAT(flights(), IsEmpty());
  EXPECT_FALSE(framesShown());
  EXPECT_FALSE(desktop_.ended);
  test::choose(logs(), 1);
  EXPECT_THAT(flights(), SizeIs(4));
  EXPECT_THAT(desktop_.messages, SizeIs(1));
}

TEST_F(AcarsReading, ALogThatCannotBeReadIsToldOnceAndTheProgramGoesOn) {
  start();
  const fs::path log = base_.folders.logs / kLog;
  fs::remove(log);
  fs::create_directory(log);
  test::typeKeys(box("Text4(0)"), "J");
  // Only a regular file is a log.
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  EXPECT_FALSE(desktop_.ended);
}

TEST_F(AcarsReading, MalformedLinesAreReportedOnceAfterTheRead) {
  base_.writeLog(kLog,
                 {kHeaderLine, "A1,O,R,D,E,Q,M,01:00:00", "", "no comma", "five,fields,only,2,3",
                  "A2,O,R,D,E,Q,M,01:00:00", "A3,O,R,D,E,Q,M,01:00:00", "A4,O,R,D,E,Q,M,01:00:00",
                  "1,2,3,4,5,6,7,8,九"});
  desktop_.onMessage = [this](const std::string&) {
    EXPECT_EQ(test::control<QLabel>(*program_->mainWindow(), "Label3").text(), "4");
    EXPECT_EQ(desktop_.runLogLines.back(), "Start GetLogData");
  };
  start();
  EXPECT_THAT(desktop_.messages,
              ElementsAre("Found 2 lines of incorrect data.  不正な行が 2行 ありました。\r\n\r\n"
                          "ex.: 1,2,3,4,5,6,7,8,九\r\n\r\n"
                          "Error line:3,4,5,9"));
  EXPECT_THAT(flights(), ElementsAre("A1", "A2", "A3", "A4"));
}

TEST_F(AcarsReading, AFilterDoesNotRepeatTheReportThatWasShownLast) {
  base_.writeLog(kLog, {"A1,O,R,D,E,Q,M,01:00:00", "five,fields,only,2,3"});
  start();
  ASSERT_THAT(desktop_.messages, SizeIs(1));
  test::typeKeys(box("Text4(0)"), "a1");
  click("Command9");
  EXPECT_THAT(desktop_.messages, SizeIs(1));
  // Another report is shown, and a refresh repeats one.
  base_.writeLog(kLog, {"A1,O,R,D,E,Q,M,01:00:00", "five,fields,only,2,4"});
  test::typeKeys(box("Text4(0)"), "a");
  EXPECT_THAT(desktop_.messages, SizeIs(2));
  click("Command5");
  EXPECT_THAT(desktop_.messages, SizeIs(3));
}

TEST_F(AcarsReading, AnotherLogsReportIsShownAlsoWithTheSameText) {
  base_.writeLog(kLog, {"five,fields,only,2,3"});
  base_.writeLog("20260101_list.csv", {"five,fields,only,2,3"});
  start();
  test::choose(logs(), 0);
  test::typeKeys(box("Text4(0)"), "a");
  EXPECT_THAT(desktop_.messages, SizeIs(2));
}

TEST_F(AcarsReading, ALineSelectedDuringAReadIsShownByAClickAfterIt) {
  writeLarge(kLog);
  start();
  bool selected = false;
  const test::BetweenSteps look([&] {
    const auto rows = static_cast<std::size_t>(window().model()->rowCount());
    if (selected || rows < 10 || rows >= kManyRows) return;
    selected = true;
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, cellPlace(3, 1));
  });
  QTest::mouseClick(&button("Command5"), Qt::LeftButton);
  test::finishJobs();
  settle();
  ASSERT_TRUE(selected);
  ASSERT_EQ(list().listIndex(), 3);
  ASSERT_FALSE(framesShown());
  select(3);
  EXPECT_TRUE(framesShown());
  EXPECT_EQ(find<QGroupBox>("Frame1").title(), "JA3");
}

TEST_F(AcarsReading, ALineKeptFromBeforeTheReadIsShownAlsoWhenItWasClickedDuringIt) {
  writeLarge(kLog);
  start();
  settings().env_keepCsrPos = 1;
  select(3);
  bool selected = false;
  const test::BetweenSteps look([&] {
    if (selected || program_->context().jobs.isIdle() || window().model()->rowCount() < 10) return;
    if (list().listIndex() >= 0) return;
    selected = true;
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, cellPlace(3, 1));
  });
  QTest::mouseClick(&button("Command5"), Qt::LeftButton);
  test::finishJobs();
  settle();
  ASSERT_TRUE(selected);
  EXPECT_EQ(list().listIndex(), 3);
  EXPECT_TRUE(framesShown());
}

TEST_F(AcarsReading, AMessageIsShownOnceAndAReadStartedBehindItCounts) {
  base_.writeLog(kLog, {"A1,O,R,D,E,Q,M,01:00:00", "five,fields,only,2,3"});
  start();
  desktop_.messages.clear();
  const int counted = program_->readsToEnd();
  desktop_.onMessage = [this](const std::string&) {
    desktop_.onMessage = nullptr;
    base_.writeLog(kLog, {"A2,O,R,D,E,Q,M,01:00:00"});
    window().GetLogData();
    test::finishJobs();
  };
  desktop_.runLogLines.clear();
  click("Command5");
  EXPECT_THAT(desktop_.messages, SizeIs(1));
  EXPECT_THAT(flights(), ElementsAre("A2"));
  EXPECT_EQ(program_->readsToEnd(), counted - 1);
  EXPECT_EQ(std::count(desktop_.runLogLines.begin(), desktop_.runLogLines.end(), "End GetLogData"),
            1);
}

TEST_F(AcarsReading, AFileWithOnlyTheHeaderShowsAnEmptyListAndNoMessage) {
  base_.writeLog(kLog, {kHeaderLine});
  start();
  EXPECT_THAT(flights(), IsEmpty());
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(text("Label3"), "0");
}

TEST_F(AcarsReading, AReadHidesThePanelAndShowsTheTitle) {
  start();
  select(0);
  ASSERT_TRUE(framesShown());
  EXPECT_FALSE(find<QLabel>("Label5").isVisible());
  click("Command5");
  EXPECT_FALSE(framesShown());
  EXPECT_TRUE(find<QLabel>("Label5").isVisible());
  EXPECT_EQ(text("Label5"), "Database Maneger for QZ-ACARS/QZ-HFDL");
  EXPECT_EQ(list().listIndex(), -1);
}

TEST_F(AcarsReading, TheCursorIsKeptWhenTheSettingSaysSo) {
  start();
  settings().env_keepCsrPos = 1;
  select(2);
  click("Command5");
  settle();
  EXPECT_EQ(list().listIndex(), 2);
  EXPECT_TRUE(framesShown());
  EXPECT_EQ(find<QGroupBox>("Frame1").title(), "G-CIVE");
}

TEST_F(AcarsReading, TheCursorIsNotKeptBeyondTheEndOfTheList) {
  start();
  settings().env_keepCsrPos = 1;
  select(3);
  test::typeKeys(box("Text4(0)"), "J");
  settle();
  EXPECT_EQ(list().listIndex(), -1);
  EXPECT_FALSE(framesShown());
}

TEST_F(AcarsReading, TheKeptCursorIsAPlaceInTheShownOrder) {
  start();
  settings().env_keepCsrPos = 1;
  clickTitle(kListFlight);
  select(0);
  EXPECT_EQ(list().selectedText(kListFlight), "BA0007");
  base_.writeLog(kLog, {"NH0105,X,JA731A,RJTT,PHNL,B773,,09:35:00", "AA0001,O,N1,D,E,Q,,01:00:00"});
  click("Command5");
  settle();
  EXPECT_EQ(list().listIndex(), 0);
  EXPECT_EQ(list().selectedText(kListFlight), "AA0001");
}

TEST_F(AcarsReading, TheLastReadWinsWhenAFilterIsTypedDuringARead) {
  writeLarge(kLog);
  start();
  ASSERT_THAT(flights(), SizeIs(kManyRows));
  bool typed = false;
  std::size_t rowsWhenTyped = 0;
  const test::BetweenSteps look([&] {
    const std::size_t rows = window().model()->rows().size();
    if (typed || rows == 0 || rows >= kManyRows) return;
    typed = true;
    rowsWhenTyped = rows;
    QTest::keyClicks(&box("Text4(0)"), "299999");
  });
  click("Command5");
  ASSERT_TRUE(typed);
  EXPECT_GT(rowsWhenTyped, 0U);
  EXPECT_THAT(flights(), ElementsAre("FL299999"));
  EXPECT_EQ(text("Label3"), "1");
}

TEST_F(AcarsReading, AnOvertakenReadReportsNothingAndTheLastOneReportsOnce) {
  writeLarge(kLog);
  test::writeBytes(base_.folders.logs / kLog,
                   "bad,line\r\n" + test::readBytes(base_.folders.logs / kLog));
  start();
  desktop_.messages.clear();
  const auto ends = [this] {
    return std::count(desktop_.runLogLines.begin(), desktop_.runLogLines.end(), "End GetLogData");
  };
  const auto endsBefore = ends();
  int typed = 0;
  const test::BetweenSteps look([&] {
    const std::size_t rows = window().model()->rows().size();
    if (typed == 3 || rows == 0 || rows >= kManyRows) return;
    ++typed;
    QTest::keyClick(&box("Text4(0)"), Qt::Key_1);
  });
  click("Command5");
  EXPECT_GE(typed, 1);
  EXPECT_THAT(desktop_.messages, SizeIs(1));
  EXPECT_EQ(ends(), endsBefore + 1);
}

TEST_F(AcarsReading, TheCursorIsKeptAcrossAReadThatWasOvertaken) {
  writeLarge(kLog);
  start();
  settings().env_keepCsrPos = 1;
  select(2);
  bool typed = false;
  const test::BetweenSteps look([&] {
    const std::size_t rows = window().model()->rows().size();
    if (typed || rows == 0 || rows >= kManyRows) return;
    typed = true;
    QTest::keyClick(&box("Text4(0)"), Qt::Key_1);
  });
  click("Command5");
  settle();
  ASSERT_TRUE(typed);
  EXPECT_EQ(list().listIndex(), 2);
}

TEST_F(AcarsReading, ClosingTheWindowDuringAReadEndsTheProgram) {
  writeLarge(kLog);
  start();
  bool closed = false;
  const test::BetweenSteps look([&] {
    const std::size_t rows = window().model()->rows().size();
    if (closed || rows == 0 || rows >= kManyRows) return;
    closed = true;
    window().close();
  });
  click("Command5");
  ASSERT_TRUE(closed);
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 0);
  EXPECT_LT(window().model()->rows().size(), kManyRows);
}

TEST_F(AcarsReading, ALogThatVanishesDuringAReadIsReadToItsEnd) {
  writeLarge(kLog);
  start();
  const test::BetweenSteps look([this, removed = false]() mutable {
    const std::size_t rows = window().model()->rows().size();
    if (removed || rows == 0 || rows >= kManyRows) return;
    removed = fs::remove(base_.folders.logs / kLog);
  });
  click("Command5");
  EXPECT_FALSE(fs::exists(base_.folders.logs / kLog));
  EXPECT_THAT(flights(), SizeIs(kManyRows));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(AcarsReading, AMillionBytesOfBrokenTextAreShownWithoutACrash) {
  std::string log(1 << 20, '\xFF');
  log += std::string("\r\n\0\0,\0\r\n", 8);
  log += "JL\x81,O,R,D,E,Q,\xFF,01:00:00\r\n";
  test::writeBytes(base_.folders.logs / kLog, log);
  start();
  EXPECT_THAT(desktop_.messages,
              ElementsAre("Found 1 lines of incorrect data.  不正な行が 1行 ありました。\r\n\r\n"
                          "ex.:   , \r\n\r\n"
                          "Error line:1,2"));
  ASSERT_THAT(flights(), SizeIs(1));
  select(0);
  EXPECT_FALSE(desktop_.ended);
}

}  // namespace
}  // namespace vel
