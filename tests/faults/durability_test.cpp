#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/file.h"
#include "tables/rewrite.h"
#include "tests/support/driven_rewrite.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace {

/// What the program asked of the system while a test was listening, and the
/// call that is to fail.
struct SystemCalls {
  bool listening = false;
  std::vector<std::string> seen;
  std::string failing;  ///< such as "fsync aircraft.$$$"
  int code = 0;

  /// True when the call is to fail.
  bool fails(const std::string& call) {
    if (!listening) return false;
    seen.push_back(call);
    if (call != failing) return false;
    errno = code;
    return true;
  }
};

SystemCalls calls;

std::string nameOf(int descriptor) {
  std::error_code error;
  const auto link = "/proc/self/fd/" + std::to_string(descriptor);
  return std::filesystem::read_symlink(link, error).filename().string();
}

std::string nameOf(const char* path) { return std::filesystem::path(path).filename().string(); }

}  // namespace

extern "C" {
ssize_t __real_write(int descriptor, const void* data, size_t size);
int __real_fsync(int descriptor);
int __real_close(int descriptor);
int __real_fchmod(int descriptor, mode_t mode);
int __real_renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned int flags);

ssize_t __wrap_write(int descriptor, const void* data, size_t size) {
  return calls.fails("write " + nameOf(descriptor)) ? -1 : __real_write(descriptor, data, size);
}

int __wrap_fsync(int descriptor) {
  return calls.fails("fsync " + nameOf(descriptor)) ? -1 : __real_fsync(descriptor);
}

int __wrap_close(int descriptor) {
  // As the system does it: the descriptor is closed, also where this fails.
  const bool fails = calls.fails("close " + nameOf(descriptor));
  const int code = errno;
  const int closed = __real_close(descriptor);
  if (fails) errno = code;
  return fails ? -1 : closed;
}

int __wrap_fchmod(int descriptor, mode_t mode) {
  return calls.fails("fchmod " + nameOf(descriptor)) ? -1 : __real_fchmod(descriptor, mode);
}

int __wrap_renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned int flags) {
  if (calls.fails("rename " + nameOf(from) + " " + nameOf(to))) return -1;
  return __real_renameat2(fromFolder, from, toFolder, to, flags);
}
}

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Durability : public testing::Test {
 protected:
  void SetUp() override {
    base_.writeData("aircraft.csv", {"A,1", "JA8089,B744"});
    before_ = bytes("aircraft.csv");
    calls = {};
  }
  void TearDown() override { calls = {}; }

  test::DrivenRewrite rewrite() {
    calls.listening = true;
    const test::DrivenRewrite outcome =
        test::drive(desktop_, base_.folders, Encoding::codePage932(),
                    {.table = Table::aircraft, .key = "JA8089", .newRecord = "JA8089,B748"});
    calls.listening = false;
    return outcome;
  }
  void expectFailure(const std::string& call, int code, const std::string& message) {
    calls.failing = call;
    calls.code = code;
    EXPECT_EQ(rewrite(), test::DrivenRewrite::programEnds);
    EXPECT_EQ(std::count(calls.seen.begin(), calls.seen.end(), call), 1);
    EXPECT_THAT(desktop_.messages, ElementsAre(message));
    EXPECT_EQ(desktop_.exitStatus, 1);
  }
  void expectTableUntouched() {
    EXPECT_EQ(bytes("aircraft.csv"), before_);
    EXPECT_THAT(listFolder(base_.folders.data).value(), ElementsAre("aircraft.csv"));
  }
  [[nodiscard]] std::string bytes(const char* name) const {
    return test::readBytes(base_.folders.data / name);
  }

  test::TemporaryBase base_;
  test::RecordingDesktop desktop_;
  std::string before_;
};

TEST_F(Durability, TheNewFileIsOnTheDiskBeforeTheFirstRenameAndTheFolderAfterTheLast) {
  EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
  EXPECT_THAT(
      calls.seen,
      ElementsAre("fchmod aircraft.$$$", "write aircraft.$$$", "fsync aircraft.$$$",
                  "close aircraft.$$$", "close aircraft.csv", "rename aircraft.csv aircraft.bak",
                  "rename aircraft.$$$ aircraft.csv", "fsync data", "close data",
                  // the lock
                  "close data"));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(Durability, AFullDiskWhileWriting) {
  expectFailure("write aircraft.$$$", ENOSPC, "ERROR #61");
  expectTableUntouched();
}

TEST_F(Durability, AQuotaThatIsUsedUp) {
  expectFailure("write aircraft.$$$", EDQUOT, "ERROR #61");
  expectTableUntouched();
}

TEST_F(Durability, ABrokenDiskWhileFlushing) {
  expectFailure("fsync aircraft.$$$", EIO, "ERROR #57");
  expectTableUntouched();
}

TEST_F(Durability, AFullServerNoticedOnlyWhenTheFileIsClosed) {
  expectFailure("close aircraft.$$$", ENOSPC, "ERROR #61");
  expectTableUntouched();
}

TEST_F(Durability, PermissionsThatCannotBeCarriedOverAreNoReasonToFail) {
  calls.failing = "fchmod aircraft.$$$";
  calls.code = EPERM;
  EXPECT_EQ(rewrite(), test::DrivenRewrite::done);
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(bytes("aircraft.csv"), "A,1\r\nJA8089,B748\r\n");
}

TEST_F(Durability, ABrokenDiskWhileTheFolderIsFlushed) {
  expectFailure("fsync data", EIO, "ERROR #57");
}

TEST_F(Durability, ABrokenDiskAtTheFirstRename) {
  expectFailure("rename aircraft.csv aircraft.bak", EIO, "ERROR #57");
  EXPECT_EQ(bytes("aircraft.csv"), before_);
  EXPECT_EQ(bytes("aircraft.$$$"), "A,1\r\nJA8089,B748\r\n");
}

TEST_F(Durability, TheLastRenameIsNotTriedAgain) {
  expectFailure("rename aircraft.$$$ aircraft.csv", EACCES, "ERROR #75");
  EXPECT_EQ(bytes("aircraft.bak"), before_);
  EXPECT_EQ(bytes("aircraft.$$$"), "A,1\r\nJA8089,B748\r\n");
  EXPECT_FALSE(fileExists(base_.folders.data / "aircraft.csv"));
}

TEST_F(Durability, AProgramThatEndedBetweenTheRenamesFindsTheNewTableAtItsNextStart) {
  expectFailure("rename aircraft.$$$ aircraft.csv", EACCES, "ERROR #75");
  calls.failing.clear();
  calls.seen.clear();
  calls.listening = true;
  recoverTables(base_.folders);
  EXPECT_THAT(calls.seen,
              ElementsAre("rename aircraft.$$$ aircraft.csv", "fsync data", "close data",
                          // the lock
                          "close data"));
  EXPECT_EQ(bytes("aircraft.csv"), "A,1\r\nJA8089,B748\r\n");
  EXPECT_EQ(bytes("aircraft.bak"), before_);
}

}  // namespace
}  // namespace vel
