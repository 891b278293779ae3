// A table that a spreadsheet holds while an editor rewrites it.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/file.h"
#include "tables/rewrite.h"
#include "tests/held/file_holder.h"
#include "tests/held/messages.h"
#include "tests/support/driven_rewrite.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::FileHolder;
using test::kRenameRefused;
using test::RecordingDesktop;
using test::TemporaryBase;
using test::writeBytes;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kOldTable =
    "JL0012,RJTTKLAX,羽田～ロス\r\nNH0847,RJTTVTBS,-\r\nJL0012,RJAAKLAX,-\r\n";
constexpr const char* kNewTable = "JL0012,RJTTKSFO,－①\r\nNH0847,RJTTVTBS,-\r\n";

class HeldTableTest : public testing::Test {
 protected:
  HeldTableTest() {
    base_.writeData("FLIGHT.csv",
                    {"JL0012,RJTTKLAX,羽田～ロス", "NH0847,RJTTVTBS,-", "JL0012,RJAAKLAX,-"});
    writeBytes(backup_, "an older backup\r\n");
  }

  test::DrivenRewrite rewrite() {
    return test::drive(
        desktop_, base_.folders, Encoding::codePage932(),
        {.table = Table::flight, .key = "JL0012", .newRecord = "JL0012,RJTTKSFO,－①"});
  }

  TemporaryBase base_;
  std::filesystem::path live_ = base_.folders.data / "FLIGHT.csv";
  std::filesystem::path backup_ = base_.folders.data / "FLIGHT.bak";
  std::filesystem::path temporary_ = base_.folders.data / "FLIGHT.$$$";
  RecordingDesktop desktop_;
};

TEST_F(HeldTableTest, WithoutASpreadsheetTheRewriteJustWorks) {
  EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(base_.data("FLIGHT.csv"), kNewTable);
  EXPECT_EQ(base_.data("FLIGHT.bak"), kOldTable);
  EXPECT_FALSE(fileExists(temporary_));
}

// "With the table locked by another program, Retry succeeds as soon as the
// other program releases it".
TEST_F(HeldTableTest, RetrySucceedsAsSoonAsTheSpreadsheetLetsGo) {
  FileHolder spreadsheet(live_, FileHolder::Shares::reading);
  ASSERT_TRUE(spreadsheet.isHolding());
  int asked = 0;
  desktop_.onRetry = [&] {
    EXPECT_TRUE(fileExists(live_));
    return ++asked < 2 || spreadsheet.release();
  };
  EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
  EXPECT_THAT(desktop_.messages, ElementsAre(kRenameRefused, kRenameRefused));
  EXPECT_FALSE(desktop_.ended);
  EXPECT_EQ(base_.data("FLIGHT.csv"), kNewTable);
  EXPECT_EQ(base_.data("FLIGHT.bak"), kOldTable);
  EXPECT_FALSE(fileExists(temporary_));
}

// "Cancel ends the program and leaves <name>.csv unchanged", the new content
// complete in <name>.$$$, and no <name>.bak.
TEST_F(HeldTableTest, CancelEndsTheProgramAndCostsNothingButTheOldBackup) {
  FileHolder spreadsheet(live_, FileHolder::Shares::reading);
  ASSERT_TRUE(spreadsheet.isHolding());
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  EXPECT_THAT(desktop_.messages, ElementsAre(kRenameRefused));
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 1);
  ASSERT_TRUE(spreadsheet.release());
  EXPECT_EQ(base_.data("FLIGHT.csv"), kOldTable);
  EXPECT_EQ(base_.data("FLIGHT.$$$"), kNewTable);
  EXPECT_FALSE(fileExists(backup_));
}

TEST_F(HeldTableTest, AfterACancelTheNextRewriteWorksAgain) {
  FileHolder spreadsheet(live_, FileHolder::Shares::reading);
  ASSERT_TRUE(spreadsheet.isHolding());
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  ASSERT_TRUE(spreadsheet.release());
  desktop_ = RecordingDesktop();
  recoverTables(base_.folders);
  EXPECT_EQ(base_.data("FLIGHT.csv"), kOldTable) << "nothing is repaired silently";
  EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
  EXPECT_EQ(base_.data("FLIGHT.csv"), kNewTable);
  EXPECT_EQ(base_.data("FLIGHT.bak"), kOldTable);
}

TEST_F(HeldTableTest, OneThatCannotEvenBeReadIsError70AndStaysUntouched) {
  FileHolder other(live_, FileHolder::Shares::nothing);
  ASSERT_TRUE(other.isHolding());
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #70"));
  EXPECT_EQ(desktop_.exitStatus, 1);
  ASSERT_TRUE(other.release());
  EXPECT_EQ(base_.data("FLIGHT.csv"), kOldTable);
  EXPECT_EQ(base_.data("FLIGHT.bak"), "an older backup\r\n");
  EXPECT_FALSE(fileExists(temporary_));
}

TEST_F(HeldTableTest, AHeldBackupIsError70AndTheLiveTableStays) {
  FileHolder other(backup_, FileHolder::Shares::reading);
  ASSERT_TRUE(other.isHolding());
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #70"));
  EXPECT_EQ(base_.data("FLIGHT.csv"), kOldTable);
  EXPECT_EQ(base_.data("FLIGHT.bak"), "an older backup\r\n");
}

TEST_F(HeldTableTest, AHeldTemporaryFileIsError70AndTheLiveTableStays) {
  writeBytes(temporary_, "left over");
  FileHolder other(temporary_, FileHolder::Shares::reading);
  ASSERT_TRUE(other.isHolding());
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #70"));
  EXPECT_EQ(base_.data("FLIGHT.csv"), kOldTable);
}

}  // namespace
}  // namespace vel
