#include "log/ui/xlview.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

namespace vel {
namespace {

class XlViewTest : public testing::Test {
 protected:
  XlViewTest()
      : model_(
            Encoding::codePage932(), ',', {"Line", "A", "B"},
            [](std::size_t number) { return QString::number(number); }, nullptr),
        view_(&model_, {40, 80, 90}, nullptr) {
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
  xLView view_;
};

TEST_F(XlViewTest, AtFirstNoLineIsSelected) {
  EXPECT_EQ(view_.listIndex(), -1);
  EXPECT_EQ(view_.selectedText(1), "");
}

TEST_F(XlViewTest, AClickSelectsItsLineAndTellsOnce) {
  QSignalSpy changed(&view_, &xLView::listIndexChanged);
  clickRow(1);
  settle();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(view_.listIndex(), 1);
  EXPECT_EQ(view_.selectedText(1), "a");
  clickRow(1);
  settle();
  EXPECT_EQ(changed.count(), 1);
}

TEST_F(XlViewTest, TheFirstLineCanBeClickedAfterTheListGotTheKeyboard) {
  view_.clearFocus();
  view_.setFocus(Qt::TabFocusReason);
  settle();
  ASSERT_EQ(view_.listIndex(), -1);
  QSignalSpy changed(&view_, &xLView::listIndexChanged);
  clickRow(0);
  settle();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(view_.listIndex(), 0);
}

TEST_F(XlViewTest, ASortIsNoNewSelection) {
  clickRow(0);
  settle();
  QSignalSpy changed(&view_, &xLView::listIndexChanged);
  model_.sort(1, Qt::AscendingOrder);
  settle();
  EXPECT_EQ(view_.listIndex(), 1);
  clickRow(1);
  settle();
  EXPECT_EQ(changed.count(), 0);
}

TEST_F(XlViewTest, ALineIsToldAgainAfterTheListWasReadAnew) {
  clickRow(1);
  settle();
  QSignalSpy changed(&view_, &xLView::listIndexChanged);
  model_.clear();
  for (const char* row : {"b,1", "a,2"}) model_.rows().append(row);
  model_.publish();
  clickRow(1);
  settle();
  EXPECT_EQ(changed.count(), 1);
}

TEST_F(XlViewTest, SelectingByIndexTellsToo) {
  QSignalSpy changed(&view_, &xLView::listIndexChanged);
  view_.setListIndex(2);
  settle();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(view_.selectedText(2), "3");
}

TEST_F(XlViewTest, AnIndexOutsideTheListClearsTheSelection) {
  for (const int outside : {-1, 3, 1000}) {
    view_.setListIndex(1);
    view_.setListIndex(outside);
    EXPECT_EQ(view_.listIndex(), -1) << outside;
  }
}

TEST_F(XlViewTest, ADeselectedLineIsNotTheSelectedOne) {
  clickRow(1);
  clickRow(1, Qt::ControlModifier);
  EXPECT_EQ(view_.listIndex(), -1);
}

TEST_F(XlViewTest, AClearedListHasNoSelectedLine) {
  view_.setListIndex(1);
  model_.clear();
  EXPECT_EQ(view_.listIndex(), -1);
}

TEST_F(XlViewTest, TheSortsDirectionIsShownInTheTitle) {
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

TEST_F(XlViewTest, CopyingGivesTheCellOrTheLine) {
  QSignalSpy copied(&view_, &xLView::copied);
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

TEST_F(XlViewTest, ColumnsHaveTheirWidths) {
  EXPECT_EQ(view_.columnWidth(0), 40);
  EXPECT_EQ(view_.columnWidth(1), 80);
}

}  // namespace
}  // namespace vel
