#include "history/ui/history_wiring.h"

#include <QGroupBox>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <filesystem>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "acars/ui/acars_browser.h"
#include "hfdl/hfdl_row.h"
#include "hfdl/ui/hfdl_browser.h"
#include "tests/ui/support/acars_window.h"

namespace vel::test {
namespace {

using ::testing::ElementsAre;

/// Both browsers as the program has them, with the windows over all days.
class HistoryWiringTest : public AcarsWindowTest {
 protected:
  HistoryWiringTest() {
    base_.writeData("ICAO24.csv", {"3482D8,JAL,JL,JA8089,B789"});
    base_.writeLog("20260101_list.csv",
                   {kHeaderLine, "a,malformed line", "NH0105,X,JA731A,RJTT,PHNL,B773,-,8:00:00",
                    "JL0012,O,JA8089,RJTT,KLAX,B744,first day,9:05:00"});
    base_.writeLog(
        "202601010000_HFDL_FMT.log",
        {"[2]------------------------[2026/01/01 00:04:19]", "   ICAO24 ADDRESS = 000001",
         "   REGISTRATION   = VH-OQA", "  ..............................",
         "   ICAO24 ADDRESS = 3482D8", "   REGISTRATION   = JA8089", "   FLIGHT ID      = JL0012"});
    std::string raw;
    for (int i = 0; i < 200; ++i) {
      raw +=
          "2026/01/01 01:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>2.JA8089<NAK>200<STX>M00AJL0012"
          "NUMBER" +
          std::to_string(i) + "<CR><VF>MORE<ETX><CRC><DEL>\r\n";
    }
    writeBytes(base_.folders.eachLogs / "JA8089.log", raw);
  }

  void setBrowsers() override {
    windows_ = std::make_unique<HistoryWindows>(program_->context());
    openFromHistory(*windows_, *program_, web_->rawLogs());
    program_->addUnloadStep([this] { windows_->close(); });
    program_->setBrowsers(
        [this](BrowserFrame& owner) {
          auto browser = std::make_unique<AcarsBrowser>(owner, *web_);
          offerHistory(*browser, ReportKind::list, *windows_);
          return browser;
        },
        [this](BrowserFrame& owner) {
          auto browser = std::make_unique<HfdlBrowser>(owner, *web_);
          offerHistory(*browser, ReportKind::hfdl, *windows_);
          return browser;
        });
  }

  HistoryWindow& finder() { return windows_->find(); }
  FoundList& found() { return control<FoundList>(finder(), "FoundList"); }

  /// Selects a line of what was found with the keys and opens it.
  void openFound(int row) {
    found().setFocus();
    QTest::keyClick(&found(), Qt::Key_Home, Qt::ControlModifier);
    for (int i = 0; i < row; ++i) QTest::keyClick(&found(), Qt::Key_Down);
    QTest::keyClick(&found(), Qt::Key_Return);
    finishJobs();
    settle();
    finishJobs();
  }

  void TearDown() override { windows_.reset(); }

  std::unique_ptr<HistoryWindows> windows_;
};

TEST_F(HistoryWiringTest, TheMenuSearchesAllDaysAndEnterOpensTheLineInItsBrowser) {
  start();
  // A filter and a sort are in force in the browser.
  typeKeys(box("Text4(0)"), "JL");
  clickTitle(kListTime);
  chooseFromMenu(0, kListFlight, "All days of this aircraft");
  finishJobs();
  ASSERT_EQ(found().model()->rowCount(), 203);
  openFound(0);
  EXPECT_EQ(browser().shownLog(), "20260101_list.csv");
  EXPECT_EQ(text("Text4(0)"), "");
  EXPECT_EQ(browser().model()->rowCount(), 2);
  EXPECT_EQ(list().selectedText(kListRemarks), "first day");
  EXPECT_TRUE(find<QGroupBox>("Frame1").isVisible());
  EXPECT_EQ(find<QGroupBox>("Frame1").title().toStdString(), "JA8089");

  openFound(1);
  auto* hfdl = qobject_cast<LogBrowser*>(program_->otherWindow());
  ASSERT_NE(hfdl, nullptr);
  EXPECT_TRUE(hfdl->isVisible());
  EXPECT_FALSE(browser().isVisible());
  EXPECT_EQ(hfdl->list()->selectedText(kHfdlAddress), "3482D8");
  EXPECT_EQ(hfdl->list()->listIndex(), 1);
}

TEST_F(HistoryWiringTest, ARawMessageOpensTheViewerAtThatMessage) {
  start();
  QTest::keyClick(&browser(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(finder().isVisible());
  auto& typed = control<QLineEdit>(finder(), "SearchText");
  choose(control<QComboBox>(finder(), "Meaning"), static_cast<int>(SearchMeaning::anyText));
  typeKeys(typed, "NUMBER150");
  QTest::keyClick(&typed, Qt::Key_Return);
  finishJobs();
  ASSERT_EQ(found().model()->rowCount(), 1);
  openFound(0);
  RawLogViewer* viewer = web_->rawLogs().viewer();
  ASSERT_NE(viewer, nullptr);
  EXPECT_TRUE(viewer->isVisible());
  auto& shown = control<QPlainTextEdit>(*viewer, "Text1");
  QTextCursor cursor = shown.textCursor();
  EXPECT_EQ(cursor.block().text().toStdString(),
            "---------------------------[2026/01/01 01:00:11 131.450MHz <PRE]");
  EXPECT_EQ(cursor.block().next().next().text().toStdString(), "NUMBER150");
  EXPECT_TRUE(shown.viewport()->rect().contains(shown.cursorRect().center()));
}

TEST_F(HistoryWiringTest, TheReportOfTheShownDaySelectsALineThatLacksARecord) {
  start();
  QTest::keyClick(&browser(), Qt::Key_R, Qt::ControlModifier);
  finishJobs();
  ReportWindow& report = windows_->report();
  EXPECT_TRUE(report.isVisible());
  EXPECT_EQ(control<QLabel>(report, "Title").text().toStdString(), kLog);
  // The browser hides the line behind a filter.
  typeKeys(box("Text4(0)"), "JL");
  ASSERT_EQ(browser().model()->rowCount(), 1);
  QTest::keyClick(&report, Qt::Key_M, Qt::AltModifier);
  auto& missing = control<QTableView>(report, "GapList");
  ASSERT_EQ(missing.model()->rowCount(), 1);
  missing.setFocus();
  QTest::keyClick(&missing, Qt::Key_Down);
  QTest::keyClick(&missing, Qt::Key_Return);
  finishJobs();
  settle();
  finishJobs();
  EXPECT_EQ(list().selectedText(kListRegistration), "N123");
  EXPECT_EQ(find<QGroupBox>("Frame1").title().toStdString(), "N123");
  EXPECT_TRUE(find<QGroupBox>("Frame1").isVisible());
}

/// The day's work list: what is missing is written where the keys are at once.
class WorkListTest : public HistoryWiringTest {
 protected:
  /// Chooses a kind of what is missing and double-clicks its first line; gives
  /// the object name of the control that has the keys in the browser.
  std::string openFirst(GapKind kind, const std::string& name) {
    ReportWindow& report = windows_->report();
    report.activateWindow();
    control<QTabWidget>(report, "Pages").setCurrentIndex(1);
    choose(control<QComboBox>(report, "GapChooser"), static_cast<int>(kind));
    auto& missing = control<QTableView>(report, "GapList");
    for (int row = 0; row < missing.model()->rowCount(); ++row) {
      const QModelIndex cell = missing.model()->index(row, 0);
      if (cell.data().toString().toStdString() != name) continue;
      const QPoint place = missing.visualRect(cell).center();
      QTest::mouseClick(missing.viewport(), Qt::LeftButton, {}, place);
      QTest::mouseDClick(missing.viewport(), Qt::LeftButton, {}, place);
      finishJobs();
      settle();
      finishJobs();
      const QWidget* focused = browser().focusWidget();
      return focused == nullptr ? "none" : focused->objectName().toStdString();
    }
    ADD_FAILURE() << name << " is not in the list";
    return {};
  }

  [[nodiscard]] int missing(GapKind kind) {
    auto& chooser = control<QComboBox>(windows_->report(), "GapChooser");
    const QString text = chooser.itemText(static_cast<int>(kind));
    return text.section(QLatin1Char('('), 1).section(QLatin1Char(')'), 0, 0).toInt();
  }

  void openReport() {
    QTest::keyClick(&browser(), Qt::Key_R, Qt::ControlModifier);
    finishJobs();
  }
};

TEST_F(WorkListTest, TheEditorOfTheBrowserIsReadyAndTheListShrinks) {
  base_.writeLog(
      kLog, {kHeaderLine, "ZZ0001,X,N777,QQQQ,RJTT,,,1:00:00", "YY0002,X,N778,RJTT,XXX,,,2:00:00"});
  start();
  openReport();
  EXPECT_EQ(missing(GapKind::aircraft), 2);
  EXPECT_EQ(openFirst(GapKind::aircraft, "N778"), "Text1");
  EXPECT_EQ(list().selectedText(kListRegistration), "N778");
  QTest::keyClicks(browser().focusWidget(), QStringLiteral("B77W"));
  QTest::keyClick(browser().focusWidget(), Qt::Key_Return);
  finishJobs();
  EXPECT_THAT(base_.data("aircraft.csv"), ::testing::HasSubstr("N778,B77W\r\n"));
  EXPECT_TRUE(QTest::qWaitFor([this] { return missing(GapKind::aircraft) == 1; }));

  EXPECT_EQ(missing(GapKind::flight), 2);
  EXPECT_EQ(openFirst(GapKind::flight, "ZZ0001"), "Text2(0)");
  QTest::keyClicks(browser().focusWidget(), QStringLiteral("RJTT"));
  QTest::keyClick(browser().focusWidget(), Qt::Key_Tab);
  QTest::keyClicks(browser().focusWidget(), QStringLiteral("RJAA"));
  QTest::keyClick(browser().focusWidget(), Qt::Key_Return);
  finishJobs();
  EXPECT_THAT(base_.data("FLIGHT.csv"), ::testing::HasSubstr("ZZ0001,RJTTRJAA,-\r\n"));
  EXPECT_TRUE(QTest::qWaitFor([this] { return missing(GapKind::flight) == 1; }));

  EXPECT_EQ(missing(GapKind::prefix), 2);
  EXPECT_EQ(openFirst(GapKind::prefix, "YY"), "Text2(3)");
  EXPECT_EQ(list().selectedText(kListFlight), "YY0002");
  QTest::keyClicks(browser().focusWidget(), QStringLiteral("YYY"));
  QTest::keyClick(browser().focusWidget(), Qt::Key_Return);
  finishJobs();
  EXPECT_TRUE(QTest::qWaitFor([this] { return missing(GapKind::prefix) == 1; }));

  EXPECT_EQ(missing(GapKind::airport), 2);
  EXPECT_EQ(openFirst(GapKind::airport, "XXX"), "Text2(5)");
  EXPECT_EQ(openFirst(GapKind::airport, "QQQQ"), "Text2(6)");
  EXPECT_EQ(text("Text2(5)"), "QQQQ");
  QTest::keyClicks(browser().focusWidget(), QStringLiteral("Somewhere QQQ"));
  QTest::keyClick(browser().focusWidget(), Qt::Key_Return);
  finishJobs();
  EXPECT_THAT(base_.data("airport.csv"), ::testing::HasSubstr("QQQQ,Somewhere QQQ\r\n"));
  EXPECT_TRUE(QTest::qWaitFor([this] { return missing(GapKind::airport) == 1; }));

  EXPECT_EQ(openFirst(GapKind::photo, "N777"), "Command7(0)");
}

TEST_F(WorkListTest, AShortFlightOfHfdlIsEditedAtItsOwnAircraft) {
  base_.writeData("ICAO24.csv", {"000001,BAW,BA,G-A,B744", "3482D8,JAL,JL,JA8089,B789"});
  const auto lines = [](const char* address, const char* flight) {
    return std::string("[2]------------------------[2026/01/02 00:04:19]\r\n") +
           "   ICAO24 ADDRESS = " + address + "\r\n   FLIGHT ID      = " + flight + "\r\n";
  };
  base_.writeData("FLIGHT.csv", {"BA0123,EGLLRJTT,-"});
  writeBytes(base_.folders.logs / "202601020000_HFDL_FMT.log",
             lines("000001", "123") + lines("3482D8", "123") + lines("00000F", "JL0555"));
  start();
  click("Command11");
  driveBrowser(program_->otherWindow());
  openReport();
  EXPECT_EQ(openFirst(GapKind::flight, "JL0123"), "Text2(0)");
  EXPECT_EQ(list().selectedText(kHfdlAddress), "3482D8");
  EXPECT_EQ(find<QGroupBox>("Frame2").title().toStdString(), "JL0123");
  EXPECT_EQ(openFirst(GapKind::aircraft, "00000F"), "Text1(1)");
  EXPECT_EQ(list().selectedText(kHfdlAddress), "00000F");
  // Its menu searches for the whole flight, which the list shows by its number.
  select(1);
  chooseFromMenu(1, kHfdlFlight, "All days of this flight");
  finishJobs();
  EXPECT_EQ(control<QLineEdit>(finder(), "SearchText").text().toStdString(), "JL0123");
  ASSERT_EQ(found().model()->rowCount(), 1);
  EXPECT_EQ(found().model()->index(0, kFoundFlight).data().toString().toStdString(), "123");
  openFound(0);
  EXPECT_EQ(list().selectedText(kHfdlAddress), "3482D8");
}

TEST_F(HistoryWiringTest, BothBrowsersOfferBothWindowsByButton) {
  start();
  click("FindInAllLogs");
  EXPECT_TRUE(finder().isVisible());
  click("DayReport");
  EXPECT_TRUE(windows_->report().isVisible());
  click("Command11");
  auto* hfdl = qobject_cast<LogBrowser*>(program_->otherWindow());
  driveBrowser(hfdl);
  click("DayReport");
  EXPECT_EQ(control<QLabel>(windows_->report(), "Title").text().toStdString(),
            "202601010000_HFDL_FMT.log");
  browser().close();
  EXPECT_FALSE(finder().isVisible());
  EXPECT_FALSE(windows_->report().isVisible());
}

}  // namespace
}  // namespace vel::test
