#include "log/ui/log_list_model.h"

#include <QAbstractItemModelTester>
#include <QColor>
#include <QSignalSpy>
#include <random>

#include <gmock/gmock.h>

#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

using testing::ElementsAre;

class LogListModelTest : public testing::Test {
 protected:
  LogListModelTest()
      : model_(
            Encoding::codePage932(), ',', {"Line", "A", "B"},
            [](std::size_t number) { return QString::number(number); }, nullptr),
        tester_(&model_, QAbstractItemModelTester::FailureReportingMode::Fatal) {}

  void add(std::initializer_list<std::string_view> rows) {
    for (const std::string_view row : rows) model_.rows().append(row);
    model_.publish();
  }
  [[nodiscard]] std::vector<std::string> column(int column) const {
    std::vector<std::string> texts;
    for (int i = 0; i < model_.rowCount(); ++i) texts.push_back(model_.cell(i, column));
    return texts;
  }

  LogListModel model_;
  QAbstractItemModelTester tester_;
};

TEST_F(LogListModelTest, RowsShowOnlyWhenTheyArePublished) {
  model_.rows().append("a,1");
  EXPECT_EQ(model_.rowCount(), 0);
  const QSignalSpy inserted(&model_, &QAbstractItemModel::rowsInserted);
  model_.publish();
  EXPECT_EQ(model_.rowCount(), 1);
  EXPECT_EQ(inserted.count(), 1);
  model_.publish();
  EXPECT_EQ(inserted.count(), 1);
}

TEST_F(LogListModelTest, EqualTextsKeepTheOrderOfReadingBothWays) {
  add({"b,1", "a,2", "b,3", "a,4"});
  model_.sort(1, Qt::AscendingOrder);
  EXPECT_THAT(column(2), ElementsAre("2", "4", "1", "3"));
  model_.sort(1, Qt::DescendingOrder);
  EXPECT_THAT(column(2), ElementsAre("1", "3", "2", "4"));
}

TEST_F(LogListModelTest, RowsPublishedUnderASortTakeTheirPlaces) {
  model_.sort(1, Qt::AscendingOrder);
  add({"m,1", "c,2"});
  add({"a,3", "z,4", "c,5"});
  EXPECT_THAT(column(1), ElementsAre("a", "c", "c", "m", "z"));
  EXPECT_THAT(column(2), ElementsAre("3", "2", "5", "1", "4"));
  EXPECT_THAT(column(0), ElementsAre("3", "2", "5", "1", "4"));
}

TEST_F(LogListModelTest, PublishingInPiecesGivesTheSameAsSortingAtOnce) {
  std::mt19937_64 random(7);
  std::vector<std::string> rows;
  for (int i = 0; i < 3000; ++i) {
    // Texts of one, eight and more bytes, with common beginnings.
    rows.push_back(std::string(random() % 12, 'x') + std::to_string(random() % 50) + ',' +
                   std::to_string(i));
  }
  for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
    model_.clear();
    model_.sort(1, order);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      model_.rows().append(rows[i]);
      if (i % 97 == 0) model_.publish();
    }
    model_.publish();
    std::vector<std::string> expected = rows;
    const auto key = [](const std::string& row) { return row.substr(0, row.find(',')); };
    std::stable_sort(expected.begin(), expected.end(), [&](const auto& left, const auto& right) {
      return order == Qt::AscendingOrder ? key(left) < key(right) : key(right) < key(left);
    });
    for (std::string& row : expected) row.erase(0, row.find(',') + 1);
    EXPECT_EQ(column(2), expected);
  }
}

TEST_F(LogListModelTest, TextsThatDifferBehindTheirEighthByteAreToldApart) {
  add({"abcdefghZ,1", "abcdefgh,2", "abcdefghA,3"});
  model_.sort(1, Qt::AscendingOrder);
  EXPECT_THAT(column(2), ElementsAre("2", "3", "1"));
}

TEST_F(LogListModelTest, TheFirstColumnSortsByNumberAndNotByText) {
  for (int i = 0; i < 12; ++i) model_.rows().append("x,y");
  model_.publish();
  model_.sort(0, Qt::DescendingOrder);
  EXPECT_EQ(model_.cell(0, 0), "12");
  EXPECT_EQ(model_.cell(11, 0), "1");
  model_.sort(0, Qt::AscendingOrder);
  EXPECT_EQ(model_.cell(1, 0), "2");
}

TEST_F(LogListModelTest, AClearedListKeepsItsSort) {
  add({"b,1", "a,2"});
  model_.sort(1, Qt::AscendingOrder);
  model_.clear();
  EXPECT_EQ(model_.rowCount(), 0);
  add({"d,1", "c,2"});
  EXPECT_THAT(column(1), ElementsAre("c", "d"));
}

TEST_F(LogListModelTest, AChangedCellKeepsItsPlaceUntilTheNextSort) {
  add({"b,1", "a,2", "c,3"});
  model_.sort(1, Qt::AscendingOrder);
  const QSignalSpy changed(&model_, &QAbstractItemModel::dataChanged);
  model_.setCell(0, 1, "表");
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toModelIndex(), model_.index(0, 1));
  EXPECT_THAT(column(1), ElementsAre("表", "b", "c"));
  EXPECT_THAT(column(2), ElementsAre("2", "1", "3"));
  model_.sort(1, Qt::AscendingOrder);
  EXPECT_THAT(column(1), ElementsAre("b", "c", "表"));
}

TEST_F(LogListModelTest, APersistentIndexFollowsItsRow) {
  add({"b,1", "a,2", "c,3"});
  const QPersistentModelIndex kept = model_.index(0, 2);
  model_.sort(1, Qt::DescendingOrder);
  EXPECT_EQ(kept.row(), 1);
  EXPECT_EQ(kept.column(), 2);
  add({"z,4"});
  EXPECT_EQ(kept.row(), 2);
  model_.clear();
  EXPECT_FALSE(kept.isValid());
}

TEST_F(LogListModelTest, AColourFollowsItsRowUntilTheListIsCleared) {
  add({"b,1", "a,2"});
  model_.setRowBackground(0, Qt::red);
  model_.sort(1, Qt::AscendingOrder);
  EXPECT_EQ(model_.index(1, 1).data(Qt::BackgroundRole).value<QColor>(), QColor(Qt::red));
  EXPECT_FALSE(model_.index(0, 1).data(Qt::BackgroundRole).isValid());
  model_.clear();
  add({"b,1", "a,2"});
  EXPECT_FALSE(model_.index(1, 1).data(Qt::BackgroundRole).isValid());
}

TEST_F(LogListModelTest, ControlCharactersAreShownByASignAndKeptInTheCell) {
  const std::string text("a\0\x1b\t\x7f", 5);
  model_.rows().append({text, ",\xE2\x80\xAEz"});
  model_.publish();
  EXPECT_EQ(model_.index(0, 1).data().toString(), QStringLiteral("a␀␛␉␡"));
  EXPECT_EQ(model_.cell(0, 1), text);
}

TEST_F(LogListModelTest, OnlyTheBeginningOfALongCellIsShown) {
  const std::string megabyte(1'000'000, 'x');
  model_.rows().append({megabyte, ",", megabyte.substr(0, 1000)});
  model_.publish();
  EXPECT_EQ(model_.index(0, 1).data().toString(), QString(999, u'x') + u'…');
  EXPECT_EQ(model_.index(0, 2).data().toString(), QString(1000, u'x'));
  EXPECT_LE(model_.index(0, 1).data(Qt::ToolTipRole).toString().size(), 1100);
  EXPECT_EQ(model_.cell(0, 1), megabyte);
}

// Two bytes each: the cut must not go through one.
TEST_F(LogListModelTest, ALongJapaneseCellIsCutBetweenCharacters) {
  for (const char* before : {"", "a"}) {
    model_.clear();
    std::string bytes = before;
    for (int i = 0; i < 5000; ++i) bytes += "\x95\x5C";
    model_.rows().append(bytes);
    model_.publish();
    const QString shown = model_.index(0, 1).data().toString();
    EXPECT_EQ(shown.size(), 1000);
    EXPECT_FALSE(shown.contains(QChar::ReplacementCharacter));
    EXPECT_TRUE(shown.endsWith(QStringLiteral("表…")));
  }
}

TEST_F(LogListModelTest, ACellOfAShortRowIsEmpty) {
  add({"a"});
  EXPECT_EQ(model_.cell(0, 2), "");
}

}  // namespace
}  // namespace vel
