// A rename while another program holds the file.

#include <string>

#include <gtest/gtest.h>

#include "core/file.h"
#include "tests/held/file_holder.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::FileHolder;
using test::readBytes;
using test::TemporaryFolder;
using test::writeBytes;

class RenameHeldTest : public testing::TestWithParam<FileHolder::Shares> {
 protected:
  RenameHeldTest() { writeBytes(live_, "JA8089,B744\r\n"); }

  TemporaryFolder folder_;
  std::filesystem::path live_ = folder_ / "aircraft.csv";
  std::filesystem::path backup_ = folder_ / "aircraft.bak";
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

TEST_P(RenameHeldTest, AfterTheOtherProgramLetGoTheRenameSucceeds) {
  FileHolder holder(live_, GetParam());
  ASSERT_TRUE(holder.isHolding());
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(renameFile(live_, backup_).ok());
    EXPECT_TRUE(fileExists(live_));
    EXPECT_FALSE(fileExists(backup_));
  }
  ASSERT_TRUE(holder.release());
  EXPECT_TRUE(renameFile(live_, backup_).ok());
  EXPECT_EQ(readBytes(backup_), "JA8089,B744\r\n");
  EXPECT_FALSE(fileExists(live_));
}

TEST_P(RenameHeldTest, ACrashOfTheOtherProgramLetsGoToo) {
  FileHolder holder(live_, GetParam());
  ASSERT_TRUE(holder.isHolding());
  EXPECT_FALSE(renameFile(live_, backup_).ok());
  ASSERT_TRUE(holder.crash());
  EXPECT_TRUE(renameFile(live_, backup_).ok());
}

TEST_P(RenameHeldTest, AnExistingTargetIsStillError58) {
  writeBytes(backup_, "old");
  const Status renamed = renameFile(live_, backup_);
  ASSERT_FALSE(renamed.ok());
  EXPECT_EQ(renamed.error().text(), "ERROR #58");
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
