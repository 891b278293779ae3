// Links, pipes and devices in the place of files, groups and modes of files,
// and locks that other processes hold.

#include <csignal>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/file.h"
#include "core/platform.h"
#include "tests/support/test_files.h"
#include "tests/support/unprivileged_user.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using test::readBytes;
using test::TemporaryFolder;
using test::UnprivilegedUser;
using test::writeBytes;
using testing::ElementsAre;
using testing::IsEmpty;

struct stat infoOf(const fs::path& path) {
  struct stat info {};
  EXPECT_EQ(stat(path.c_str(), &info), 0) << path;
  return info;
}

// A child process that does something, says so, and lives until it is killed.
class OtherProcess {
 public:
  template <typename Work>
  explicit OtherProcess(Work work) {
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    process_ = fork();
    if (process_ == 0) {
      const char answer = work() ? 'y' : 'n';
      if (write(ready[1], &answer, 1) != 1) _exit(1);
      while (true) pause();
    }
    EXPECT_EQ(read(ready[0], &answer_, 1), 1);
    close(ready[0]);
    close(ready[1]);
  }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  ~OtherProcess() { crash(); }

  [[nodiscard]] bool succeeded() const { return answer_ == 'y'; }
  void crash() {
    if (process_ <= 0) return;
    EXPECT_EQ(kill(process_, SIGKILL), 0);
    EXPECT_EQ(waitpid(process_, nullptr, 0), process_);
    process_ = 0;
  }

 private:
  pid_t process_ = 0;
  char answer_ = 0;
};

TEST(RegularFiles, WhateverElseHasTheNameCountsAsMissing) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo((folder / "fifo.csv").c_str(), 0600), 0);
  fs::create_directory(folder / "folder.csv");
  fs::create_symlink("/dev/zero", folder / "zero.csv");
  fs::create_symlink("/dev/tty", folder / "terminal.csv");
  fs::create_symlink("fifo.csv", folder / "link.csv");
  fs::create_symlink("nowhere", folder / "dangling.csv");
  for (const char* name :
       {"fifo.csv", "folder.csv", "zero.csv", "terminal.csv", "link.csv", "dangling.csv"}) {
    const Result<InputFile> file = InputFile::open(folder / name);
    ASSERT_FALSE(file.ok()) << name;
    EXPECT_EQ(file.error().number, ErrorNumber::fileNotFound) << name;
    EXPECT_FALSE(fileExists(folder / name)) << name;
    EXPECT_EQ(findFile(folder.path(), name), std::nullopt) << name;
  }
  EXPECT_THAT(listFolder(folder.path()).value(), IsEmpty());
  FolderIndex index(folder.path());
  EXPECT_EQ(index.find("fifo.csv"), std::nullopt);
}

TEST(RegularFiles, ALinkToOneIsOne) {
  const TemporaryFolder folder;
  writeBytes(folder / "real.csv", "x");
  fs::create_symlink("real.csv", folder / "FLIGHT.csv");
  EXPECT_TRUE(InputFile::open(folder / "FLIGHT.csv").ok());
  EXPECT_THAT(listFolder(folder.path()).value(), ElementsAre("FLIGHT.csv", "real.csv"));
}

TEST(NewFiles, AreNeverMadeThroughALink) {
  const TemporaryFolder folder;
  writeBytes(folder / "precious", "untouched");
  for (const char* target : {"precious", "not there"}) {
    fs::create_symlink(target, folder / "FLIGHT.$$$");
    Result<OutputFile> file = OutputFile::create(folder / "FLIGHT.$$$");
    ASSERT_TRUE(file.ok());
    ASSERT_TRUE(file->write("new").ok());
    ASSERT_TRUE(file->finish().ok());
    EXPECT_FALSE(fs::is_symlink(folder / "FLIGHT.$$$"));
    EXPECT_EQ(readBytes(folder / "FLIGHT.$$$"), "new");
    ASSERT_TRUE(removeFile(folder / "FLIGHT.$$$").ok());
  }
  EXPECT_EQ(readBytes(folder / "precious"), "untouched");
  EXPECT_THAT(listFolder(folder.path()).value(), ElementsAre("precious"));
}

TEST(NewFiles, AreNotWrittenIntoAPipe) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo((folder / "temp.kml.part").c_str(), 0600), 0);
  ASSERT_TRUE(writeWholeFile(folder / "temp.kml", ".part", "kml").ok());
  EXPECT_EQ(readBytes(folder / "temp.kml"), "kml");
}

TEST(NewFiles, AHardLinkedFileKeepsItsOtherName) {
  const TemporaryFolder folder;
  writeBytes(folder / "other", "untouched");
  fs::create_hard_link(folder / "other", folder / "vel.env.new");
  ASSERT_TRUE(writeWholeFile(folder / "vel.env", ".new", "new").ok());
  EXPECT_EQ(readBytes(folder / "other"), "untouched");
}

TEST(WholeFilePosix, ATemporaryThatIsALinkCostsItsTargetNothing) {
  const TemporaryFolder folder;
  writeBytes(folder / "precious", "untouched");
  fs::create_symlink("precious", folder / "vel.env.new");
  ASSERT_TRUE(writeWholeFile(folder / "vel.env", ".new", "content").ok());
  EXPECT_EQ(readBytes(folder / "precious"), "untouched");
  EXPECT_FALSE(fs::is_symlink(folder / "vel.env"));
  EXPECT_EQ(readBytes(folder / "vel.env"), "content");
}

TEST(WholeFilePosix, ALinkStaysAndItsTargetIsWritten) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "vel");
  fs::create_directory(folder / "elsewhere");
  writeBytes(folder / "elsewhere" / "my.env", "old");
  fs::create_symlink("../elsewhere/second", folder / "vel" / "vel.env");
  fs::create_symlink("my.env", folder / "elsewhere" / "second");
  ASSERT_TRUE(writeWholeFile(folder / "vel" / "vel.env", ".new", "new").ok());
  EXPECT_EQ(fs::read_symlink(folder / "vel" / "vel.env"), "../elsewhere/second");
  EXPECT_EQ(fs::read_symlink(folder / "elsewhere" / "second"), "my.env");
  EXPECT_EQ(readBytes(folder / "elsewhere" / "my.env"), "new");
  EXPECT_THAT(listFolder(folder / "vel").value(), ElementsAre("vel.env"));
  EXPECT_THAT(listFolder(folder / "elsewhere").value(), ElementsAre("my.env", "second"));
}

TEST(WholeFilePosix, ALinkToAFileThatIsNotThereYetMakesIt) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "elsewhere");
  fs::create_symlink("elsewhere/my.env", folder / "vel.env");
  ASSERT_TRUE(writeWholeFile(folder / "vel.env", ".new", "new").ok());
  EXPECT_TRUE(fs::is_symlink(folder / "vel.env"));
  EXPECT_EQ(readBytes(folder / "elsewhere" / "my.env"), "new");
}

TEST(WholeFilePosix, ALinkToItselfIsAnErrorAndNoEndlessWork) {
  const TemporaryFolder folder;
  fs::create_symlink("vel.env", folder / "vel.env");
  EXPECT_EQ(linkTarget(folder / "vel.env"), folder / "vel.env");
  EXPECT_FALSE(InputFile::open(folder / "vel.env").ok());
}

TEST(WholeFilePosix, TheModeCarriesOver) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "");
  for (const mode_t mode : {0640U, 0600U, 0444U, 0666U}) {
    ASSERT_EQ(chmod((folder / "vel.env").c_str(), mode), 0);
    ASSERT_TRUE(writeWholeFile(folder / "vel.env", ".new", "x").ok());
    EXPECT_EQ(infoOf(folder / "vel.env").st_mode & 07777U, mode);
  }
}

TEST(WholeFilePosix, AMemberOfTheGroupKeepsTheGroup) {
  const bool privileged = geteuid() == 0;
  // A privileged user can become a member of any group for a while.
  const gid_t shared = privileged ? 4711 : getegid();
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "old");
  if (privileged) {
    ASSERT_EQ(setgroups(1, &shared), 0);
  }
  {
    const UnprivilegedUser user(folder.path());
    ASSERT_EQ(chown((folder / "vel.env").c_str(), geteuid(), shared), 0);
    ASSERT_EQ(chmod((folder / "vel.env").c_str(), 0664), 0);
    EXPECT_TRUE(writeWholeFile(folder / "vel.env", ".new", "new").ok());
  }
  if (privileged) {
    ASSERT_EQ(setgroups(0, nullptr), 0);
  }
  EXPECT_EQ(readBytes(folder / "vel.env"), "new");
  EXPECT_EQ(infoOf(folder / "vel.env").st_gid, shared);
  EXPECT_EQ(infoOf(folder / "vel.env").st_mode & 07777U, 0664U);
}

TEST(FolderLockPosix, AnotherProcessKeepsUsOutAndItsCrashLetsUsIn) {
  const TemporaryFolder folder;
  std::optional<FolderLock> held;
  OtherProcess other([&] {
    held = FolderLock::take(folder.path());
    return held.has_value();
  });
  ASSERT_TRUE(other.succeeded());
  EXPECT_FALSE(FolderLock::take(folder.path()).has_value());
  other.crash();
  EXPECT_TRUE(FolderLock::take(folder.path()).has_value());
}

TEST(FolderLockPosix, AReadOnlyFolderHoldsOneToo) {
  const TemporaryFolder folder;
  const UnprivilegedUser user(folder.path());
  ASSERT_EQ(chmod(folder.path().c_str(), 0555), 0);
  const auto lock = FolderLock::take(folder.path());
  EXPECT_TRUE(lock.has_value());
  EXPECT_EQ(chmod(folder.path().c_str(), 0755), 0);
}

TEST(InstanceLockPosix, TwoSessionsOfOneUserSeeEachOther) {
  const TemporaryFolder folder;
  const TemporaryFolder session;
  const TemporaryFolder anotherSession;
  const std::string key = toUtf8(folder.path());
  std::unique_ptr<platform::InstanceLock> held;
  OtherProcess other([&] {
    for (const char* name : {"XDG_RUNTIME_DIR", "XDG_STATE_HOME", "TMPDIR", "HOME"}) {
      if (setenv(name, session.path().c_str(), 1) != 0) return false;
    }
    auto lock = platform::lockInstance(key);
    if (lock) held = std::move(*lock);
    return held != nullptr;
  });
  ASSERT_TRUE(other.succeeded());
  const auto refused = platform::lockInstance(key);
  ASSERT_TRUE(refused.ok());
  EXPECT_EQ(*refused, nullptr);
}

}  // namespace
}  // namespace vel
