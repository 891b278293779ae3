// Tables that are links, and what carries over from the old file to the new.

#include <array>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/file.h"
#include "tables/tables.h"
#include "tests/support/driven_rewrite.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kBefore = "A,1\r\nJA8089,B744\r\n";
constexpr const char* kAfter = "A,1\r\nJA8089,B748\r\n";

class RewriteLinks : public testing::Test {
 protected:
  RewriteLinks() { fs::create_directories(master_); }

  test::DrivenRewrite rewrite() {
    return test::drive(desktop_, base_.folders, Encoding::codePage932(),
                       equipmentEdit("JA8089", "B748"));
  }
  void expectDone() {
    EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
    EXPECT_THAT(desktop_.messages, IsEmpty());
  }
  [[nodiscard]] static std::string bytes(const fs::path& path) { return test::readBytes(path); }

  test::TemporaryBase base_;
  fs::path data_ = base_.folders.data;
  fs::path master_ = base_.path() / "master";
  test::RecordingDesktop desktop_;
};

TEST_F(RewriteLinks, ALinkedTableIsRewrittenAtItsTargetsPlaceAndTheLinkStays) {
  for (const bool absolute : {false, true}) {
    SCOPED_TRACE(absolute);
    fs::remove(data_ / "aircraft.csv");
    test::writeBytes(master_ / "aircraft.csv", kBefore);
    fs::create_symlink(absolute ? master_ / "aircraft.csv" : fs::path("../master/aircraft.csv"),
                       data_ / "aircraft.csv");
    expectDone();
    EXPECT_TRUE(fs::is_symlink(data_ / "aircraft.csv"));
    EXPECT_FALSE(fs::is_symlink(master_ / "aircraft.csv"));
    EXPECT_EQ(bytes(master_ / "aircraft.csv"), kAfter);
    EXPECT_EQ(bytes(master_ / "aircraft.bak"), kBefore);
    EXPECT_FALSE(fs::is_symlink(master_ / "aircraft.bak"));
    EXPECT_THAT(listFolder(data_).value(), ElementsAre("aircraft.csv"));
    EXPECT_THAT(listFolder(master_).value(), ElementsAre("aircraft.bak", "aircraft.csv"));
    const Tables tables(base_.folders, Encoding::codePage932());
    EXPECT_EQ(tables.equipmentOfLastLine("JA8089").value(), "B748");
  }
}

TEST_F(RewriteLinks, ATargetOfAnotherNameHasItsFilesUnderThatName) {
  test::writeBytes(master_ / "fleet.csv", kBefore);
  test::writeBytes(master_ / "aircraft.bak", "of another table");
  fs::create_symlink("fleet.csv", master_ / "link.csv");
  fs::create_symlink(master_ / "link.csv", data_ / "aircraft.csv");
  expectDone();
  EXPECT_EQ(bytes(master_ / "fleet.csv"), kAfter);
  EXPECT_EQ(bytes(master_ / "fleet.bak"), kBefore);
  EXPECT_EQ(bytes(master_ / "aircraft.bak"), "of another table");
  EXPECT_TRUE(fs::is_symlink(master_ / "link.csv"));
  EXPECT_TRUE(fs::is_symlink(data_ / "aircraft.csv"));
}

TEST_F(RewriteLinks, ALinkedTableThatWasCutOffIsFinishedAtItsTargetsPlace) {
  test::writeBytes(master_ / "aircraft.$$$", kAfter);
  test::writeBytes(master_ / "aircraft.bak", kBefore);
  fs::create_symlink(master_ / "aircraft.csv", data_ / "aircraft.csv");
  recoverTables(base_.folders);
  EXPECT_TRUE(fs::is_symlink(data_ / "aircraft.csv"));
  EXPECT_EQ(bytes(master_ / "aircraft.csv"), kAfter);
  EXPECT_THAT(listFolder(master_).value(), ElementsAre("aircraft.bak", "aircraft.csv"));
}

TEST_F(RewriteLinks, ALinkInThePlaceOfTheBackupIsReplacedAndNotFollowed) {
  for (const char* target : {"nowhere", "precious"}) {
    SCOPED_TRACE(target);
    test::writeBytes(data_ / "precious", "kept");
    test::writeBytes(data_ / "aircraft.csv", kBefore);
    fs::remove(data_ / "aircraft.bak");
    fs::create_symlink(target, data_ / "aircraft.bak");
    expectDone();
    EXPECT_FALSE(fs::is_symlink(data_ / "aircraft.bak"));
    EXPECT_EQ(bytes(data_ / "aircraft.bak"), kBefore);
    EXPECT_EQ(bytes(data_ / "aircraft.csv"), kAfter);
    EXPECT_EQ(bytes(data_ / "precious"), "kept");
    EXPECT_FALSE(fs::exists(data_ / "nowhere"));
  }
}

TEST_F(RewriteLinks, ALinkInThePlaceOfTheNewFileIsReplacedAndNotFollowed) {
  for (const char* target : {"nowhere", "precious"}) {
    SCOPED_TRACE(target);
    test::writeBytes(data_ / "precious", "kept");
    test::writeBytes(data_ / "aircraft.csv", kBefore);
    fs::create_symlink(target, data_ / "aircraft.$$$");
    expectDone();
    EXPECT_FALSE(fs::is_symlink(data_ / "aircraft.csv"));
    EXPECT_EQ(bytes(data_ / "aircraft.csv"), kAfter);
    EXPECT_EQ(bytes(data_ / "precious"), "kept");
    EXPECT_FALSE(fs::exists(data_ / "nowhere"));
  }
}

TEST_F(RewriteLinks, TheTablesGroupAndModeCarryOver) {
  test::writeBytes(data_ / "aircraft.csv", kBefore);
  // Any group for a privileged user, one of the own for others.
  gid_t group = 4321;
  if (geteuid() != 0) {
    std::array<gid_t, 64> own{};
    group = getgroups(static_cast<int>(own.size()), own.data()) > 0 ? own[0] : getegid();
  }
  ASSERT_EQ(chown((data_ / "aircraft.csv").c_str(), static_cast<uid_t>(-1), group), 0);
  ASSERT_EQ(chmod((data_ / "aircraft.csv").c_str(), 0664), 0);
  expectDone();
  struct stat info {};
  ASSERT_EQ(stat((data_ / "aircraft.csv").c_str(), &info), 0);
  EXPECT_EQ(info.st_gid, group);
  EXPECT_EQ(info.st_mode & 07777U, 0664U);
}

}  // namespace
}  // namespace vel
