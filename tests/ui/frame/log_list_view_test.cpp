#include "log/ui/log_list_view.h"

#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QStyleOptionViewItem>
#include <QTest>

#include <gmock/gmock.h>

#include "tests/ui/support/window_driver.h"

namespace vel {
namespace {

class LogListViewTest : public testing::Test {
 protected:
  LogListViewTest()
      : model_(
            Encoding::codePage932(), ',', {"Line", "A", "B"},
            [](std::size_t number) { return QString::number(number); }, nullptr),
        view_(&model_, {.widths = {40, 80, 90}}, nullptr) {
    for (const char* row : {"b,1", "a,2", "c,3"}) model_.rows().append(row);
    model_.publish();
    view_.resize(400, 300);
    view_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&view_));
  }
  void clickRow(int row, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(view_.viewport(), Qt::LeftButton, keys,
                      view_.visualRect(model_.index(row, 1)).center());
  }
  static void settle() { QCoreApplication::processEvents(); }

  LogListModel model_;
  LogListView view_;
};

TEST_F(LogListViewTest, AtFirstNoLineIsSelected) {
  EXPECT_EQ(view_.listIndex(), -1);
  EXPECT_EQ(view_.selectedText(1), "");
}

TEST_F(LogListViewTest, AClickSelectsItsLineAndTellsOnce) {
  QSignalSpy changed(&view_, &LogListView::listIndexChanged);
  clickRow(1);
  settle();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(view_.listIndex(), 1);
  EXPECT_EQ(view_.selectedText(1), "a");
  clickRow(1);
  settle();
  EXPECT_EQ(changed.count(), 1);
}

TEST_F(LogListViewTest, TheFirstLineCanBeClickedAfterTheListGotTheKeyboard) {
  view_.clearFocus();
  view_.setFocus(Qt::TabFocusReason);
  settle();
  ASSERT_EQ(view_.listIndex(), -1);
  QSignalSpy changed(&view_, &LogListView::listIndexChanged);
  clickRow(0);
  settle();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(view_.listIndex(), 0);
}

TEST_F(LogListViewTest, ColumnsAreDraggedToOtherPlacesAndWidthsAndTheirMenuPutsThemBack) {
  const ColumnPlaces designed{{0, 1, 2}, {40, 80, 90}};
  EXPECT_EQ(view_.columnPlaces(), designed);
  QHeaderView* header = view_.horizontalHeader();
  const auto drag = [header](int from, int to) {
    QWidget* titles = header->viewport();
    const int y = titles->height() / 2;
    QTest::mousePress(titles, Qt::LeftButton, {}, QPoint(from, y));
    for (int step = 1; step <= 4; ++step) {
      QTest::mouseMove(titles, QPoint(from + (to - from) * step / 4, y));
      // The pointer's position alone tells offscreen nothing of the button.
      QMouseEvent moved(QEvent::MouseMove, QPointF(from + (to - from) * step / 4, y),
                        titles->mapToGlobal(QPointF(from + (to - from) * step / 4, y)),
                        Qt::NoButton, Qt::LeftButton, {});
      QApplication::sendEvent(titles, &moved);
    }
    QTest::mouseRelease(titles, Qt::LeftButton, {}, QPoint(to, y));
  };
  drag(39, 69);  // the line behind the first title
  EXPECT_EQ(view_.columnPlaces().widths, (std::vector<int>{70, 80, 90}));
  drag(100, 10);  // the second title, before the first
  EXPECT_EQ(view_.columnPlaces().order, (std::vector<int>{1, 0, 2}));
  test::inDialog(
      "ColumnsMenu", [header] { Q_EMIT header->customContextMenuRequested(QPoint(5, 5)); },
      [](QWidget& widget) {
        auto& menu = dynamic_cast<QMenu&>(widget);
        QTest::mouseClick(&menu, Qt::LeftButton, {},
                          menu.actionGeometry(menu.actions().constFirst()).center());
      });
  EXPECT_EQ(view_.columnPlaces(), designed);
}

TEST_F(LogListViewTest, ColumnsComeBackWhereTheyWere) {
  const ColumnPlaces places{{2, 0, 1}, {50, 80, 60}};
  view_.setColumnPlaces(places);
  EXPECT_EQ(view_.columnPlaces(), places);
  EXPECT_EQ(view_.horizontalHeader()->logicalIndex(0), 2);
  EXPECT_EQ(view_.columnWidth(2), 60);
}

TEST_F(LogListViewTest, ASortIsNoNewSelection) {
  clickRow(0);
  settle();
  QSignalSpy changed(&view_, &LogListView::listIndexChanged);
  model_.sort(1, Qt::AscendingOrder);
  settle();
  EXPECT_EQ(view_.listIndex(), 1);
  clickRow(1);
  settle();
  EXPECT_EQ(changed.count(), 0);
}

TEST_F(LogListViewTest, ALineIsToldAgainAfterTheListWasReadAnew) {
  clickRow(1);
  settle();
  QSignalSpy changed(&view_, &LogListView::listIndexChanged);
  model_.clear();
  for (const char* row : {"b,1", "a,2"}) model_.rows().append(row);
  model_.publish();
  clickRow(1);
  settle();
  EXPECT_EQ(changed.count(), 1);
}

TEST_F(LogListViewTest, SelectingByIndexTellsToo) {
  QSignalSpy changed(&view_, &LogListView::listIndexChanged);
  view_.setListIndex(2);
  settle();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(view_.selectedText(2), "3");
}

TEST_F(LogListViewTest, AnIndexOutsideTheListClearsTheSelection) {
  for (const int outside : {-1, 3, 1000}) {
    view_.setListIndex(1);
    view_.setListIndex(outside);
    EXPECT_EQ(view_.listIndex(), -1) << outside;
  }
}

TEST_F(LogListViewTest, ADeselectedLineIsNotTheSelectedOne) {
  clickRow(1);
  clickRow(1, Qt::ControlModifier);
  EXPECT_EQ(view_.listIndex(), -1);
}

TEST_F(LogListViewTest, AClearedListHasNoSelectedLine) {
  view_.setListIndex(1);
  model_.clear();
  EXPECT_EQ(view_.listIndex(), -1);
}

TEST_F(LogListViewTest, TheSortsDirectionIsShownInTheTitle) {
  EXPECT_FALSE(view_.horizontalHeader()->isSortIndicatorShown());
  const QHeaderView* header = view_.horizontalHeader();
  const QPoint title(header->sectionViewportPosition(1) + 20, header->height() / 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, title);
  EXPECT_TRUE(header->isSortIndicatorShown());
  EXPECT_EQ(header->sortIndicatorSection(), 1);
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, title);
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(LogListViewTest, CopyingGivesTheCellOrTheLine) {
  QSignalSpy copied(&view_, &LogListView::copied);
  view_.copyCell();
  view_.copyLines();
  EXPECT_EQ(copied.count(), 0);
  clickRow(2);
  view_.copyCell();
  ASSERT_EQ(copied.count(), 1);
  EXPECT_EQ(copied[0][0].toString(), QStringLiteral("c"));
  QTest::keyClick(&view_, Qt::Key_C, Qt::ControlModifier);
  ASSERT_EQ(copied.count(), 2);
  EXPECT_EQ(copied[1][0].toString(), QStringLiteral("3\tc\t3"));
}

TEST_F(LogListViewTest, ColumnsHaveTheirWidths) {
  EXPECT_EQ(view_.columnWidth(0), 40);
  EXPECT_EQ(view_.columnWidth(1), 80);
}

// What is highlighted is what is selected, and one of it is the selected line.
TEST_F(LogListViewTest, EveryKeyThatGoesToALineSelectsIt) {
  const struct {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    int line;
  } steps[] = {{Qt::Key_End, {}, 2},
               {Qt::Key_Home, {}, 0},
               {Qt::Key_End, Qt::ControlModifier, 2},
               {Qt::Key_Home, Qt::ControlModifier, 0},
               {Qt::Key_Down, Qt::ControlModifier, 1},
               {Qt::Key_Down, {}, 2},
               {Qt::Key_Up, Qt::ControlModifier, 1},
               {Qt::Key_PageDown, Qt::ControlModifier, 2},
               {Qt::Key_PageUp, {}, 0}};
  view_.setFocus();
  for (const auto& step : steps) {
    QTest::keyClick(&view_, step.key, step.modifiers);
    EXPECT_EQ(view_.listIndex(), step.line) << step.key;
    EXPECT_EQ(view_.currentIndex().row(), step.line) << step.key;
    EXPECT_EQ(view_.selectionModel()->selectedRows().size(), 1) << step.key;
  }
}

TEST_F(LogListViewTest, HomeAndEndKeepTheColumn) {
  clickRow(1);
  QTest::keyClick(&view_, Qt::Key_End);
  EXPECT_EQ(view_.currentIndex(), model_.index(2, 1));
  QTest::keyClick(&view_, Qt::Key_Home);
  EXPECT_EQ(view_.currentIndex(), model_.index(0, 1));
}

TEST_F(LogListViewTest, ShiftEndSelectsUpToTheLastLine) {
  clickRow(1);
  QTest::keyClick(&view_, Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(view_.selectionModel()->selectedRows().size(), 2);
  EXPECT_EQ(view_.listIndex(), 2);
}

TEST_F(LogListViewTest, InAnEmptyListHomeAndEndSelectNothing) {
  model_.clear();
  view_.setFocus();
  for (const Qt::Key key : {Qt::Key_Home, Qt::Key_End}) {
    QTest::keyClick(&view_, key);
    EXPECT_EQ(view_.listIndex(), -1);
  }
}

TEST_F(LogListViewTest, OfSeveralSelectedLinesOneIsAlwaysTheSelectedOne) {
  clickRow(0);
  clickRow(2, Qt::ControlModifier);
  settle();
  ASSERT_EQ(view_.listIndex(), 2);
  clickRow(2, Qt::ControlModifier);
  settle();
  EXPECT_EQ(view_.selectionModel()->selectedRows().size(), 1);
  EXPECT_EQ(view_.listIndex(), 0);
}

// Counts the texts that get as far as the painting of cells.
class CountingStyle : public QProxyStyle {
 public:
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    if (const auto* cell = qstyleoption_cast<const QStyleOptionViewItem*>(option)) {
      if (element == CE_ItemViewItem) {
        characters += cell->text.size();
        focused += cell->state.testFlag(State_HasFocus) ? 1 : 0;
        ++cells;
        texts.append(cell->text);
      }
    }
    QProxyStyle::drawControl(element, option, painter, widget);
  }
  mutable qsizetype characters = 0;
  mutable int cells = 0;
  mutable int focused = 0;
  mutable QStringList texts;
};

TEST_F(LogListViewTest, NoMoreOfATextIsPaintedThanItsCellCanShow) {
  auto* style = new CountingStyle;
  style->setParent(&view_);
  view_.setStyle(style);
  model_.clear();
  for (const char filling : {'x', '\0', '\x81'}) {
    model_.rows().append({std::string(900'000, filling), ",", std::string(900'000, filling)});
  }
  model_.publish();
  view_.grab();
  EXPECT_GE(style->cells, 9);
  // Three pixels for a letter: every row has at most so many.
  EXPECT_LE(style->characters, 3 * (view_.viewport()->width() / 3 + 3));
  EXPECT_TRUE(style->texts.filter(QStringLiteral("␀␀␀")).size() >= 2);
  EXPECT_EQ(model_.cell(0, 1).size(), 900'000U);
}

TEST_F(LogListViewTest, ADeselectedCellDoesNotLookSelected) {
  auto* style = new CountingStyle;
  style->setParent(&view_);
  view_.setStyle(style);
  view_.setFocus();
  clickRow(1);
  view_.grab();
  EXPECT_GT(style->focused, 0);
  clickRow(1, Qt::ControlModifier);
  style->focused = 0;
  view_.grab();
  EXPECT_EQ(style->focused, 0);
}

}  // namespace
}  // namespace vel
