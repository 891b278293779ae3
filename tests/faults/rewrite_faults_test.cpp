#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/file.h"
#include "tables/rewrite.h"
#include "tables/table_scanner.h"
#include "tests/support/driven_rewrite.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "tests/support/unprivileged_user.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kRenameRefused =
    "Can't write file. Using Excel to edit CSV? If not edited by Excel, close it to continue."
    "　ファイルの書込みができません。エクセルでCSVファイルを開いていませんか？。"
    "エクセル側で書き換えを行っていなければエクセルを閉じてから再試行を行うと継続できます。";

class RewriteFaults : public testing::Test {
 protected:
  void SetUp() override {
    base_ = std::make_unique<test::TemporaryBase>();
    data_ = base_->folders.data;
    base_->writeData("aircraft.csv", {"A,1", "JA8089,B744"});
    before_ = test::readBytes(data_ / "aircraft.csv");
  }
  void TearDown() override { allowWriting(true); }

  void allowWriting(bool allowed) const {
    ASSERT_EQ(chmod(data_.c_str(), allowed ? 0755 : 0555), 0);
  }
  test::DrivenRewrite rewrite() {
    return test::drive(desktop_, base_->folders, Encoding::codePage932(),
                       {.table = Table::aircraft, .key = "JA8089", .newRecord = "JA8089,B748"},
                       turns_);
  }
  void refuseWritingInTheSecondTurn() {
    turns_.each = [this] {
      if (turns_.count == 2) allowWriting(false);
    };
  }
  void expectEnded(const std::string& message) {
    EXPECT_THAT(desktop_.messages, ElementsAre(message));
    EXPECT_TRUE(desktop_.ended);
    EXPECT_EQ(desktop_.exitStatus, 1);
  }
  [[nodiscard]] std::string bytes(const char* name) const { return test::readBytes(data_ / name); }

  test::UnprivilegedUser user_;
  std::unique_ptr<test::TemporaryBase> base_;
  fs::path data_;
  std::string before_;
  test::RecordingDesktop desktop_;
  test::EventTurns turns_;
};

TEST_F(RewriteFaults, AHeldTableIsRenamedOnceItIsLetGoAndRetryIsPressed) {
  refuseWritingInTheSecondTurn();
  int asked = 0;
  desktop_.onRetry = [&] {
    EXPECT_EQ(bytes("aircraft.csv"), before_);
    if (++asked == 3) allowWriting(true);
    return true;
  };
  EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
  EXPECT_THAT(desktop_.messages, ElementsAre(kRenameRefused, kRenameRefused, kRenameRefused));
  EXPECT_FALSE(desktop_.ended);
  EXPECT_EQ(bytes("aircraft.csv"), "A,1\r\nJA8089,B748\r\n");
  EXPECT_EQ(bytes("aircraft.bak"), before_);
  EXPECT_FALSE(fileExists(data_ / "aircraft.$$$"));
}

TEST_F(RewriteFaults, CancelEndsTheProgramWithTheTableAndTheNewFileComplete) {
  refuseWritingInTheSecondTurn();
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  expectEnded(kRenameRefused);
  EXPECT_EQ(bytes("aircraft.csv"), before_);
  EXPECT_EQ(bytes("aircraft.$$$"), "A,1\r\nJA8089,B748\r\n");
  EXPECT_FALSE(fileExists(data_ / "aircraft.bak"));
}

TEST_F(RewriteFaults, AfterACancelTheNextRewriteWritesItsOwnNewFile) {
  refuseWritingInTheSecondTurn();
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  allowWriting(true);
  test::RecordingDesktop next;
  EXPECT_EQ(test::drive(next, base_->folders, Encoding::codePage932(),
                        {.table = Table::aircraft, .key = "A", .newRecord = ""}),
            test::DrivenRewrite::done);
  EXPECT_EQ(bytes("aircraft.csv"), "JA8089,B744\r\n");
  EXPECT_EQ(bytes("aircraft.bak"), before_);
}

TEST_F(RewriteFaults, ABackupThatCannotBeDeletedEndsTheProgramWithTheTableUntouched) {
  test::writeBytes(data_ / "aircraft.bak", "old");
  refuseWritingInTheSecondTurn();
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  expectEnded("ERROR #70");
  EXPECT_EQ(bytes("aircraft.csv"), before_);
  EXPECT_EQ(bytes("aircraft.bak"), "old");
  EXPECT_EQ(bytes("aircraft.$$$"), "A,1\r\nJA8089,B748\r\n");
}

TEST_F(RewriteFaults, AFolderInThePlaceOfTheBackupEndsTheProgramWithTheTableUntouched) {
  fs::create_directory(data_ / "aircraft.bak");
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  expectEnded("ERROR #58");
  EXPECT_EQ(bytes("aircraft.csv"), before_);
}

TEST_F(RewriteFaults, AFolderThatRefusesNewFilesEndsTheProgramWithTheTableUntouched) {
  allowWriting(false);
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  expectEnded("ERROR #70");
  EXPECT_EQ(bytes("aircraft.csv"), before_);
  EXPECT_THAT(listFolder(data_).value(), ElementsAre("aircraft.csv"));
}

TEST_F(RewriteFaults, ATableThatCannotBeReadEndsTheProgram) {
  ASSERT_EQ(chmod((data_ / "aircraft.csv").c_str(), 0), 0);
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  expectEnded("ERROR #70");
  EXPECT_THAT(listFolder(data_).value(), ElementsAre("aircraft.csv"));
}

TEST_F(RewriteFaults, AFullDiskEndsTheProgramWithTheTableUntouchedAndNoRemains) {
  std::string large;
  while (large.size() < 1000000) large += "JA0000,B738\r\n";
  test::writeBytes(data_ / "aircraft.csv", large);
  test::writeBytes(data_ / "aircraft.bak", "old");
  {
    const test::FileSizeLimit limit(400000);
    EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  }
  expectEnded("ERROR #61");
  EXPECT_EQ(turns_.count, 1);
  EXPECT_EQ(bytes("aircraft.csv"), large);
  EXPECT_EQ(bytes("aircraft.bak"), "old");
  EXPECT_THAT(listFolder(data_).value(), ElementsAre("aircraft.bak", "aircraft.csv"));
}

TEST_F(RewriteFaults, ADiskThatIsFullAtTheLastByteIsNoticedToo) {
  {
    const test::FileSizeLimit limit(before_.size() - 1);
    EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  }
  expectEnded("ERROR #61");
  EXPECT_EQ(bytes("aircraft.csv"), before_);
  EXPECT_FALSE(fileExists(data_ / "aircraft.$$$"));
}

TEST_F(RewriteFaults, ANewFileThatVanishesBeforeItsRenameLeavesTheOldTableInTheBackup) {
  refuseWritingInTheSecondTurn();
  desktop_.onRetry = [&] {
    allowWriting(true);
    fs::remove(data_ / "aircraft.$$$");
    return true;
  };
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  EXPECT_THAT(desktop_.messages, ElementsAre(kRenameRefused, "ERROR #53"));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(bytes("aircraft.bak"), before_);
}

TEST_F(RewriteFaults, ATableThatVanishesBetweenTwoTriesIsReported) {
  refuseWritingInTheSecondTurn();
  desktop_.onRetry = [&] {
    allowWriting(true);
    fs::rename(data_ / "aircraft.csv", data_ / "elsewhere.csv");
    return true;
  };
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  EXPECT_THAT(desktop_.messages, ElementsAre(kRenameRefused, "ERROR #53"));
  EXPECT_EQ(bytes("elsewhere.csv"), before_);
  EXPECT_EQ(bytes("aircraft.$$$"), "A,1\r\nJA8089,B748\r\n");
}

TEST_F(RewriteFaults, ABackupThatAppearsInBetweenIsNotOverwritten) {
  refuseWritingInTheSecondTurn();
  desktop_.onRetry = [&] {
    allowWriting(true);
    test::writeBytes(data_ / "aircraft.bak", "somebody's");
    return true;
  };
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  EXPECT_THAT(desktop_.messages, ElementsAre(kRenameRefused, "ERROR #58"));
  EXPECT_EQ(bytes("aircraft.csv"), before_);
  EXPECT_EQ(bytes("aircraft.bak"), "somebody's");
}

TEST_F(RewriteFaults, TheTablesPermissionsCarryOver) {
  for (const mode_t mode : {0640U, 0600U, 0444U, 0664U}) {
    ASSERT_EQ(chmod((data_ / "aircraft.csv").c_str(), mode), 0);
    EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
    struct stat info {};
    ASSERT_EQ(stat((data_ / "aircraft.csv").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777U, mode);
  }
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(RewriteFaults, ARemainderOfAReadOnlyTablesRewriteIsNoObstacle) {
  test::writeBytes(data_ / "aircraft.$$$", "left over");
  ASSERT_EQ(chmod((data_ / "aircraft.$$$").c_str(), 0444), 0);
  ASSERT_EQ(chmod((data_ / "aircraft.csv").c_str(), 0444), 0);
  EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
  EXPECT_EQ(bytes("aircraft.csv"), "A,1\r\nJA8089,B748\r\n");
}

TEST_F(RewriteFaults, ALinkFromTheNewFileToTheTableCostsNoByte) {
  fs::create_symlink("aircraft.csv", data_ / "aircraft.$$$");
  EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
  EXPECT_EQ(bytes("aircraft.csv"), "A,1\r\nJA8089,B748\r\n");
  EXPECT_EQ(bytes("aircraft.bak"), before_);
}

TEST_F(RewriteFaults, ALinkThatCannotBeRemovedCostsNoByteEither) {
  fs::create_hard_link(data_ / "aircraft.csv", data_ / "aircraft.$$$");
  allowWriting(false);
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  expectEnded("ERROR #70");
  EXPECT_EQ(bytes("aircraft.csv"), before_);
}

TEST_F(RewriteFaults, AFolderInThePlaceOfTheTableEndsTheProgram) {
  fs::remove(data_ / "aircraft.csv");
  fs::create_directory(data_ / "aircraft.csv");
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  expectEnded("ERROR #53");
}

TEST_F(RewriteFaults, AMissingDataFolderEndsTheProgram) {
  fs::rename(data_, base_->path() / "moved");
  EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
  expectEnded("ERROR #76");
  fs::rename(base_->path() / "moved", data_);
}

TEST_F(RewriteFaults, AnInterruptedRewriteInAReadOnlyFolderStaysAsItIs) {
  fs::rename(data_ / "aircraft.csv", data_ / "aircraft.bak");
  test::writeBytes(data_ / "aircraft.$$$", "new");
  allowWriting(false);
  recoverTables(base_->folders);
  EXPECT_THAT(listFolder(data_).value(), ElementsAre("aircraft.$$$", "aircraft.bak"));
  allowWriting(true);
  recoverTables(base_->folders);
  EXPECT_THAT(listFolder(data_).value(), ElementsAre("aircraft.bak", "aircraft.csv"));
}

TEST_F(RewriteFaults, ATableThatShrinksOrVanishesWhileItIsScannedEndsTheScan) {
  std::string large;
  while (large.size() < 1000000) large += "JA0000,B738\r\n";
  for (const bool vanishes : {false, true}) {
    const fs::path table = data_ / "aircraft.csv";
    test::writeBytes(table, large);
    std::size_t lines = 0;
    const Status status = TableScanner::forEachLine(
        table, "JA0000", TableScanner::Anchor::lineStart, [&](std::string_view line) {
          EXPECT_TRUE(std::string_view("JA0000,B738").starts_with(line)) << line;
          if (++lines == 1 && vanishes) fs::remove(table);
          if (lines == 1 && !vanishes) fs::resize_file(table, 13);
          return TableScanner::Next::more;
        });
    EXPECT_TRUE(status.ok());
    EXPECT_GE(lines, 1U);
    EXPECT_LE(lines, large.size() / 13);
  }
}

}  // namespace
}  // namespace vel
