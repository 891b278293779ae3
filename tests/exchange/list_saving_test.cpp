#include "exchange/list_saving.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/csv_text.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using testing::ElementsAre;

class ListSavingTest : public testing::Test {
 protected:
  static ShownList listOf(std::vector<std::vector<std::string>> rows) {
    ShownList list{"20260102_list", {"Flight", "Remarks"}, rows.size(), {}};
    list.cells = [rows = std::move(rows)](std::size_t row) { return rows[row]; };
    return list;
  }

  /// Saves in as many steps as it takes; "" or why it is not saved.
  std::string save(ListFormat format, const ShownList& list) {
    ListSaving saving(file_, format, encoding_, list);
    steps_ = 0;
    while (true) {
      ++steps_;
      const Result<JobProgress> progress = saving.step(Job::Clock::now());
      if (!progress) return reasonOf(progress.error());
      if (*progress == JobProgress::done) return {};
    }
  }

  [[nodiscard]] std::string saved() const { return test::readBytes(file_); }
  [[nodiscard]] std::vector<std::string> filesBeside() const {
    return listFolder(file_.parent_path()).value();
  }

  test::TemporaryBase base_;
  std::filesystem::path file_ = base_.folders.pics / "list.csv";
  Encoding encoding_ = Encoding::codePage932();
  int steps_ = 0;
};

TEST_F(ListSavingTest, ASpreadsheetGetsUtf8WithItsMarkAndQuotesWhereTheyAreNeeded) {
  EXPECT_EQ(save(ListFormat::spreadsheet,
                 listOf({{"JL0012", "羽田, \"first\" day"}, {"NH0105", "two\nlines"}})),
            "");
  EXPECT_EQ(saved(),
            "\xEF\xBB\xBF"
            "Flight,Remarks\r\nJL0012,\"羽田, \"\"first\"\" day\"\r\n"
            "NH0105,\"two\nlines\"\r\n");
}

TEST_F(ListSavingTest, NoSpreadsheetRunsACell) {
  for (const std::string cell : {"=1+1", "+1", "-1+2", "@SUM(A1)", " =1+1", "\t=1", "\r=1", "＝1",
                                 "＋1", "－1", "＠A", "--", "=cmd|' /C calc'!A0"}) {
    EXPECT_EQ(notAFormula(cell), "'" + cell);
  }
  for (const std::string cell : {"-", "", "a=1", "JA8089", "'=1", "1-1"}) {
    EXPECT_EQ(notAFormula(cell), cell);
  }
  EXPECT_EQ(save(ListFormat::spreadsheet, listOf({{"=1,2", "-"}})), "");
  EXPECT_EQ(saved(),
            "\xEF\xBB\xBF"
            "Flight,Remarks\r\n\"'=1,2\",-\r\n");
}

TEST_F(ListSavingTest, TheStationsEncodingKeepsEveryTextAsItStands) {
  EXPECT_EQ(save(ListFormat::station, listOf({{"=1", "羽田€,x"}})), "");
  EXPECT_EQ(saved(), "Flight,Remarks\r\n=1,\"\x89\x48\x93\x63?,x\"\r\n");
}

TEST_F(ListSavingTest, APageHoldsTextAndNoMarkup) {
  EXPECT_EQ(save(ListFormat::html, listOf({{"<b>&amp;",
                                            "a\x01"
                                            "b"}})),
            "");
  EXPECT_THAT(saved(), testing::HasSubstr("<tr><td>&lt;b&gt;&amp;amp;</td><td>a\xEF\xBF\xBD"
                                          "b</td></tr>"));
  EXPECT_THAT(saved(), testing::StartsWith("<!DOCTYPE html>"));
  EXPECT_THAT(saved(), testing::HasSubstr("<tr><th>Flight</th><th>Remarks</th></tr>"));
  EXPECT_THAT(saved(), testing::EndsWith("</table>\r\n</body>\r\n</html>\r\n"));
}

TEST_F(ListSavingTest, ALargeListIsSavedInStepsAndTheOldFileStaysUntilTheEnd) {
  test::writeBytes(file_, "old");
  std::vector<std::vector<std::string>> rows(10'000, {"JL0012", "-"});
  const ShownList list = listOf(rows);
  {
    ListSaving givenUp(file_, ListFormat::station, encoding_, list);
    const Result<JobProgress> first = givenUp.step(Job::Clock::now());
    ASSERT_TRUE(first);
    EXPECT_EQ(*first, JobProgress::more);
    EXPECT_EQ(saved(), "old");
  }
  EXPECT_THAT(filesBeside(), ElementsAre("list.csv"));
  EXPECT_EQ(saved(), "old");
  EXPECT_EQ(save(ListFormat::station, list), "");
  EXPECT_GT(steps_, 10);
  EXPECT_EQ(saved().size(), 16U + 10'000U * 10U);
  EXPECT_THAT(filesBeside(), ElementsAre("list.csv"));
}

TEST_F(ListSavingTest, WhereItCannotBeSavedTheReasonIsTold) {
  file_ = base_.folders.pics / "missing" / "list.csv";
  EXPECT_EQ(save(ListFormat::html, listOf({})), "There is no such folder. フォルダがありません。");
  file_ = base_.folders.pics / "folder";
  std::filesystem::create_directory(file_);
  EXPECT_EQ(save(ListFormat::html, listOf({})),
            "Access is denied, or another program holds the file. "
            "アクセスできないか、他のプログラムが使用中です。");
}

}  // namespace
}  // namespace vel
