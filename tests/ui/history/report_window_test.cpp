#include "history/ui/report_window.h"

#include <filesystem>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/ui/line_list.h"
#include "tests/ui/support/test_station.h"

namespace vel::test {
namespace {

using std::chrono::local_days;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class ReportWindowTest : public testing::Test {
 protected:
  ReportWindowTest() {
    const TemporaryBase& base = station_.base;
    base.writeData("aircraft.csv", {"JA8089,B789"});
    base.writeData("FLIGHT.csv", {"JL0012,RJTTKSFO,-"});
    base.writeData("letter.csv", {"JL,JAL,Japan Airlines"});
    base.writeData("airport.csv", {"RJTT,Tokyo HND", "KSFO,San Francisco SFO"});
    base.writeData("ICAO24.csv", {"3482D8,JAL,JL,JA8089,B789"});
    base.writeLog(
        "20261120_list.csv",
        {"JL0012,O,JA8089,RJTT,KSFO,B789,-,9:05:00", "JL0013,X,JA0001,RJTT,ROAH,B789,-,9:06:00",
         "JL0013,X,JA0001,RJTT,ROAH,B789,-,10:06:00", "ZZ1,X,JA0002,RJTT,KSFO,B788,-,10:06:00"});
    base.writeLog("20261118_list.csv", {"JL0013,O,JA8089,RJTT,KSFO,B789,-,0:05:00"});
    base.writeLog("202611200000_HFDL_FMT.log",
                  {"[2]------------------------[2026/11/20 00:04:19]", "   ICAO24 ADDRESS = 000001",
                   "   REGISTRATION   = VH-OQA", "   FLIGHT ID      = 7"});
    station_.use();
    window_.selectLine = [this](ReportKind kind, const std::string&, GapKind gap,
                                const std::string& heardAs, const std::string& address) {
      address_ = address;
      selected_.emplace_back(kind == ReportKind::list ? "ACARS" : "HFDL", gap, heardAs);
    };
  }

  void open(ReportKind kind, const char* log) {
    window_.open(kind, log);
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
    finishJobs();
  }

  template <typename T>
  T& find(const char* name) {
    return control<T>(window_, name);
  }

  static std::vector<std::string> lines(const QTableView& view) {
    std::vector<std::string> all;
    const QAbstractItemModel& model = *view.model();
    for (int row = 0; row < model.rowCount(); ++row) {
      all.push_back((model.index(row, 0).data().toString() + QLatin1Char(' ') +
                     model.index(row, 1).data().toString())
                        .toStdString());
    }
    return all;
  }
  std::vector<std::string> missing(GapKind kind) {
    choose(find<QComboBox>("GapChooser"), static_cast<int>(kind));
    return lines(find<QTableView>("GapList"));
  }
  void showPage(Qt::Key letter) { QTest::keyClick(&window_, letter, Qt::AltModifier); }

  TestStation station_;
  ReportWindow window_{station_.context()};
  std::vector<std::tuple<std::string, GapKind, std::string>> selected_;
  std::string address_;
};

TEST_F(ReportWindowTest, TheDayStandsBesideTheSevenDaysBefore) {
  open(ReportKind::list, "20261120_list.csv");
  auto& counts = find<QTableWidget>("Counts");
  EXPECT_EQ(counts.columnCount(), 9);
  const auto cell = [&](int row, int column) {
    return counts.item(row, column)->text().toStdString();
  };
  EXPECT_EQ(counts.horizontalHeaderItem(1)->text().toStdString(), "2026/11/20");
  EXPECT_EQ(counts.horizontalHeaderItem(8)->text().toStdString(), "2026/11/13");
  EXPECT_EQ(cell(0, 0), "Messages / 受信数");
  EXPECT_EQ(cell(0, 1), "4");
  EXPECT_EQ(cell(0, 2), "");
  EXPECT_EQ(cell(0, 3), "1");
  EXPECT_EQ(cell(1, 1), "3");
  EXPECT_EQ(cell(5, 1), "09 (2)");
  EXPECT_EQ(find<QLabel>("Title").text().toStdString(), "20261120_list.csv");
  EXPECT_EQ(find<StripPicture>("HourStrip").bars()[10].count, 2U);
}

TEST_F(ReportWindowTest, WhatIsMissingShrinksAsRecordsAreWritten) {
  open(ReportKind::list, "20261120_list.csv");
  showPage(Qt::Key_M);
  EXPECT_THAT(missing(GapKind::flight), ElementsAre("JL0013 2", "ZZ1 1"));
  EXPECT_THAT(missing(GapKind::prefix), ElementsAre("ZZ 1"));
  EXPECT_THAT(missing(GapKind::airport), ElementsAre("ROAH 2"));
  EXPECT_THAT(missing(GapKind::photo), ElementsAre("JA0001 2", "JA0002 1", "JA8089 1"));
  EXPECT_THAT(missing(GapKind::aircraft), ElementsAre("JA0001 2", "JA0002 1"));
  EXPECT_EQ(find<QComboBox>("GapChooser").currentText().toStdString(),
            "Aircraft without a record 未登録の機体 (2)");
  // As the rewrite does it: a new file takes the table's name.
  const auto& data = station_.base.folders.data;
  station_.base.writeData("aircraft.new", {"JA8089,B789", "JA0001,B789"});
  std::filesystem::rename(data / "aircraft.new", data / "aircraft.csv");
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return lines(find<QTableView>("GapList")) == std::vector<std::string>{"JA0002 1"}; }));
}

TEST_F(ReportWindowTest, AListThatHasLinesIsShownAndAnEmptyOneSaysSo) {
  station_.base.writeData("aircraft.csv", {"JA8089,B789", "JA0001,B789", "JA0002,B788"});
  auto& list = find<LineList>("GapList");
  EXPECT_TRUE(list.emptyHint().isEmpty());
  open(ReportKind::list, "20261120_list.csv");
  showPage(Qt::Key_M);
  auto& chooser = find<QComboBox>("GapChooser");
  EXPECT_EQ(chooser.currentIndex(), static_cast<int>(GapKind::flight));
  EXPECT_THAT(lines(list), ElementsAre("JL0013 2", "ZZ1 1"));
  EXPECT_THAT(missing(GapKind::aircraft), IsEmpty());
  EXPECT_EQ(list.emptyHint().toStdString(), "None. ありません。");
  EXPECT_EQ(list.accessibleDescription(), list.emptyHint());
  // What the user chose stays, while the lists follow the tables.
  station_.base.writeData("letter.new", {"ZZ,ZZZ,Somebody", "JL,JAL,Japan Airlines"});
  const auto& data = station_.base.folders.data;
  std::filesystem::rename(data / "letter.new", data / "letter.csv");
  const int prefixes = static_cast<int>(GapKind::prefix);
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return chooser.itemText(prefixes).endsWith(QStringLiteral("(0)")); }));
  EXPECT_EQ(chooser.currentIndex(), static_cast<int>(GapKind::aircraft));
}

TEST_F(ReportWindowTest, DoubleClickAndEnterSelectALineInTheBrowser) {
  open(ReportKind::list, "20261120_list.csv");
  showPage(Qt::Key_M);
  auto& list = find<QTableView>("GapList");
  const QPoint place = list.visualRect(list.model()->index(1, 0)).center();
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
  choose(find<QComboBox>("GapChooser"), static_cast<int>(GapKind::airport));
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Down);
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_THAT(selected_, ElementsAre(std::tuple("ACARS", GapKind::aircraft, "JA0002"),
                                     std::tuple("ACARS", GapKind::airport, "ROAH")));
  open(ReportKind::hfdl, "202611200000_HFDL_FMT.log");
  choose(find<QComboBox>("GapChooser"), static_cast<int>(GapKind::flight));
  EXPECT_THAT(lines(list), ElementsAre("0007 1"));
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Down);
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(selected_.back(), std::tuple("HFDL", GapKind::flight, "7"));
  EXPECT_EQ(address_, "000001");
  QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(station_.desktop.clipboard, "0007\t1");
}

TEST_F(ReportWindowTest, NamesThatNoEarlierLogHoldsAreListed) {
  open(ReportKind::list, "20261120_list.csv");
  showPage(Qt::Key_F);
  auto& list = find<QTableView>("FirstList");
  EXPECT_THAT(lines(list), ElementsAre("JA0001 2", "JA0002 1"));
  choose(find<QComboBox>("FirstChooser"), 1);
  EXPECT_THAT(lines(list), ElementsAre("JL0012 1", "ZZ1 1"));
}

TEST_F(ReportWindowTest, TheReportIsSavedAsAPageAndAsATable) {
  open(ReportKind::list, "20261120_list.csv");
  QStringList suggested;
  window_.chooseFile = [&](const QString& name) {
    suggested << name;
    return QString::fromStdString((station_.base.path() / "saved").string());
  };
  press(find<QPushButton>("SaveHtml"));
  press(find<QPushButton>("SaveCsv"));
  EXPECT_EQ(suggested, (QStringList{QStringLiteral("20261120_list_report.html"),
                                    QStringLiteral("20261120_list_report.csv")}));
  EXPECT_THAT(readBytes(station_.base.path() / "saved.html"),
              HasSubstr("<td>JA0001</td><td>2</td>"));
  EXPECT_THAT(readBytes(station_.base.path() / "saved.csv"), HasSubstr("JA0001,2\r\n"));
  window_.chooseFile = [&](const QString&) {
    return QString::fromStdString((station_.base.path() / "no folder" / "x").string());
  };
  press(find<QPushButton>("SaveCsv"));
  EXPECT_THAT(station_.desktop.messages,
              ElementsAre("The report could not be saved. レポートを保存できませんでした。"));
}

TEST_F(ReportWindowTest, ALogWithoutADateAndAMissingTableAreSaid) {
  open(ReportKind::list, "20xx_list.csv");
  EXPECT_EQ(find<QLabel>("State").text().toStdString(),
            "This log has no date. 日付のないログです。");
  EXPECT_FALSE(find<QPushButton>("SaveHtml").isEnabled());
  std::filesystem::remove(station_.base.folders.data / "FLIGHT.csv");
  open(ReportKind::list, "20261120_list.csv");
  EXPECT_EQ(find<QLabel>("State").text().toStdString(), "Not found data\\flight.csv");
  EXPECT_FALSE(station_.desktop.ended);
  QTest::keyClick(&window_, Qt::Key_Escape);
  EXPECT_FALSE(window_.isVisible());
}

}  // namespace
}  // namespace vel::test
