// Signals interrupt calls of the system, and some calls are refused: what the
// file primitives make of it.

#include <cerrno>
#include <cstdarg>
#include <map>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/file.h"
#include "core/platform.h"
#include "tables/rewrite.h"
#include "tests/support/test_files.h"

namespace {

/// Calls of the system pass through here while a test is listening.
struct SystemCalls {
  bool listening = false;
  bool interrupts = false;              ///< every second call of each name fails so
  std::map<std::string, int> seen;      ///< how often each was called
  std::map<std::string, int> refusals;  ///< the code with which it fails

  /// True when the call is to fail.
  bool fails(const std::string& call) {
    if (!listening) return false;
    const int count = ++seen[call];
    if (const auto refusal = refusals.find(call); refusal != refusals.end()) {
      errno = refusal->second;
      return true;
    }
    if (!interrupts || count % 2 == 0) return false;
    errno = EINTR;
    return true;
  }
};

SystemCalls calls;

}  // namespace

extern "C" {
int __real_open(const char* path, int flags, ...);
ssize_t __real_read(int descriptor, void* data, size_t size);
ssize_t __real_write(int descriptor, const void* data, size_t size);
int __real_fsync(int descriptor);
int __real_close(int descriptor);
int __real_fchmod(int descriptor, mode_t mode);
int __real_fchown(int descriptor, uid_t owner, gid_t group);
int __real_renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned int flags);
int __real_rename(const char* from, const char* to);
int __real_unlink(const char* path);
int __real_fcntl(int descriptor, int command, ...);
int __real_flock(int descriptor, int operation);
int __real_mkdir(const char* path, mode_t mode);

int __wrap_open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return calls.fails("open") ? -1 : __real_open(path, flags, mode);
}
ssize_t __wrap_read(int descriptor, void* data, size_t size) {
  return calls.fails("read") ? -1 : __real_read(descriptor, data, size);
}
ssize_t __wrap_write(int descriptor, const void* data, size_t size) {
  return calls.fails("write") ? -1 : __real_write(descriptor, data, size);
}
int __wrap_fsync(int descriptor) { return calls.fails("fsync") ? -1 : __real_fsync(descriptor); }
int __wrap_close(int descriptor) {
  // As the system does it: the descriptor is closed, also where this fails.
  const bool fails = calls.fails("close");
  const int code = errno;
  const int closed = __real_close(descriptor);
  if (fails) errno = code;
  return fails ? -1 : closed;
}
int __wrap_fchmod(int descriptor, mode_t mode) {
  return calls.fails("fchmod") ? -1 : __real_fchmod(descriptor, mode);
}
int __wrap_fchown(int descriptor, uid_t owner, gid_t group) {
  return calls.fails("fchown") ? -1 : __real_fchown(descriptor, owner, group);
}
int __wrap_renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned int flags) {
  return calls.fails("renameat2") ? -1 : __real_renameat2(fromFolder, from, toFolder, to, flags);
}
int __wrap_rename(const char* from, const char* to) {
  return calls.fails("rename") ? -1 : __real_rename(from, to);
}
int __wrap_unlink(const char* path) { return calls.fails("unlink") ? -1 : __real_unlink(path); }
int __wrap_fcntl(int descriptor, int command, ...) {
  va_list rest;
  va_start(rest, command);
  void* argument = va_arg(rest, void*);
  va_end(rest);
  return calls.fails("fcntl") ? -1 : __real_fcntl(descriptor, command, argument);
}
int __wrap_flock(int descriptor, int operation) {
  return calls.fails("flock") ? -1 : __real_flock(descriptor, operation);
}
int __wrap_mkdir(const char* path, mode_t mode) {
  return calls.fails("mkdir") ? -1 : __real_mkdir(path, mode);
}
}

namespace vel {
namespace {

using test::readBytes;
using test::writeBytes;
using testing::ElementsAre;
using testing::Key;
using testing::UnorderedElementsAre;

class Interrupted : public testing::Test {
 protected:
  void SetUp() override { calls = {}; }
  void TearDown() override { calls = {}; }

  template <typename Work>
  auto listening(Work work) {
    calls.listening = true;
    auto result = work();
    calls.listening = false;
    return result;
  }

  test::TemporaryFolder folder_;
};

TEST_F(Interrupted, EveryCallOfAWriteIsMadeAgain) {
  writeBytes(folder_ / "vel.env", "old");
  calls.interrupts = true;
  EXPECT_TRUE(listening([&] { return writeWholeFile(folder_ / "vel.env", ".new", "new"); }).ok());
  EXPECT_THAT(calls.seen,
              UnorderedElementsAre(Key("unlink"), Key("open"), Key("fchown"), Key("fchmod"),
                                   Key("write"), Key("fsync"), Key("close"), Key("rename")));
  EXPECT_EQ(readBytes(folder_ / "vel.env"), "new");
  EXPECT_THAT(listFolder(folder_.path()).value(), ElementsAre("vel.env"));
}

TEST_F(Interrupted, ARenameIsMadeAgain) {
  writeBytes(folder_ / "a", "A");
  calls.interrupts = true;
  EXPECT_TRUE(listening([&] { return renameFile(folder_ / "a", folder_ / "b"); }).ok());
  EXPECT_EQ(calls.seen["renameat2"], 2);
  EXPECT_EQ(readBytes(folder_ / "b"), "A");
}

TEST_F(Interrupted, AReadIsMadeAgain) {
  writeBytes(folder_ / "log", "text");
  calls.interrupts = true;
  const std::string text = listening([&] {
    Result<InputFile> file = InputFile::open(folder_ / "log");
    char bytes[10];
    const Result<std::size_t> size = file ? file->read(bytes, sizeof bytes) : file.error();
    return size ? std::string(bytes, *size) : std::string("failed");
  });
  EXPECT_EQ(text, "text");
  EXPECT_EQ(calls.seen["open"], 2);
  EXPECT_EQ(calls.seen["read"], 2);
}

TEST_F(Interrupted, BothLocksAreAskedForAgain) {
  calls.interrupts = true;
  const bool locked = listening([&] {
    const auto folderLock = FolderLock::take(folder_.path());
    const bool excludes = !FolderLock::take(folder_.path()).has_value();
    const auto lock = platform::lockInstance(toUtf8(folder_.path()));
    return folderLock.has_value() && excludes && lock.ok() && *lock != nullptr;
  });
  EXPECT_TRUE(locked);
  EXPECT_GE(calls.seen["flock"], 2);
  EXPECT_GE(calls.seen["fcntl"], 2);
}

TEST_F(Interrupted, AWholeRewriteOfATableIsMade) {
  const test::TemporaryBase base;
  base.writeData("FLIGHT.csv", {"JL0001,RJTTKSFO,-", "NH0002,RJAAKLAX,old"});
  writeBytes(base.folders.data / "FLIGHT.bak", "older");
  const TableEdit edit = {
      .table = Table::flight, .key = "NH0002", .newRecord = "NH0002,RJTTKLAX,-"};
  calls.interrupts = true;
  const RewriteOutcome outcome = listening([&] {
    ReferenceTableRewrite rewrite(base.folders, Encoding::codePage932(), edit);
    RewriteOutcome last = rewrite.next();
    while (last == RewriteOutcome::more) last = rewrite.next();
    return last;
  });
  EXPECT_EQ(outcome, RewriteOutcome::done);
  EXPECT_EQ(readBytes(base.folders.data / "FLIGHT.csv"),
            "JL0001,RJTTKSFO,-\r\nNH0002,RJTTKLAX,-\r\n");
  EXPECT_EQ(readBytes(base.folders.data / "FLIGHT.bak"),
            "JL0001,RJTTKSFO,-\r\nNH0002,RJAAKLAX,old\r\n");
  EXPECT_THAT(listFolder(base.folders.data).value(), ElementsAre("FLIGHT.bak", "FLIGHT.csv"));
  for (const char* call : {"open", "read", "write", "fsync", "close", "unlink", "renameat2",
                           "flock", "fchown", "fchmod"}) {
    EXPECT_GE(calls.seen[call], 2) << call;
  }
}

TEST_F(Interrupted, AFolderWithoutLocksIsUsedWithout) {
  for (const int code : {ENOLCK, EOPNOTSUPP, EINVAL, EBADF}) {
    calls.refusals = {{"flock", code}};
    const bool both = listening([&] {
      const auto first = FolderLock::take(folder_.path());
      return first.has_value() && FolderLock::take(folder_.path()).has_value();
    });
    EXPECT_TRUE(both) << code;
  }
}

TEST_F(Interrupted, GroupAndModeThatAreRefusedCostNothingElse) {
  writeBytes(folder_ / "vel.env", "old");
  calls.refusals = {{"fchown", EPERM}, {"fchmod", EPERM}};
  EXPECT_TRUE(listening([&] { return writeWholeFile(folder_ / "vel.env", ".new", "new"); }).ok());
  EXPECT_EQ(calls.seen["fchown"], 1);
  EXPECT_EQ(calls.seen["fchmod"], 1);
  EXPECT_EQ(readBytes(folder_ / "vel.env"), "new");
}

TEST_F(Interrupted, AGroupThatCannotBeKeptDoesNotCostTheMode) {
  writeBytes(folder_ / "vel.env", "old");
  ASSERT_EQ(chmod((folder_ / "vel.env").c_str(), 0640), 0);
  calls.refusals = {{"fchown", EPERM}};
  EXPECT_TRUE(listening([&] { return writeWholeFile(folder_ / "vel.env", ".new", "new"); }).ok());
  struct stat info {};
  ASSERT_EQ(stat((folder_ / "vel.env").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777U, 0640U);
}

TEST_F(Interrupted, OnlyAFileSystemThatCannotFlushAFolderIsLeftAtThat) {
  for (const auto& [code, number] :
       {std::pair(EIO, ErrorNumber::deviceIo), std::pair(ENOSPC, ErrorNumber::diskFull),
        std::pair(EINVAL, ErrorNumber::none), std::pair(EOPNOTSUPP, ErrorNumber::none)}) {
    calls.refusals = {{"fsync", code}};
    const Status flushed = listening([&] { return flushFolder(folder_.path()); });
    EXPECT_EQ(flushed.ok() ? ErrorNumber::none : flushed.error().number, number) << code;
  }
}

TEST_F(Interrupted, AFullDiskLeavesTheOldFileAndNothingBeside) {
  for (const char* call : {"write", "fsync", "close"}) {
    writeBytes(folder_ / "vel.env", "old");
    calls.refusals = {{call, ENOSPC}};
    const Status written =
        listening([&] { return writeWholeFile(folder_ / "vel.env", ".new", "new"); });
    ASSERT_FALSE(written.ok()) << call;
    EXPECT_EQ(written.error().number, ErrorNumber::diskFull) << call;
    EXPECT_EQ(readBytes(folder_ / "vel.env"), "old") << call;
    EXPECT_THAT(listFolder(folder_.path()).value(), ElementsAre("vel.env")) << call;
  }
}

}  // namespace
}  // namespace vel
