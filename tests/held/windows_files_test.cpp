// What only this platform has: names that are devices, very long paths, names
// that are no text, locks between processes.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/file.h"
#include "core/folders.h"
#include "core/platform.h"
#include "tests/held/file_holder.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::FileHolder;
using test::readBytes;
using test::TemporaryFolder;
using test::writeBytes;

TEST(WindowsFiles, ADeviceIsNoLog) {
  const TemporaryFolder folder;
  const Result<InputFile> file = InputFile::open(folder / "NUL");
  ASSERT_FALSE(file.ok());
  EXPECT_EQ(file.error().number, ErrorNumber::fileNotFound);
  // How the system calls these depends on its version and on a console.
  for (const char* name : {"NUL.log", "CON", "COM1"}) {
    EXPECT_FALSE(InputFile::open(folder / name).ok()) << name;
  }
}

TEST(WindowsFiles, ANameThatNoFileCanHaveIs53) {
  const TemporaryFolder folder;
  for (const char* name : {"JA?.log", "JA*.log", "a<b>.log", "a|b"}) {
    const Result<InputFile> file = InputFile::open(folder / name);
    ASSERT_FALSE(file.ok()) << name;
    EXPECT_EQ(file.error().number, ErrorNumber::fileNotFound) << name;
  }
}

TEST(WindowsFiles, PathsMayBeLongerThan260Characters) {
  const TemporaryFolder folder;
  std::filesystem::path deep = folder.path();
  while (deep.native().size() < 300) {
    deep /= std::wstring(60, L'x');
    ASSERT_NE(CreateDirectoryW((L"\\\\?\\" + deep.wstring()).c_str(), nullptr), 0)
        << GetLastError();
  }
  Result<OutputFile> file = OutputFile::create(deep / "FLIGHT.$$$");
  ASSERT_TRUE(file.ok());
  ASSERT_TRUE(file->write("JL0012").ok());
  ASSERT_TRUE(file->finish().ok());
  ASSERT_TRUE(renameFile(deep / "FLIGHT.$$$", deep / "FLIGHT.csv").ok());
  Result<InputFile> read = InputFile::open(deep / "FLIGHT.csv");
  ASSERT_TRUE(read.ok());
  char bytes[10];
  EXPECT_EQ(read->read(bytes, sizeof bytes).value(), 6U);
  DeleteFileW((L"\\\\?\\" + (deep / "FLIGHT.csv").wstring()).c_str());
  for (; deep != folder.path(); deep = deep.parent_path()) {
    RemoveDirectoryW((L"\\\\?\\" + deep.wstring()).c_str());
  }
}

TEST(WindowsFiles, AStationMayLieDeeperThan260Characters) {
  const TemporaryFolder folder;
  std::filesystem::path deep = folder.path();
  while (deep.native().size() < 300) deep /= std::wstring(60, L'x');
  const std::filesystem::path data = deep / "data";
  std::filesystem::path made = folder.path();
  for (const auto& part : data.lexically_relative(folder.path())) {
    made /= part;
    ASSERT_NE(CreateDirectoryW((L"\\\\?\\" + made.wstring()).c_str(), nullptr), 0);
  }
  const Folders folders = Folders::of(deep / "vel");
  EXPECT_EQ(folders.data, data);
  ASSERT_TRUE(writeWholeFile(data / "Flight.CSV", ".new", "JL0012,RJTTKLAX,-\r\n").ok());
  EXPECT_EQ(fileIn(folders.data, "FLIGHT.csv").filename(), "Flight.CSV");
  EXPECT_TRUE(fileExists(data / "Flight.CSV"));
  EXPECT_FALSE(fileExists(data / "airport.csv"));
  EXPECT_FALSE(fileExists(data));
  EXPECT_THAT(listFolder(data).value(), testing::ElementsAre("Flight.CSV"));
  FolderIndex index(data);
  EXPECT_TRUE(index.find("flight.csv").has_value());
  EXPECT_TRUE(removeFile(data / "Flight.CSV").ok());
  for (made = data; made != folder.path(); made = made.parent_path()) {
    RemoveDirectoryW((L"\\\\?\\" + made.wstring()).c_str());
  }
}

TEST(WindowsFiles, FoldersStandBesideEachOtherOnAShareAndAtADrivesRootToo) {
  const Folders share = Folders::of(LR"(\\server\share\station\vel)");
  EXPECT_EQ(share.data, std::filesystem::path(LR"(\\server\share\station\data)"));
  EXPECT_EQ(share.eachLogs, std::filesystem::path(LR"(\\server\share\station\logs\EachLogs)"));
  const Folders root = Folders::of(LR"(C:\vel\)");
  EXPECT_EQ(root.base, std::filesystem::path(LR"(C:\)"));
  EXPECT_EQ(root.data, std::filesystem::path(LR"(C:\data)"));
}

TEST(WindowsFiles, AFileWhoseNameIsNoTextDoesNotBreakAListing) {
  const TemporaryFolder folder;
  writeBytes(folder / "JA8089.jpg", "");
  const std::filesystem::path odd = folder.path() / std::wstring{L'J', wchar_t{0xD800}, L'A'};
  HANDLE file = CreateFileW(odd.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  EXPECT_THAT(listFolder(folder.path()).value(), testing::Contains("JA8089.jpg"));
  EXPECT_EQ(toUtf8(std::wstring{L'J', wchar_t{0xD800}, L'A'}), "J\uFFFDA");
}

TEST(WindowsFiles, AFolderThatWasQuietForLongShowsANewPhotoAtOnce) {
  const TemporaryFolder folder;
  writeBytes(folder / "a.jpg", "");
  HANDLE handle = CreateFileW(folder.path().c_str(), FILE_WRITE_ATTRIBUTES,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  ASSERT_NE(handle, INVALID_HANDLE_VALUE) << GetLastError();
  const FILETIME longAgo{0, 30'000'000};
  EXPECT_NE(SetFileTime(handle, nullptr, nullptr, &longAgo), 0) << GetLastError();
  CloseHandle(handle);
  FolderIndex index(folder.path());
  EXPECT_TRUE(index.find("A.JPG").has_value());
  EXPECT_EQ(index.find("b.jpg"), std::nullopt);
  writeBytes(folder / "b.jpg", "");
  EXPECT_TRUE(index.find("b.jpg").has_value());
}

TEST(WindowsFiles, ATableIsFoundUnderTheNameThatItHas) {
  const TemporaryFolder folder;
  writeBytes(folder / "Flight.CSV", "");
  EXPECT_EQ(toUtf8(fileIn(folder.path(), "FLIGHT.csv").filename()), "Flight.CSV");
  EXPECT_EQ(toUtf8(fileIn(folder.path(), "letter.csv").filename()), "letter.csv");
}

TEST(WindowsLock, AnotherProcessOfTheSameFolderHasItUntilItEnds) {
  const TemporaryFolder folder;
  FileHolder copy(folder.path(), FileHolder::Shares::isLock);
  ASSERT_TRUE(copy.isHolding());
  const auto refused = platform::lockInstance(toUtf8(folder.path()));
  ASSERT_TRUE(refused.ok());
  EXPECT_EQ(*refused, nullptr);
  ASSERT_TRUE(copy.release());
  const auto granted = platform::lockInstance(toUtf8(folder.path()));
  ASSERT_TRUE(granted.ok());
  EXPECT_NE(*granted, nullptr);
}

TEST(WindowsLock, ACopyThatCrashedLeavesNone) {
  const TemporaryFolder folder;
  FileHolder copy(folder.path(), FileHolder::Shares::isLock);
  ASSERT_TRUE(copy.isHolding());
  ASSERT_TRUE(copy.crash());
  const auto granted = platform::lockInstance(toUtf8(folder.path()));
  ASSERT_TRUE(granted.ok());
  EXPECT_NE(*granted, nullptr);
}

TEST(WindowsLock, OneFolderWrittenInCapitalsIsTheSameFolder) {
  const auto first = platform::lockInstance("C:\\Stations\\Tokyo\\vel");
  ASSERT_TRUE(first.ok());
  ASSERT_NE(*first, nullptr);
  const auto second = platform::lockInstance("c:\\stations\\TOKYO\\VEL");
  ASSERT_TRUE(second.ok());
  EXPECT_EQ(*second, nullptr);
}

}  // namespace
}  // namespace vel
