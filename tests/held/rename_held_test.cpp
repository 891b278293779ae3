// A rename while another program holds the file.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/helpers.h"
#include "tests/held/file_holder.h"
#include "tests/held/messages.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::FileHolder;
using test::kRenameRefused;
using test::readBytes;
using test::RecordingDesktop;
using test::TemporaryFolder;
using test::writeBytes;
using testing::ElementsAre;
using testing::IsEmpty;

class RenameHeldTest : public testing::TestWithParam<FileHolder::Shares> {
 protected:
  RenameHeldTest() { writeBytes(live_, "JA8089,B744\r\n"); }

  TemporaryFolder folder_;
  std::filesystem::path live_ = folder_ / "aircraft.csv";
  std::filesystem::path backup_ = folder_ / "aircraft.bak";
  RecordingDesktop desktop_;
};

INSTANTIATE_TEST_SUITE_P(OtherProgramShares, RenameHeldTest,
                         testing::Values(FileHolder::Shares::nothing, FileHolder::Shares::reading),
                         [](const auto& tested) {
                           return tested.param == FileHolder::Shares::nothing ? "Nothing"
                                                                              : "Reading";
                         });

TEST_P(RenameHeldTest, AHeldFileIsTheRealSharingError75) {
  const FileHolder holder(live_, GetParam());
  ASSERT_TRUE(holder.isHolding());
  EXPECT_EQ(MoveFileExW(live_.c_str(), backup_.c_str(), 0), 0);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
  const Status renamed = renameFile(live_, backup_);
  ASSERT_FALSE(renamed.ok());
  EXPECT_EQ(renamed.error().number, ErrorNumber::pathAccess);
  EXPECT_EQ(renamed.error().text(), "ERROR #75");
}

TEST_P(RenameHeldTest, RetryAfterTheOtherProgramLetGoCompletesTheRename) {
  FileHolder holder(live_, GetParam());
  ASSERT_TRUE(holder.isHolding());
  int asked = 0;
  desktop_.onRetry = [&] { return ++asked < 3 || holder.release(); };
  EXPECT_EQ(RenameWithRetry(desktop_, live_, backup_), RenameOutcome::renamed);
  EXPECT_THAT(desktop_.messages, ElementsAre(kRenameRefused, kRenameRefused, kRenameRefused));
  EXPECT_FALSE(desktop_.ended);
  EXPECT_EQ(readBytes(backup_), "JA8089,B744\r\n");
  EXPECT_FALSE(fileExists(live_));
}

TEST_P(RenameHeldTest, CancelEndsTheProgramAndLeavesTheFilesAsTheyAre) {
  FileHolder holder(live_, GetParam());
  ASSERT_TRUE(holder.isHolding());
  EXPECT_EQ(RenameWithRetry(desktop_, live_, backup_), RenameOutcome::programEnds);
  EXPECT_THAT(desktop_.messages, ElementsAre(kRenameRefused));
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 1);
  ASSERT_TRUE(holder.release());
  EXPECT_EQ(readBytes(live_), "JA8089,B744\r\n");
  EXPECT_FALSE(fileExists(backup_));
}

TEST_P(RenameHeldTest, ACrashOfTheOtherProgramLetsGoToo) {
  FileHolder holder(live_, GetParam());
  ASSERT_TRUE(holder.isHolding());
  desktop_.onRetry = [&] { return holder.crash(); };
  EXPECT_EQ(RenameWithRetry(desktop_, live_, backup_), RenameOutcome::renamed);
  EXPECT_THAT(desktop_.messages, ElementsAre(kRenameRefused));
}

TEST_P(RenameHeldTest, AnExistingTargetIsStillError58) {
  writeBytes(backup_, "old");
  RecordingDesktop desktop;
  EXPECT_EQ(RenameWithRetry(desktop, live_, backup_), RenameOutcome::programEnds);
  EXPECT_THAT(desktop.messages, ElementsAre("ERROR #58"));
}

TEST(HeldFile, ThatSharesNothingCannotBeReadAndIs70) {
  const TemporaryFolder folder;
  writeBytes(folder / "log", "x");
  const FileHolder holder(folder / "log", FileHolder::Shares::nothing);
  ASSERT_TRUE(holder.isHolding());
  const Result<InputFile> file = InputFile::open(folder / "log");
  ASSERT_FALSE(file.ok());
  EXPECT_EQ(file.error().number, ErrorNumber::permissionDenied);
  const Status removed = removeFile(folder / "log");
  ASSERT_FALSE(removed.ok());
  EXPECT_EQ(removed.error().number, ErrorNumber::permissionDenied);
}

TEST(HeldFile, ThatIsWrittenMeanwhileCanBeRead) {
  const TemporaryFolder folder;
  writeBytes(folder / "log", "one");
  const FileHolder decoder(folder / "log", FileHolder::Shares::reading);
  ASSERT_TRUE(decoder.isHolding());
  Result<InputFile> file = InputFile::open(folder / "log");
  ASSERT_TRUE(file.ok());
  char bytes[10];
  EXPECT_EQ(file->read(bytes, sizeof bytes).value(), 3U);
}

TEST(HeldFile, ThatIsReadHereDoesNotKeepOthersFromIt) {
  const TemporaryFolder folder;
  writeBytes(folder / "log", "one");
  const Result<InputFile> file = InputFile::open(folder / "log");
  ASSERT_TRUE(file.ok());
  HANDLE decoder = CreateFileW((folder / "log").c_str(), GENERIC_WRITE | DELETE,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                               OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(decoder, INVALID_HANDLE_VALUE) << GetLastError();
  CloseHandle(decoder);
}

}  // namespace
}  // namespace vel
