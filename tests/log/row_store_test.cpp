#include "log/row_store.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/heap_meter.h"

namespace vel {
namespace {

TEST(RowStore, KeepsRowsInOrderAndGivesTheirFields) {
  RowStore rows('\t');
  rows.append("1\tJL0012\t\tJA8089");
  rows.append("2\tNH0847");
  EXPECT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows.row(0), "1\tJL0012\t\tJA8089");
  EXPECT_EQ(rows.field(0, 0), "1");
  EXPECT_EQ(rows.field(0, 2), "");
  EXPECT_EQ(rows.field(0, 3), "JA8089");
  EXPECT_EQ(rows.field(1, 1), "NH0847");
  EXPECT_EQ(rows.field(1, 2), "") << "a row with fewer fields";
}

TEST(RowStore, KeepsItsOwnCopyOfARow) {
  RowStore rows(',');
  std::string text = "a,b";
  rows.append(text);
  text = "x,y";
  EXPECT_EQ(rows.row(0), "a,b");
}

TEST(RowStore, AFieldTakesShorterAndLongerTexts) {
  RowStore rows(',');
  rows.append("1,old,end");
  rows.append("2,other,end");
  rows.setField(0, 1, "a much longer text");
  EXPECT_EQ(rows.row(0), "1,a much longer text,end");
  rows.setField(0, 1, "");
  EXPECT_EQ(rows.row(0), "1,,end");
  rows.setField(0, 2, "E");
  EXPECT_EQ(rows.row(0), "1,,E");
  rows.setField(0, 0, "9");
  EXPECT_EQ(rows.row(0), "9,,E");
  EXPECT_EQ(rows.row(1), "2,other,end");
}

TEST(RowStore, AFieldThatARowDoesNotHaveIsNotAdded) {
  RowStore rows(',');
  rows.append("1,2");
  rows.setField(0, 2, "3");
  EXPECT_EQ(rows.row(0), "1,2");
}

TEST(RowStore, TakesEmptyRowsAndRowsOfAMegabyte) {
  RowStore rows(',');
  rows.append(std::string_view());
  rows.append("");
  const std::string large(1'000'000, 'x');
  rows.append(large);
  rows.append("after");
  EXPECT_EQ(rows.row(0), "");
  EXPECT_EQ(rows.row(1), "");
  EXPECT_EQ(rows.row(2), large);
  EXPECT_EQ(rows.row(3), "after");
  rows.setField(0, 0, "now");
  EXPECT_EQ(rows.row(0), "now");
}

TEST(RowStore, ClearKeepsTheMemoryForTheNextRowsAndThenGivesBackWhatTheyDidNotNeed) {
  const std::size_t before = test::heapInUse();
  RowStore rows(',');
  for (int i = 0; i < 100000; ++i) rows.append("some,text,of,a,row");
  const std::size_t full = test::heapInUse() - before;
  rows.clear();
  EXPECT_EQ(rows.size(), 0U);
  for (int i = 0; i < 100000; ++i) rows.append("more,text,of,a,row");
  EXPECT_EQ(rows.field(99999, 0), "more");
  EXPECT_LE(test::heapInUse() - before, full);
  rows.clear();
  rows.append("again,usable");
  EXPECT_EQ(rows.field(0, 1), "usable");
  rows.clear();
  EXPECT_LE(test::heapInUse() - before, full / 4);
  rows.clear();
  EXPECT_LE(test::heapInUse() - before, 1024U);
}

TEST(RowStore, AMillionRowsTakeAtMost64BytesEachBesideTheirText) {
  constexpr std::size_t kRows = 1'000'000;
  const std::size_t before = test::heapInUse();
  RowStore rows('\t');
  std::size_t text = 0;
  for (std::size_t i = 0; i < kRows; ++i) {
    const std::string row =
        std::to_string(i) + "\tJL0012\t*\tJA8089\tRJTT\tKLAX\tB772\t-\t12:34:56";
    text += row.size();
    rows.append(row);
  }
  const std::size_t measured = test::heapInUse() - before - text;
  EXPECT_LE(measured, 64 * kRows);
  EXPECT_LE(rows.overhead(), 64 * kRows);
  // What the store says of itself is what the heap says, but for a few bytes.
  EXPECT_NEAR(static_cast<double>(rows.overhead()), static_cast<double>(measured), 4096);
  EXPECT_EQ(rows.field(kRows - 1, 0), "999999");
  RecordProperty("bytes_beside_text_per_row", static_cast<int>(measured / kRows));
}

}  // namespace
}  // namespace vel
