#include "history/ui/history_window.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QToolTip>
#include <chrono>
#include <filesystem>
#include <memory>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/text.h"
#include "tests/ui/support/hide_watch.h"
#include "tests/ui/support/test_station.h"

namespace vel::test {
namespace {

using std::chrono::local_days;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

constexpr const char* kHeader = "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time";

class HistoryWindowTest : public testing::Test {
 protected:
  HistoryWindowTest() {
    const TemporaryBase& base = station_.base;
    base.writeLog("20261118_list.csv", {kHeader, "JL0012,X,JA8089,RJTT,KSFO,B789,羽田,9:05:00",
                                        "JL0013,X,JA8089,KSFO,RJTT,B789,a&b <b>,9:30:00"});
    base.writeLog("20261120_list.csv", {kHeader, "JL0012,X,JA8090,RJTT,KSFO,B789,-,10:00:00",
                                        "JL0012,X,JA-8089,RJTT,KSFO,B788,-,23:05:00"});
    base.writeLog("202611200000_HFDL_FMT.log",
                  {"[2]------------------------[2026/11/20 00:04:19]", " DOWN LINK",
                   "  GS NAME         = Molokai, Hawaii", "   ICAO24 ADDRESS = 3482D8",
                   "   REGISTRATION   = JA8089", "   FLIGHT ID      = JL0012"});
    writeBytes(base.folders.eachLogs / "JA8089.log",
               "2026/11/20 01:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>2.JA8089<NAK>200<STX>"
               "M00AJL0012POSN23457<ETX><CRC><DEL>\r\n");
    station_.desktop.time = local_days{2026y / 11 / 20} + 12h;
    station_.use();
    window_.openMessage = [this](HistorySource source, const std::string& log, std::size_t row) {
      opened_.emplace_back(nameOf(source), log, row);
    };
    window_.open();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
  }

  template <typename T>
  T& find(const char* name) {
    return control<T>(window_, name);
  }
  QLineEdit& text() { return find<QLineEdit>("SearchText"); }
  FoundList& list() { return find<FoundList>("FoundList"); }
  std::string state() { return find<QLabel>("State").text().toStdString(); }

  void search(const std::string& typed) {
    typeOver(text(), typed);
    QTest::keyClick(&text(), Qt::Key_Return);
    finishJobs();
  }

  std::vector<std::string> column(int column) {
    std::vector<std::string> cells;
    const QAbstractItemModel& model = *list().model();
    for (int row = 0; row < model.rowCount(); ++row) {
      cells.push_back(model.index(row, column).data().toString().toStdString());
    }
    return cells;
  }

  QPoint placeOf(int row, int column) {
    return list().visualRect(list().model()->index(row, column)).center();
  }
  void clickCell(int row, int column) {
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, placeOf(row, column));
  }
  void clickTitle(int column) {
    QHeaderView& header = *list().horizontalHeader();
    const QPoint place(header.sectionViewportPosition(column) + 5, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
    finishJobs();
  }
  void chooseFromMenu(int row, int column, const QString& entry) {
    clickCell(row, column);
    inDialog(
        "FoundMenu",
        [&] {
          QContextMenuEvent event(QContextMenuEvent::Mouse, placeOf(row, column),
                                  list().viewport()->mapToGlobal(placeOf(row, column)));
          QApplication::sendEvent(list().viewport(), &event);
        },
        [&](QWidget& menu) {
          for (QAction* action : menu.actions()) {
            if (action->text().section(QLatin1Char('\t'), 0, 0) != entry) continue;
            static_cast<QMenu&>(menu).setActiveAction(action);
            QTest::keyClick(&menu, Qt::Key_Return);
            return;
          }
          ADD_FAILURE() << "no entry " << entry.toStdString();
        });
    finishJobs();
  }
  void clickBar(const char* strip, std::size_t bar) {
    auto& picture = find<StripPicture>(strip);
    const StripBar place = picture.bars().at(bar);
    QTest::mouseClick(&picture, Qt::LeftButton, {},
                      QPoint(static_cast<int>((place.left + place.right) / 2), 30));
    finishJobs();
  }

  TestStation station_;
  HistoryWindow window_{station_.context()};
  std::vector<std::tuple<std::string, std::string, std::size_t>> opened_;
};

TEST_F(HistoryWindowTest, ARegistrationIsFoundOnAllDaysAndToldInWords) {
  search("JA-8089");
  EXPECT_THAT(column(kFoundDate),
              ElementsAre("2026/11/18", "2026/11/18", "2026/11/20", "2026/11/20", "2026/11/20"));
  EXPECT_THAT(column(kFoundSource), ElementsAre("ACARS", "ACARS", "ACARS", "HFDL", "Raw log"));
  EXPECT_THAT(column(kFoundText),
              ElementsAre("羽田", "a&b <b>", "-", "D Molokai, Hawaii 3482D8", "20 POSN23457"));
  EXPECT_EQ(state(), "Found 5 in 4 logs.  4ファイルから5件見つかりました。");
  EXPECT_EQ(find<QToolButton>("FirstHeard").text().toStdString(), "2026/11/18 09:05:00");
  EXPECT_EQ(find<QToolButton>("LastHeard").text().toStdString(), "2026/11/20 23:05:00");
  EXPECT_EQ(find<QLabel>("FoundCounts").text().toStdString(), "Messages 受信数 5   Days 日数 2");
  EXPECT_EQ(find<QToolButton>("Flight(0)").text().toStdString(), "JL0012");
  EXPECT_EQ(find<QToolButton>("Aircraft(1)").text().toStdString(), "JA-8089");
  EXPECT_EQ(find<QToolButton>("Route(0)").text().toStdString(), "RJTT-KSFO");
  EXPECT_FALSE(find<QToolButton>("FlightMore").isVisible());
  EXPECT_FALSE(find<QLabel>("Problems").isVisible());
  EXPECT_FALSE(find<QPushButton>("Cancel").isEnabled());
}

TEST_F(HistoryWindowTest, WhatCannotBeFoundIsSaidBesideTheSearch) {
  search("");
  EXPECT_EQ(state(), "Type what to search for. 検索する文字を入力してください。");
  choose(find<QComboBox>("Meaning"), 4);
  search("é");
  EXPECT_EQ(state(),
            "Nothing found: no log can hold this text. "
            "見つかりません。ログの文字コードにない文字が含まれています。");
  for (const char* logs : {"Lists", "Hfdl", "RawLogs"}) {
    find<QCheckBox>(logs).setFocus();
    QTest::keyClick(&find<QCheckBox>(logs), Qt::Key_Space);
  }
  search("x");
  EXPECT_EQ(state(), "Choose at least one kind of log. ログの種類を選んでください。");
  EXPECT_THAT(station_.desktop.messages, IsEmpty());
}

TEST_F(HistoryWindowTest, DaysCaseAndLogsNarrowTheSearch) {
  choose(find<QComboBox>("Days"), HistoryForm::kSevenDays);
  station_.desktop.time = local_days{2026y / 11 / 26} + 1h;
  search("JA8089");
  EXPECT_THAT(column(kFoundDate), ElementsAre("2026/11/20", "2026/11/20", "2026/11/20"));
  choose(find<QComboBox>("Days"), HistoryForm::kAllDays);
  search("ja8089");
  EXPECT_THAT(column(kFoundDate), IsEmpty());
  QTest::mouseClick(&find<QCheckBox>("IgnoreCase"), Qt::LeftButton, {}, QPoint(8, 8));
  QTest::mouseClick(&find<QCheckBox>("RawLogs"), Qt::LeftButton, {}, QPoint(8, 8));
  search("ja8089");
  EXPECT_THAT(column(kFoundSource), ElementsAre("ACARS", "ACARS", "ACARS", "HFDL"));
}

TEST_F(HistoryWindowTest, FromToTakesTwoDates) {
  EXPECT_FALSE(find<QDateEdit>("FromDay").isEnabled());
  choose(find<QComboBox>("Days"), HistoryForm::kFromTo);
  EXPECT_TRUE(find<QDateEdit>("FromDay").isEnabled());
  for (const char* box : {"FromDay", "ToDay"}) {
    auto& date = find<QDateEdit>(box);
    date.setFocus();
    date.setSelectedSection(QDateTimeEdit::YearSection);
    QTest::keyClicks(&date, QStringLiteral("2026"));
    date.setSelectedSection(QDateTimeEdit::MonthSection);
    QTest::keyClicks(&date, QStringLiteral("11"));
    date.setSelectedSection(QDateTimeEdit::DaySection);
    QTest::keyClicks(&date, QStringLiteral("18"));
  }
  search("JA8089");
  EXPECT_THAT(column(kFoundDate), ElementsAre("2026/11/18", "2026/11/18"));
}

TEST_F(HistoryWindowTest, AColumnTitleSortsAndSortsTheOtherWayAgain) {
  search("JA8089");
  clickTitle(kFoundTime);
  EXPECT_THAT(column(kFoundTime),
              ElementsAre("00:04:19", "01:00:11", "09:05:00", "09:30:00", "23:05:00"));
  clickTitle(kFoundTime);
  EXPECT_THAT(column(kFoundTime),
              ElementsAre("23:05:00", "09:30:00", "09:05:00", "01:00:11", "00:04:19"));
  // It stays in force for the next search.
  search("JA8090");
  search("JA8089");
  EXPECT_THAT(column(kFoundTime),
              ElementsAre("23:05:00", "09:30:00", "09:05:00", "01:00:11", "00:04:19"));
}

TEST_F(HistoryWindowTest, TheMenuFiltersByAValueAndShowsAllAgain) {
  search("JA8089");
  chooseFromMenu(0, kFoundText, QStringLiteral("Only \"羽田\""));
  EXPECT_THAT(column(kFoundTime), ElementsAre("09:05:00"));
  EXPECT_EQ(find<QLabel>("FilterText").text().toStdString(), "Only 絞込み: Text = \"羽田\"");
  press(find<QPushButton>("ShowAll"));
  EXPECT_EQ(column(kFoundTime).size(), 5U);
  // An ampersand is no shortcut.
  chooseFromMenu(1, kFoundText, QStringLiteral("Only \"a&&b <b>\""));
  EXPECT_THAT(column(kFoundTime), ElementsAre("09:30:00"));
  chooseFromMenu(0, kFoundText, QStringLiteral("Show all"));
  EXPECT_EQ(column(kFoundTime).size(), 5U);
}

TEST_F(HistoryWindowTest, TheMenuSearchesTheAircraftOrTheFlight) {
  search("JA8090");
  chooseFromMenu(0, kFoundFlight, QStringLiteral("All days of this flight"));
  EXPECT_EQ(text().text(), QStringLiteral("JL0012"));
  EXPECT_THAT(column(kFoundRegistration),
              ElementsAre("JA8089", "JA8090", "JA-8089", "JA8089", "JA8089"));
  chooseFromMenu(1, kFoundFlight, QStringLiteral("All days of this aircraft"));
  EXPECT_THAT(column(kFoundRegistration), ElementsAre("JA8090"));
}

TEST_F(HistoryWindowTest, AClickedBarShowsItsDayOrHourOnly) {
  search("JA8089");
  ASSERT_EQ(find<StripPicture>("DayStrip").bars().size(), 3U);
  clickBar("DayStrip", 0);
  EXPECT_THAT(column(kFoundTime), ElementsAre("09:05:00", "09:30:00"));
  EXPECT_EQ(find<QLabel>("FilterText").text().toStdString(), "Only 絞込み: 2026/11/18");
  clickBar("DayStrip", 1);  // a day without messages
  EXPECT_THAT(column(kFoundTime), ElementsAre("09:05:00", "09:30:00"));
  clickBar("DayStrip", 0);
  EXPECT_EQ(column(kFoundTime).size(), 5U);
  clickBar("HourStrip", 23);
  EXPECT_THAT(column(kFoundTime), ElementsAre("23:05:00"));
  press(find<QPushButton>("ShowAll"));
  press(find<QPushButton>("ShowAll"));
  QTest::mouseClick(&find<QToolButton>("FirstHeard"), Qt::LeftButton);
  finishJobs();
  EXPECT_THAT(column(kFoundTime), ElementsAre("09:05:00", "09:30:00"));
}

TEST_F(HistoryWindowTest, TheArrowKeysAndEnterChooseABar) {
  search("JA8089");
  auto& strip = find<StripPicture>("DayStrip");
  strip.setFocus();
  QTest::keyClick(&strip, Qt::Key_Right);
  EXPECT_EQ(strip.accessibleDescription().toStdString(), "2026/11/18: 2");
  QTest::keyClick(&strip, Qt::Key_Right);
  EXPECT_EQ(strip.accessibleDescription().toStdString(), "2026/11/20: 3");
  QTest::keyClick(&strip, Qt::Key_Return);
  finishJobs();
  EXPECT_THAT(column(kFoundTime), ElementsAre("23:05:00", "00:04:19", "01:00:11"));
}

TEST_F(HistoryWindowTest, ABarsToolTipTellsDateAndCountAndThePictureIsCopied) {
  search("JA8089");
  auto& strip = find<StripPicture>("DayStrip");
  const StripBar bar = strip.bars().front();
  const QPoint place(static_cast<int>(bar.left) + 2, 30);
  QHelpEvent help(QEvent::ToolTip, place, strip.mapToGlobal(place));
  QApplication::sendEvent(&strip, &help);
  EXPECT_EQ(QToolTip::text().toStdString(), "2026/11/18: 2");
  QToolTip::hideText();
  strip.setFocus();
  QTest::keyClick(&strip, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->image().size(), strip.size());
  const QString file =
      QString::fromStdString((station_.base.folders.program / "days.png").string());
  strip.chooseFile = [&](const QString& suggested) {
    EXPECT_EQ(suggested, QStringLiteral("days.png"));
    return file;
  };
  QTest::keyClick(&strip, Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(QImage(file).size(), strip.size());
}

TEST_F(HistoryWindowTest, DoubleClickAndEnterOpenTheMessageWhereItStands) {
  search("JA8089");
  clickCell(2, kFoundTime);
  QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, placeOf(2, kFoundTime));
  finishJobs();
  for (const int row : {3, 4}) {
    clickCell(row, kFoundTime);
    QTest::keyClick(&list(), Qt::Key_Return);
    finishJobs();
  }
  EXPECT_THAT(opened_, ElementsAre(std::tuple("ACARS", "20261120_list.csv", 1U),
                                   std::tuple("HFDL", "202611200000_HFDL_FMT.log", 0U),
                                   std::tuple("Raw log", "JA8089.log", 0U)));
  std::filesystem::remove(station_.base.folders.logs / "20261118_list.csv");
  clickCell(0, kFoundTime);
  QTest::keyClick(&list(), Qt::Key_Return);
  finishJobs();
  EXPECT_EQ(opened_.size(), 3U);
  EXPECT_EQ(state(),
            "20261118_list.csv no longer has this message. このメッセージはもうありません。");
}

TEST_F(HistoryWindowTest, CtrlCCopiesTheLine) {
  search("JA8090");
  clickCell(0, kFoundTime);
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(station_.desktop.clipboard,
            "2026/11/20\t10:00:00\tACARS\tJL0012\tJA8090\tRJTT\tKSFO\tB789\t-");
  chooseFromMenu(0, kFoundEquipment, QStringLiteral("Copy cell"));
  EXPECT_EQ(station_.desktop.clipboard, "B789");
}

TEST_F(HistoryWindowTest, SeveralLinesAreCopiedFromTopToBottom) {
  search("JA8089");
  clickCell(3, kFoundTime);
  QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::ControlModifier,
                    list().visualRect(list().model()->index(0, kFoundTime)).center());
  QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::ControlModifier,
                    list().visualRect(list().model()->index(1, kFoundTime)).center());
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  finishJobs();
  std::vector<std::string> cells = column(kFoundTime);
  std::string copied;
  for (const std::string_view line : split(station_.desktop.clipboard, '\n')) {
    copied += std::string(split(line, '\t')[kFoundTime]) + "|";
  }
  EXPECT_EQ(copied, cells[0] + "|" + cells[1] + "|" + cells[3] + "|");
}

TEST_F(HistoryWindowTest, AValueInTheWordsIsSearchedWhenClicked) {
  search("JA8089");
  QTest::mouseClick(&find<QToolButton>("Route(0)"), Qt::LeftButton);
  finishJobs();
  EXPECT_EQ(text().text(), QStringLiteral("RJTT,KSFO"));
  EXPECT_EQ(find<QComboBox>("Meaning").currentIndex(), 4);
  EXPECT_THAT(column(kFoundRegistration), ElementsAre("JA8089", "JA8090", "JA-8089"));
  QTest::mouseClick(&find<QToolButton>("Flight(0)"), Qt::LeftButton);
  finishJobs();
  EXPECT_EQ(find<QComboBox>("Meaning").currentIndex(), 1);
  EXPECT_EQ(column(kFoundFlight).size(), 5U);
}

TEST_F(HistoryWindowTest, TheLastSearchWinsAndCancelKeepsWhatWasFound) {
  typeOver(text(), "JA8089");
  QTest::keyClick(&text(), Qt::Key_Return);
  typeOver(text(), "");  // lets jobs run to their end; the next two do not wait
  text().setText(QStringLiteral("JA8090"));
  QTest::keyClick(&text(), Qt::Key_Return);
  text().setText(QStringLiteral("JA8089"));
  QTest::keyClick(&text(), Qt::Key_Return);
  EXPECT_TRUE(find<QPushButton>("Cancel").isEnabled());
  finishJobs();
  EXPECT_EQ(column(kFoundTime).size(), 5U);
  QTest::keyClick(&text(), Qt::Key_Return);
  QTest::keyClick(&text(), Qt::Key_Escape);
  EXPECT_TRUE(station_.context().jobs.isIdle());
  EXPECT_EQ(state(), "Cancelled; found so far 中止しました: 0");
  EXPECT_TRUE(window_.isVisible());
  QTest::keyClick(&text(), Qt::Key_Escape);
  EXPECT_FALSE(window_.isVisible());
}

TEST_F(HistoryWindowTest, AtTheProgramsEndItsListGoesBeforeTheMessages) {
  auto window = std::make_unique<HistoryWindow>(station_.context());
  window->openWith(SearchMeaning::registration, "JA8089");
  finishJobs();
  auto& messages = control<FoundList>(*window, "FoundList");
  ASSERT_EQ(messages.model()->rowCount(), 5);
  const HideWatch<HistoryWindow> watch(messages);
  window.reset();
  EXPECT_TRUE(watch.isHidden());
  EXPECT_TRUE(watch.wasWhole());
}

TEST_F(HistoryWindowTest, ALogThatCannotBeReadIsToldOnceBelowTheList) {
  text().setText(QStringLiteral("JA8089"));
  QTest::keyClick(&text(), Qt::Key_Return);
  EXPECT_TRUE(station_.context().jobs.turn());  // lists the folders
  std::filesystem::remove(station_.base.folders.logs / "20261118_list.csv");
  finishJobs();
  EXPECT_EQ(column(kFoundTime).size(), 3U);
  EXPECT_TRUE(find<QLabel>("Problems").isVisible());
  EXPECT_EQ(find<QLabel>("Problems").text().toStdString(),
            "1 logs could not be read completely.  完全に読み込めないログが 1件 ありました。\n\n"
            "20261118_list.csv: gone 削除されました");
  EXPECT_THAT(station_.desktop.messages, IsEmpty());
  search("JA8089");
  EXPECT_FALSE(find<QLabel>("Problems").isVisible());
}

TEST_F(HistoryWindowTest, SearchingSortingAndCopyingLeaveTheWindowItsTurns) {
  constexpr int kTurns = 5;
  std::string lines;
  for (int i = 0; i < 300'000; ++i) {
    lines += "JL" + std::to_string(i % 5000) + ",X,JA" + std::to_string(i % 977) +
             ",RJTT,KSFO,B789,-," + std::to_string(i % 24) + ":05:00\r\n";
  }
  writeBytes(station_.base.folders.logs / "20261117_list.csv", lines);
  choose(find<QComboBox>("Meaning"), 4);
  // However fast the machine: no step takes longer than it must.
  drivenJobs->longestSlice = std::chrono::milliseconds(0);
  const auto turnsOf = [&](const auto& action) {
    action();
    int turns = 0;
    for (; !station_.context().jobs.isIdle(); ++turns) QCoreApplication::processEvents();
    return turns;
  };
  text().setText(QStringLiteral(","));
  EXPECT_GT(turnsOf([&] { QTest::keyClick(&text(), Qt::Key_Return); }), kTurns);
  ASSERT_GT(list().model()->rowCount(), 300'000);
  const auto title = [&](int column) {
    QHeaderView& header = *list().horizontalHeader();
    const QPoint place(header.sectionViewportPosition(column) + 5, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
  };
  EXPECT_GT(turnsOf([&] { title(kFoundFlight); }), kTurns);
  EXPECT_GT(turnsOf([&] { title(kFoundDate); }), kTurns);
  // More than is copied at once.
  QTest::keyClick(&list(), Qt::Key_Home, Qt::ControlModifier);
  QTest::keyClick(&list(), Qt::Key_A, Qt::ControlModifier);
  EXPECT_GT(turnsOf([&] { QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier); }), kTurns);
  const std::string& copied = station_.desktop.clipboard;
  EXPECT_EQ(std::count(copied.begin(), copied.end(), '\n'), 199'999);
  EXPECT_EQ(state(), "Copied the first 200000 lines. 先頭の200000行をコピーしました。");
  EXPECT_EQ(column(kFoundDate).front(), "2026/11/17");
}

}  // namespace
}  // namespace vel::test
