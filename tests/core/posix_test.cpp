// What only this platform can do to a file: permissions of a folder, a limit
// that stands for a full disk, names that differ in case only, pipes. Each test
// runs as an ordinary user, also where the tests themselves are run by root.

#include <chrono>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/file.h"
#include "core/folders.h"
#include "core/helpers.h"
#include "core/platform.h"
#include "core/settings.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "tests/support/unprivileged_user.h"

namespace vel {
namespace {

using test::readBytes;
using test::RecordingDesktop;
using test::TemporaryFolder;
using test::writeBytes;
using testing::ElementsAre;

mode_t modeOf(const std::filesystem::path& path) {
  struct stat info {};
  EXPECT_EQ(stat(path.c_str(), &info), 0) << path;
  return info.st_mode & 07777;
}

TEST(RenameFilePosix, ARefusalIsError75AndLeavesTheFilesUntilAccessIsGranted) {
  const TemporaryFolder folder;
  writeBytes(folder / "a.csv", "x");
  const test::UnprivilegedUser user(folder.path());
  ASSERT_EQ(chmod(folder.path().c_str(), 0555), 0);
  for (int i = 0; i < 3; ++i) {
    const Status refused = renameFile(folder / "a.csv", folder / "a.bak");
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().text(), "ERROR #75");
    EXPECT_THAT(listFolder(folder.path()).value(), ElementsAre("a.csv"));
  }
  EXPECT_EQ(chmod(folder.path().c_str(), 0755), 0);
  EXPECT_TRUE(renameFile(folder / "a.csv", folder / "a.bak").ok());
  EXPECT_EQ(readBytes(folder / "a.bak"), "x");
}

TEST(SettingsPosix, AFullDiskNeverCostsTheOldSettings) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "\"env_Config\",9\r\n");
  for (const rlim_t room : {rlim_t{0}, rlim_t{20}, rlim_t{300}}) {
    Status saved;
    {
      const test::FileSizeLimit full(room);
      saved = SaveEnv(folder / "vel.env", Encoding::codePage932(), Settings());
    }
    ASSERT_FALSE(saved.ok()) << room;
    EXPECT_EQ(saved.error().text(), "ERROR #61") << room;
    EXPECT_EQ(readBytes(folder / "vel.env"), "\"env_Config\",9\r\n") << room;
    EXPECT_THAT(listFolder(folder.path()).value(), ElementsAre("vel.env")) << room;
  }
}

TEST(SettingsPosix, AFolderThatMayNotBeWrittenKeepsTheOldSettings) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "\"env_Config\",9\r\n");
  const test::UnprivilegedUser user(folder.path());
  ASSERT_EQ(chmod(folder.path().c_str(), 0555), 0);
  const Status saved = SaveEnv(folder / "vel.env", Encoding::codePage932(), Settings());
  EXPECT_EQ(chmod(folder.path().c_str(), 0755), 0);
  ASSERT_FALSE(saved.ok());
  EXPECT_EQ(saved.error().text(), "ERROR #70");
  EXPECT_EQ(readBytes(folder / "vel.env"), "\"env_Config\",9\r\n");
}

TEST(SettingsPosix, TheFileKeepsItsPermissions) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "");
  ASSERT_EQ(chmod((folder / "vel.env").c_str(), 0640), 0);
  ASSERT_TRUE(SaveEnv(folder / "vel.env", Encoding::codePage932(), Settings()).ok());
  EXPECT_EQ(modeOf(folder / "vel.env"), mode_t{0640});
}

TEST(SettingsPosix, AFileThatMayNotBeReadIsNotOverwritten) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "\"env_Config\",9\r\n");
  const test::UnprivilegedUser user(folder.path());
  ASSERT_EQ(chmod((folder / "vel.env").c_str(), 0), 0);
  RecordingDesktop desktop;
  Settings settings;
  const Encoding encoding = Encoding::codePage932();
  const Status loaded = LoadEnv(desktop, folder / "vel.env", encoding, {}, settings);
  EXPECT_FALSE(loaded.ok());
  EXPECT_EQ(settings.env_Config, 0);
  // It stays so, also where it could be read by now.
  ASSERT_EQ(chmod((folder / "vel.env").c_str(), 0600), 0);
  EXPECT_FALSE(SaveEnv(folder / "vel.env", encoding, settings).ok());
  EXPECT_EQ(readBytes(folder / "vel.env"), "\"env_Config\",9\r\n");
}

TEST(SettingsPosix, ALinkThatLeadsNowhereIsNoFileYet) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink("my.env", folder / "vel.env");
  RecordingDesktop desktop;
  Settings settings;
  const Encoding encoding = Encoding::codePage932();
  EXPECT_TRUE(LoadEnv(desktop, folder / "vel.env", encoding, {}, settings).ok());
  EXPECT_TRUE(SaveEnv(folder / "vel.env", encoding, settings).ok());
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "vel.env"));
  EXPECT_TRUE(fileExists(folder / "my.env"));
}

TEST(FoldersPosix, TheUsualNameComesFirst) {
  const TemporaryFolder station;
  for (const char* name : {"Data", "data", "DATA", "Logs", "LOGS"}) {
    std::filesystem::create_directory(station / name);
  }
  EXPECT_EQ(Folders::of(station / "vel").data, station / "data");
  EXPECT_EQ(Folders::of(station / "vel").logs, station / "LOGS");
  writeBytes(station / "PICS", "a file is no folder");
  EXPECT_EQ(Folders::of(station / "vel").pics, station / "pics");
}

TEST(OutputFilePosix, AFullDiskIs61) {
  const TemporaryFolder folder;
  Status written;
  Status finished;
  {
    const test::FileSizeLimit full(100'000);
    Result<OutputFile> file = OutputFile::create(folder / "FLIGHT.$$$");
    ASSERT_TRUE(file.ok());
    written = file->write(std::string(1'000'000, 'x'));
    ASSERT_TRUE(file->write("some more").ok()) << "still in the buffer";
    finished = file->finish();
  }
  ASSERT_FALSE(written.ok());
  EXPECT_EQ(written.error().number, ErrorNumber::diskFull);
  ASSERT_FALSE(finished.ok());
  EXPECT_EQ(finished.error().number, ErrorNumber::diskFull);
}

TEST(InputFilePosix, AFileThatMayNotBeReadIs70) {
  const TemporaryFolder folder;
  writeBytes(folder / "log", "x");
  const test::UnprivilegedUser user(folder.path());
  ASSERT_EQ(chmod((folder / "log").c_str(), 0), 0);
  const Result<InputFile> file = InputFile::open(folder / "log");
  ASSERT_FALSE(file.ok());
  EXPECT_EQ(file.error().number, ErrorNumber::permissionDenied);
}

TEST(InputFilePosix, APipeIsRefusedInsteadOfWaitedFor) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo((folder / "20261120_list.csv").c_str(), 0600), 0);
  const Result<InputFile> file = InputFile::open(folder / "20261120_list.csv");
  ASSERT_FALSE(file.ok());
  EXPECT_EQ(file.error().number, ErrorNumber::fileNotFound);
}

TEST(ListFolderPosix, AFolderThatMayNotBeReadIs70) {
  const TemporaryFolder folder;
  const test::UnprivilegedUser user(folder.path());
  ASSERT_EQ(chmod(folder.path().c_str(), 0), 0);
  const auto names = listFolder(folder.path());
  EXPECT_EQ(chmod(folder.path().c_str(), 0755), 0);
  ASSERT_FALSE(names.ok());
  EXPECT_EQ(names.error().number, ErrorNumber::permissionDenied);
}

TEST(FindFilePosix, TheExactNameComesBeforeOthers) {
  const TemporaryFolder folder;
  writeBytes(folder / "FLIGHT.csv", "capitals");
  writeBytes(folder / "flight.csv", "small");
  EXPECT_EQ(readBytes(*findFile(folder.path(), "flight.csv")), "small");
  EXPECT_EQ(readBytes(*findFile(folder.path(), "FLIGHT.csv")), "capitals");
  EXPECT_EQ(readBytes(*findFile(folder.path(), "Flight.csv")), "capitals");
  FolderIndex index(folder.path());
  EXPECT_EQ(readBytes(*index.find("flight.csv")), "small");
}

TEST(FolderIndexPosix, SeesAChangeOfAFolderThatWasQuietForLong) {
  const TemporaryFolder folder;
  writeBytes(folder / "a.jpg", "");
  std::filesystem::last_write_time(
      folder.path(), std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  FolderIndex index(folder.path());
  EXPECT_TRUE(index.find("a.jpg").has_value());
  EXPECT_EQ(index.find("b.jpg"), std::nullopt);
  writeBytes(folder / "b.jpg", "");
  EXPECT_TRUE(index.find("b.jpg").has_value());
}

TEST(FindFilePosix, WhatIsWrittenKeepsTheNameItWasFoundUnder) {
  const TemporaryFolder folder;
  writeBytes(folder / "Flight.CSV", "");
  EXPECT_EQ(toUtf8(fileIn(folder.path(), "FLIGHT.csv").filename()), "Flight.CSV");
}

TEST(InstanceLockPosix, ACopyThatCrashedLeavesNoLock) {
  const TemporaryFolder folder;
  const std::string key = toUtf8(folder.path());
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t other = fork();
  ASSERT_GE(other, 0);
  if (other == 0) {
    const auto lock = platform::lockInstance(key);
    const char got = lock.ok() && *lock != nullptr ? 'y' : 'n';
    if (write(ready[1], &got, 1) != 1) _exit(1);
    while (true) pause();
  }
  char got = 0;
  ASSERT_EQ(read(ready[0], &got, 1), 1);
  EXPECT_EQ(got, 'y');
  const auto refused = platform::lockInstance(key);
  ASSERT_TRUE(refused.ok());
  EXPECT_EQ(*refused, nullptr);
  ASSERT_EQ(kill(other, SIGKILL), 0);
  ASSERT_EQ(waitpid(other, nullptr, 0), other);
  const auto granted = platform::lockInstance(key);
  ASSERT_TRUE(granted.ok());
  EXPECT_NE(*granted, nullptr);
  close(ready[0]);
  close(ready[1]);
}

}  // namespace
}  // namespace vel
