#include <QHeaderView>
#include <QMenu>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class AcarsList : public test::AcarsWindowTest {
 protected:
  void SetUp() override { start(); }
};

TEST_F(AcarsList, AClickOnATitleSortsAndASecondOneReverses) {
  clickTitle(kListFlight);
  EXPECT_THAT(flights(), ElementsAre("BA0007", "JL0012", "NH0105", "ZZ0009"));
  clickTitle(kListFlight);
  EXPECT_THAT(flights(), ElementsAre("ZZ0009", "NH0105", "JL0012", "BA0007"));
  clickTitle(kListFlight);
  EXPECT_THAT(flights(), ElementsAre("BA0007", "JL0012", "NH0105", "ZZ0009"));
}

TEST_F(AcarsList, AClickOnAnotherTitleSortsByThatColumnAscending) {
  clickTitle(kListFlight);
  clickTitle(kListRegistration);
  EXPECT_THAT(column(kListRegistration), ElementsAre("G-CIVE", "JA731A", "JA8089", "N123"));
}

TEST_F(AcarsList, RowsWithEqualTextKeepTheOrderOfTheLog) {
  clickTitle(kListEquipment);
  EXPECT_THAT(flights(), ElementsAre("ZZ0009", "JL0012", "BA0007", "NH0105"));
  clickTitle(kListEquipment);
  EXPECT_THAT(flights(), ElementsAre("NH0105", "JL0012", "BA0007", "ZZ0009"));
}

TEST_F(AcarsList, TheLineTitleSortsByTheRunningNumber) {
  clickTitle(kListFlight);
  clickTitle(kListLine);
  EXPECT_THAT(column(kListLine), ElementsAre("0001", "0002", "0003", "0004"));
  clickTitle(kListLine);
  EXPECT_THAT(column(kListLine), ElementsAre("0004", "0003", "0002", "0001"));
}

TEST_F(AcarsList, TheTimeTitleSortsByTime) {
  base_.writeLog(kLog, {"A1,O,R,D,E,Q,M,10:00:00", "A2,O,R,D,E,Q,M,9:00:00"});
  click("Command5");
  clickTitle(kListTime);
  EXPECT_THAT(flights(), ElementsAre("A2", "A1"));
}

TEST_F(AcarsList, ASortStaysInForceWhenTheLogIsReadAgain) {
  clickTitle(kListFlight);
  clickTitle(kListFlight);
  base_.writeLog(kLog, {"AA0001,O,R,D,E,Q,M,01:00:00", "ZZ0001,O,R,D,E,Q,M,01:00:00",
                        "MM0001,O,R,D,E,Q,M,01:00:00"});
  click("Command5");
  EXPECT_THAT(flights(), ElementsAre("ZZ0001", "MM0001", "AA0001"));
  // The running number is that of the order in which lines were read.
  EXPECT_THAT(column(kListLine), ElementsAre("0002", "0003", "0001"));
  test::typeKeys(box("Text4(0)"), "0");
  EXPECT_THAT(flights(), ElementsAre("ZZ0001", "MM0001", "AA0001"));
}

TEST_F(AcarsList, TheSelectedLineStaysSelectedWhenTheListIsSorted) {
  select(0);
  clickTitle(kListFlight);
  EXPECT_EQ(list().listIndex(), 1);
  EXPECT_EQ(list().selectedText(kListFlight), "JL0012");
  EXPECT_EQ(find<QGroupBox>("Frame2").title(), "JL0012");
}

TEST_F(AcarsList, AColumnsWidthCanBeDragged) {
  QHeaderView* header = list().horizontalHeader();
  const int before = header->sectionSize(kListFlight);
  const int edge = header->sectionViewportPosition(kListFlight) + before - 1;
  const int middle = header->height() / 2;
  QTest::mousePress(header->viewport(), Qt::LeftButton, {}, {edge, middle});
  QTest::mouseMove(header->viewport(), {edge + 10, middle});
  QTest::mouseMove(header->viewport(), {edge + 25, middle});
  QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, {edge + 25, middle});
  EXPECT_EQ(header->sectionSize(kListFlight), before + 25);
  EXPECT_EQ(window().model()->sortColumn(), -1);
}

TEST_F(AcarsList, OddRowsHaveTheirOwnColour) {
  ASSERT_TRUE(list().alternatingRowColors());
  list().setCurrentIndex({});
  const QImage picture = list().viewport()->grab().toImage();
  const auto colourOf = [&](int row) {
    const QRect cell = list().visualRect(window().model()->index(row, kListTime));
    return picture.pixel(cell.right() - 3, cell.center().y());
  };
  EXPECT_NE(colourOf(0), colourOf(1));
  EXPECT_EQ(colourOf(0), colourOf(2));
}

TEST_F(AcarsList, CtrlCCopiesTheSelectedLine) {
  select(1);
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(desktop_.clipboard, "0002\tNH0105\tX\tJA731A\tRJTT\tPHNL\tB773\t定期便\t09:35:00");
}

TEST_F(AcarsList, CtrlCCopiesSeveralLinesInTheShownOrder) {
  clickTitle(kListFlight);
  select(2);
  QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::ControlModifier, cellPlace(0, 1));
  settle();
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(desktop_.clipboard,
            "0003\tBA0007\t○\tG-CIVE\tEGLL\tRJAA\tB744\t\t10:00:00\n"
            "0002\tNH0105\tX\tJA731A\tRJTT\tPHNL\tB773\t定期便\t09:35:00");
}

TEST_F(AcarsList, CtrlCWithoutASelectedLineLeavesTheClipboardAsItIs) {
  desktop_.clipboard = "before";
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(desktop_.clipboard, "before");
}

TEST_F(AcarsList, TheArrowKeysSelectLinesAndShowTheirDetails) {
  select(0);
  QTest::keyClick(&list(), Qt::Key_Down);
  settle();
  EXPECT_EQ(list().listIndex(), 1);
  EXPECT_EQ(find<QGroupBox>("Frame2").title(), "NH0105");
}

TEST_F(AcarsList, TheMenuOffersItsEntriesInOrder) {
  openMenu(0, kListFlight, [](QMenu& menu) {
    std::vector<std::string> captions;
    for (const QAction* action : menu.actions()) {
      if (!action->isSeparator()) captions.push_back(captionOf(*action));
    }
    EXPECT_THAT(captions,
                ElementsAre("Copy cell", "Copy line", "Filter by this value", "Search photo",
                            "Search flight", "Open photo", "Open raw log"));
  });
}

TEST_F(AcarsList, TheMenuCopiesACellOrALine) {
  chooseFromMenu(1, kListRemarks, "Copy cell");
  EXPECT_EQ(desktop_.clipboard, "定期便");
  chooseFromMenu(2, kListFlight, "Copy line");
  EXPECT_EQ(desktop_.clipboard, "0003\tBA0007\t○\tG-CIVE\tEGLL\tRJAA\tB744\t\t10:00:00");
}

TEST_F(AcarsList, TheMenuFiltersByTheValueOfEachColumn) {
  const struct {
    int column;
    const char* box;
    const char* text;
  } kFilters[] = {{kListFlight, "Text4(0)", "JL0012"},  {kListRegistration, "Text4(1)", "JA8089"},
                  {kListDeparture, "Text4(2)", "RJTT"}, {kListDestination, "Text4(2)", "KLAX"},
                  {kListEquipment, "Text4(4)", "B744"}, {kListRemarks, "Text4(5)", "Log remark"},
                  {kListTime, "Text4(6)", "09:05:00"}};
  for (const auto& filter : kFilters) {
    click("Command9");
    ASSERT_THAT(flights(), SizeIs(4));
    chooseFromMenu(0, filter.column, "Filter by this value");
    EXPECT_EQ(text(filter.box), filter.text);
    EXPECT_EQ(flights().front(), "JL0012");
    EXPECT_LT(flights().size(), 4U);
  }
}

TEST_F(AcarsList, TheMenuFiltersByATimeWhateverComparisonWasChosen) {
  test::choose(find<QComboBox>("Combo5"), 2);
  chooseFromMenu(0, kListTime, "Filter by this value");
  EXPECT_THAT(flights(), ElementsAre("JL0012"));
}

TEST_F(AcarsList, TheMenuFiltersByThePhotoMark) {
  chooseFromMenu(2, kListPict, "Filter by this value");
  EXPECT_EQ(find<QComboBox>("Combo4").currentIndex(), 1);
  EXPECT_THAT(flights(), ElementsAre("JL0012", "BA0007"));
  click("Command9");
  chooseFromMenu(3, kListPict, "Filter by this value");
  EXPECT_EQ(find<QComboBox>("Combo4").currentIndex(), 2);
  EXPECT_THAT(flights(), ElementsAre("NH0105", "ZZ0009"));
}

TEST_F(AcarsList, TheMenuCannotFilterByALineNumberOrByTheMarkOfAnOpenedPhoto) {
  const auto expectDisabled = [this](int column) {
    openMenu(0, column, [](QMenu& menu) {
      for (const QAction* action : menu.actions()) {
        if (action->isSeparator()) continue;
        EXPECT_NE(action->isEnabled(), captionOf(*action) == "Filter by this value");
      }
    });
  };
  expectDisabled(kListLine);
  chooseFromMenu(0, kListFlight, "Open photo");
  ASSERT_EQ(column(kListPict).front(), "*");
  expectDisabled(kListPict);
}

TEST_F(AcarsList, TheMenuSearchesAndOpensForTheClickedLine) {
  test::choose(find<QComboBox>("Combo2"), 2);
  test::choose(find<QComboBox>("Combo3"), 2);
  chooseFromMenu(2, kListFlight, "Search photo");
  chooseFromMenu(1, kListFlight, "Search flight");
  chooseFromMenu(0, kListFlight, "Open photo");
  EXPECT_THAT(
      desktop_.opened,
      ElementsAre("https://www.jetphotos.com/showphotos.php?regsearch=G-CIVE",
                  "http://home.example/?F=NH0105", (base_.folders.pics / "JA8089.jpg").string()));
}

TEST_F(AcarsList, ARightClickBesideTheLinesOpensNoMenu) {
  const QPoint below(10, list().viewport()->height() - 2);
  ASSERT_FALSE(list().indexAt(below).isValid());
  QContextMenuEvent event(QContextMenuEvent::Mouse, below, list().viewport()->mapToGlobal(below));
  QApplication::sendEvent(list().viewport(), &event);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(AcarsList, EveryControlHasAnAccessibleNameAndAToolTip) {
  for (const char* name :
       {"Combo1",   "Command5",  "Command4", "Text4(0)",    "Text4(1)",    "Text4(2)",
        "Text4(4)", "Text4(5)",  "Text4(6)", "Combo4",      "Combo5",      "Check1",
        "Command9", "Combo2",    "Combo3",   "Command7(0)", "Command7(1)", "Command7(3)",
        "Text1",    "Command1",  "Text2(0)", "Text2(1)",    "Text2(2)",    "Text2(3)",
        "Text2(4)", "Text2(5)",  "Text2(6)", "Text2(7)",    "Command2",    "Command6",
        "Command8", "Command13", "Text3",    "List1",       "Command3(0)", "Command3(1)",
        "Image1"}) {
    const QWidget& widget = find<QWidget>(name);
    EXPECT_FALSE(widget.accessibleName().isEmpty()) << name;
    EXPECT_NE(widget.accessibleName(), QLatin1String(name));
    if (QLatin1String(name) != QLatin1String("List1")) {
      EXPECT_FALSE(widget.toolTip().isEmpty()) << name;
    }
  }
}

TEST_F(AcarsList, TabReachesEveryControlOfTheWindow) {
  select(0);
  std::vector<std::string> reached;
  box("Text4(0)").setFocus();
  for (int i = 0; i < 60; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    reached.push_back(QApplication::focusWidget()->objectName().toStdString());
  }
  for (const char* name :
       {"Combo1",    "Command5",  "Text4(0)", "Text4(6)", "Combo4",      "Check1",
        "Command9",  "xLView1",   "Image1",   "Combo2",   "Command7(0)", "Text1",
        "Command1",  "Text2(0)",  "Text2(1)", "Text2(2)", "Command2",    "Command13",
        "Label2(4)", "Label2(5)", "Text3",    "List1",    "Command3(0)", "Text2(3)",
        "Text2(4)",  "Command6",  "Text2(5)", "Text2(6)", "Command8"}) {
    EXPECT_THAT(reached, testing::Contains(name));
  }
}

TEST_F(AcarsList, ColumnsStayWhereTheUserPutThem) {
  start();
  ASSERT_TRUE(list().columnPlaces() == list().designedPlaces());
  list().setColumnWidth(kListEquipment, 77);
  list().horizontalHeader()->moveSection(kListTime, kListFlight);
  const ColumnPlaces places = list().columnPlaces();
  window().close();
  EXPECT_TRUE(fileExists(base_.folders.program / "columns.ini"));
  program_.reset();
  desktop_.ended = false;
  start();
  EXPECT_TRUE(list().columnPlaces() == places);
  list().setColumnPlaces(list().designedPlaces());
  window().close();
  EXPECT_EQ(test::readBytes(base_.folders.program / "columns.ini"), "");
}

TEST_F(AcarsList, ColumnsThatNobodyMovedMakeNoFile) {
  start();
  window().close();
  EXPECT_FALSE(fileExists(base_.folders.program / "columns.ini"));
}

TEST_F(AcarsList, SaysWhatToDoWhereThereIsNoLog) {
  std::filesystem::remove_all(base_.folders.logs);
  std::filesystem::create_directories(base_.folders.logs);
  start();
  const std::string hint = list().emptyHint().toStdString();
  EXPECT_THAT(hint, testing::HasSubstr("No log of this decoder in " + toUtf8(base_.folders.logs)));
  EXPECT_THAT(hint, testing::HasSubstr("Refresh（F5）を押してください。"));
  EXPECT_EQ(list().accessibleDescription().toStdString(), hint);
  std::filesystem::remove_all(base_.folders.logs);
  QTest::keyClick(&list(), Qt::Key_F5);
  test::finishJobs();
  EXPECT_THAT(list().emptyHint().toStdString(),
              testing::HasSubstr("There is no folder " + toUtf8(base_.folders.logs)));
}

TEST_F(AcarsList, SaysWhatToDoWhereNoLinePassesTheFilters) {
  start();
  const auto picture = [this] {
    return list().viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
  };
  test::typeKeys(box("Text4(0)"), "ZZZ999");
  EXPECT_EQ(list().model()->rowCount(), 0);
  EXPECT_THAT(list().emptyHint().toStdString(), testing::HasSubstr("Clear (Ctrl+L)"));
  const QImage hinted = picture();
  list().setEmptyHint({});
  EXPECT_NE(hinted, picture());
  click("Command9");
  EXPECT_GT(list().model()->rowCount(), 0);
  EXPECT_NE(picture(), hinted);
}

}  // namespace
}  // namespace vel
