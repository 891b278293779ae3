// Files that are written whole, and the lock of a folder.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/file.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::readBytes;
using test::TemporaryFolder;
using test::writeBytes;
using testing::ElementsAre;

ErrorNumber numberOf(const Status& status) {
  return status.ok() ? ErrorNumber::none : status.error().number;
}

TEST(WholeFile, TakesThePlaceOfTheOldOneAndLeavesNothingBeside) {
  const TemporaryFolder folder;
  for (const std::string& content :
       {std::string("one"), std::string(1'000'000, 'x'), std::string()}) {
    ASSERT_TRUE(writeWholeFile(folder / "temp.kml", ".part", content).ok());
    EXPECT_EQ(readBytes(folder / "temp.kml"), content);
    EXPECT_THAT(listFolder(folder.path()).value(), ElementsAre("temp.kml"));
  }
}

TEST(WholeFile, IsWrittenOverWhatACrashLeft) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env.new", std::string(100'000, 'x'));
  ASSERT_TRUE(writeWholeFile(folder / "vel.env", ".new", "content").ok());
  EXPECT_EQ(readBytes(folder / "vel.env"), "content");
  EXPECT_THAT(listFolder(folder.path()).value(), ElementsAre("vel.env"));
}

TEST(WholeFile, AFailureLeavesTheOldOneAsItWas) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "old");
  std::filesystem::create_directories(folder / "vel.env.new" / "in the way");
  EXPECT_EQ(numberOf(writeWholeFile(folder / "vel.env", ".new", "new")),
            ErrorNumber::permissionDenied);
  EXPECT_EQ(readBytes(folder / "vel.env"), "old");
  EXPECT_EQ(numberOf(writeWholeFile(folder / "gone" / "vel.env", ".new", "new")),
            ErrorNumber::pathNotFound);
}

TEST(WholeFile, AFolderInItsPlaceStays) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "vel.env");
  EXPECT_FALSE(writeWholeFile(folder / "vel.env", ".new", "new").ok());
  EXPECT_TRUE(std::filesystem::is_directory(folder / "vel.env"));
  EXPECT_FALSE(fileExists(folder / "vel.env.new"));
}

TEST(WholeFile, WhatACrashLeftIsRemoved) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "old");
  writeBytes(folder / "vel.env.new", "half");
  removeLeftOver(folder / "vel.env", ".new");
  removeLeftOver(folder / "temp.kml", ".part");
  EXPECT_EQ(readBytes(folder / "vel.env"), "old");
  EXPECT_THAT(listFolder(folder.path()).value(), ElementsAre("vel.env"));
}

TEST(FolderLockTest, IsHeldByOneUntilItIsLetGo) {
  const TemporaryFolder folder;
  auto first = FolderLock::take(folder.path());
  ASSERT_TRUE(first.has_value());
  EXPECT_FALSE(FolderLock::take(folder.path()).has_value());
  first.reset();
  const auto second = FolderLock::take(folder.path());
  EXPECT_TRUE(second.has_value());
  EXPECT_FALSE(FolderLock::take(folder.path()).has_value());
}

TEST(FolderLockTest, TwoFoldersHaveTwo) {
  const TemporaryFolder here;
  const TemporaryFolder there;
  const auto first = FolderLock::take(here.path());
  EXPECT_TRUE(FolderLock::take(there.path()).has_value());
  EXPECT_FALSE(FolderLock::take(here.path()).has_value());
}

TEST(FolderLockTest, LeavesNothingInTheFolder) {
  const TemporaryFolder folder;
  ASSERT_TRUE(FolderLock::take(folder.path()).has_value());
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(FolderLockTest, AFolderThatCannotHoldOneIsUsedWithout) {
  const TemporaryFolder folder;
  EXPECT_TRUE(FolderLock::take(folder / "gone").has_value());
  EXPECT_TRUE(FolderLock::take(folder / "gone").has_value());
}

}  // namespace
}  // namespace vel
