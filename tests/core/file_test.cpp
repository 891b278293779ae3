#include "core/file.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/folders.h"
#include "core/helpers.h"
#include "core/platform.h"
#include "core/program_files.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::readBytes;
using test::TemporaryFolder;
using test::writeBytes;
using testing::ElementsAre;
using testing::IsEmpty;

// The number of a failure; none for success.
template <typename T>
ErrorNumber numberOf(const Result<T>& result) {
  return result.ok() ? ErrorNumber::none : result.error().number;
}

TEST(InputFileTest, AMissingFileIs53) {
  const TemporaryFolder folder;
  EXPECT_EQ(numberOf(InputFile::open(folder / "20261120_list.csv")), ErrorNumber::fileNotFound);
}

TEST(InputFileTest, AMissingFolderIs76) {
  const TemporaryFolder folder;
  EXPECT_EQ(numberOf(InputFile::open(folder / "logs" / "x.csv")), ErrorNumber::pathNotFound);
}

TEST(InputFileTest, AFolderIsNoFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(numberOf(InputFile::open(folder.path())), ErrorNumber::fileNotFound);
}

TEST(InputFileTest, ANameTooLongForAnyFileIs53) {
  const TemporaryFolder folder;
  EXPECT_EQ(numberOf(InputFile::open(folder / std::string(2000, 'A'))), ErrorNumber::fileNotFound);
}

TEST(InputFileTest, ReadsToTheEndAndThenNothing) {
  const TemporaryFolder folder;
  writeBytes(folder / "a", std::string_view("ab\r\n\0\x1A"
                                            "end",
                                            9));
  Result<InputFile> file = InputFile::open(folder / "a");
  ASSERT_TRUE(file.ok());
  char bytes[100];
  EXPECT_EQ(file->read(bytes, 4).value(), 4U);
  EXPECT_EQ(file->read(bytes + 4, 96).value(), 5U) << "no byte ends a file before its end";
  EXPECT_EQ(std::string(bytes, 9), std::string("ab\r\n\0\x1A"
                                               "end",
                                               9));
  EXPECT_EQ(file->read(bytes, 100).value(), 0U);
}

TEST(InputFileTest, OthersMayWriteRenameAndRemoveTheFileMeanwhile) {
  const TemporaryFolder folder;
  writeBytes(folder / "log", "one");
  Result<InputFile> file = InputFile::open(folder / "log");
  ASSERT_TRUE(file.ok());
  writeBytes(folder / "log", "two");
  EXPECT_TRUE(renameFile(folder / "log", folder / "moved").ok());
  EXPECT_TRUE(removeFile(folder / "moved").ok());
}

TEST(OutputFileTest, WritesWhatItIsGivenAsItStands) {
  const TemporaryFolder folder;
  writeBytes(folder / "a", "an older and much longer content");
  std::string expected;
  Result<OutputFile> file = OutputFile::create(folder / "a");
  ASSERT_TRUE(file.ok());
  for (int i = 0; i < 60000; ++i) {
    const std::string line = "line " + std::to_string(i) + "\r\n";
    ASSERT_TRUE(file->write(line).ok());
    expected += line;
  }
  const std::string large(1'000'000, 'x');
  ASSERT_TRUE(file->write(large).ok());
  ASSERT_TRUE(file->write("\n").ok());
  ASSERT_TRUE(file->finish().ok());
  EXPECT_EQ(readBytes(folder / "a"), expected + large + "\n");
}

TEST(OutputFileTest, AMissingFolderIs76AndAFolderInItsPlace70) {
  const TemporaryFolder folder;
  EXPECT_EQ(numberOf(OutputFile::create(folder / "gone" / "a")), ErrorNumber::pathNotFound);
  EXPECT_EQ(numberOf(OutputFile::create(folder.path())), ErrorNumber::permissionDenied);
}

TEST(OutputFileTest, PermissionsComeFromAnotherFile) {
  const TemporaryFolder folder;
  writeBytes(folder / "live", "x");
  Result<OutputFile> file = OutputFile::create(folder / "new");
  ASSERT_TRUE(file.ok());
  EXPECT_TRUE(file->copyPermissions(folder / "live").ok());
  EXPECT_EQ(numberOf(file->copyPermissions(folder / "gone")), ErrorNumber::fileNotFound);
  EXPECT_TRUE(file->write("y").ok());
  EXPECT_TRUE(file->finish().ok());
  EXPECT_EQ(std::filesystem::status(folder / "new").permissions(),
            std::filesystem::status(folder / "live").permissions());
}

TEST(RenameFile, NeverReplacesWhatExists) {
  const TemporaryFolder folder;
  writeBytes(folder / "a", "A");
  writeBytes(folder / "b", "B");
  EXPECT_EQ(numberOf(renameFile(folder / "a", folder / "b")), ErrorNumber::fileExists);
  EXPECT_EQ(readBytes(folder / "a"), "A");
  EXPECT_EQ(readBytes(folder / "b"), "B");
  EXPECT_TRUE(renameFile(folder / "a", folder / "c").ok());
  EXPECT_EQ(readBytes(folder / "c"), "A");
  EXPECT_EQ(numberOf(renameFile(folder / "a", folder / "d")), ErrorNumber::fileNotFound);
}

TEST(ReplaceFile, PutsTheNewOneInThePlaceOfTheOld) {
  const TemporaryFolder folder;
  writeBytes(folder / "new", "N");
  writeBytes(folder / "old", "O");
  EXPECT_TRUE(replaceFile(folder / "new", folder / "old").ok());
  EXPECT_EQ(readBytes(folder / "old"), "N");
  EXPECT_FALSE(fileExists(folder / "new"));
  EXPECT_EQ(numberOf(replaceFile(folder / "new", folder / "old")), ErrorNumber::fileNotFound);
}

TEST(RemoveFile, SaysWhenThereIsNone) {
  const TemporaryFolder folder;
  writeBytes(folder / "a", "A");
  EXPECT_TRUE(removeFile(folder / "a").ok());
  EXPECT_EQ(numberOf(removeFile(folder / "a")), ErrorNumber::fileNotFound);
}

TEST(FlushFolder, WorksForAnOrdinaryFolder) {
  const TemporaryFolder folder;
  EXPECT_TRUE(flushFolder(folder.path()).ok());
}

TEST(FileExists, AFolderIsNoFile) {
  const TemporaryFolder folder;
  writeBytes(folder / "a", "");
  EXPECT_TRUE(fileExists(folder / "a"));
  EXPECT_FALSE(fileExists(folder / "b"));
  EXPECT_FALSE(fileExists(folder.path()));
}

TEST(ListFolder, GivesTheFilesSortedByNameWithoutFolders) {
  const TemporaryFolder folder;
  for (const char* name : {"b.csv", "A.csv", "20261120_list.csv", "a0.csv", "Z.csv", "羽田.jpg"}) {
    writeBytes(folder / name, "");
  }
  std::filesystem::create_directory(folder / "EachLogs");
  EXPECT_THAT(listFolder(folder.path()).value(),
              ElementsAre("20261120_list.csv", "A.csv", "a0.csv", "b.csv", "Z.csv", "羽田.jpg"));
}

TEST(ListFolder, AMissingFolderIs76AndAnEmptyOneEmpty) {
  const TemporaryFolder folder;
  EXPECT_EQ(numberOf(listFolder(folder / "gone")), ErrorNumber::pathNotFound);
  EXPECT_THAT(listFolder(folder.path()).value(), IsEmpty());
}

TEST(FindFile, FindsATableWhateverTheCaseOfItsName) {
  const TemporaryFolder folder;
  writeBytes(folder / "FLIGHT.csv", "JL0012");
  for (const char* name : {"FLIGHT.csv", "flight.csv", "Flight.CSV"}) {
    const auto found = findFile(folder.path(), name);
    ASSERT_TRUE(found.has_value()) << name;
    EXPECT_EQ(readBytes(*found), "JL0012") << name;
    EXPECT_EQ(readBytes(fileIn(folder.path(), name)), "JL0012") << name;
  }
  EXPECT_EQ(findFile(folder.path(), "FLIGHT.bak"), std::nullopt);
  EXPECT_EQ(findFile(folder / "gone", "FLIGHT.csv"), std::nullopt);
  EXPECT_EQ(fileIn(folder.path(), "letter.csv"), folder / "letter.csv");
}

TEST(FindFile, DoesNotTakeAFolderForAFile) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "letter.csv");
  EXPECT_EQ(findFile(folder.path(), "letter.csv"), std::nullopt);
}

TEST(FolderIndexTest, FindsAPhotoWhateverTheCaseOfItsName) {
  const TemporaryFolder folder;
  writeBytes(folder / "JA8089.JPG", "photo");
  FolderIndex index(folder.path());
  const auto found = index.find("ja8089.jpg");
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(toUtf8(found->filename()), "JA8089.JPG");
  EXPECT_EQ(index.find("JA8090.jpg"), std::nullopt);
  EXPECT_EQ(index.find(""), std::nullopt);
}

TEST(FolderIndexTest, HoldsWhatStoodThereAtTheLastRefresh) {
  const TemporaryFolder folder;
  writeBytes(folder / "JA8089.JPG", "photo");
  FolderIndex index(folder.path());
  EXPECT_FALSE(index.holds("ja8089.jpg"));
  index.refresh();
  EXPECT_TRUE(index.holds("ja8089.jpg"));
  writeBytes(folder / "JA8090.jpg", "photo");
  EXPECT_FALSE(index.holds("JA8090.jpg"));
  index.refresh();
  EXPECT_TRUE(index.holds("JA8090.jpg"));
}

TEST(FolderIndexTest, SeesANewPhotoAndARemovedOneAtOnce) {
  const TemporaryFolder folder;
  FolderIndex index(folder.path());
  for (int i = 0; i < 50; ++i) {
    const std::string name = "JA" + std::to_string(i) + ".jpg";
    ASSERT_EQ(index.find(name), std::nullopt);
    writeBytes(folder / name, "");
    ASSERT_TRUE(index.find(name).has_value()) << name;
  }
  ASSERT_TRUE(removeFile(folder / "JA7.jpg").ok());
  EXPECT_EQ(index.find("JA7.jpg"), std::nullopt);
}

TEST(FolderIndexTest, AFolderThatComesAndGoesIsNoTrouble) {
  const TemporaryFolder folder;
  FolderIndex index(folder / "pics");
  EXPECT_EQ(index.find("a.jpg"), std::nullopt);
  std::filesystem::create_directory(folder / "pics");
  writeBytes(folder / "pics" / "a.jpg", "");
  EXPECT_TRUE(index.find("a.jpg").has_value());
  std::filesystem::remove_all(folder / "pics");
  EXPECT_EQ(index.find("a.jpg"), std::nullopt);
}

TEST(SafeFileName, ANameFromTheAirMustStayInItsFolder) {
  for (const char* name : {"JA8089", "N12-AB", "JA 80", "羽田", "a.b", ".JA8089", "表", ""}) {
    EXPECT_TRUE(isSafeFileName(name)) << name;
  }
  for (const char* name : {"../JA", "..", "a/b", "a\\b", "C:x", "JA\n", "JA\x7F", "a..b", "\x01"}) {
    EXPECT_FALSE(isSafeFileName(name)) << name;
  }
  EXPECT_FALSE(isSafeFileName(std::string_view("JA\0", 3)));
}

TEST(EqualIgnoringCase, KnowsAsciiLettersOnly) {
  EXPECT_TRUE(equalIgnoringCase("FLIGHT.csv", "flight.CSV"));
  EXPECT_FALSE(equalIgnoringCase("FLIGHT.csv", "FLIGHT.cs"));
  EXPECT_FALSE(equalIgnoringCase("Ａ", "ａ"));
  EXPECT_FALSE(equalIgnoringCase("[", "{"));
}

TEST(Paths, ComeFromUtf8AndGoBack) {
  for (const char* text : {"logs", "羽田.jpg", "😀", ""}) EXPECT_EQ(toUtf8(toPath(text)), text);
}

TEST(Paths, BytesThatAreNoTextNeverBreakTheProgram) {
  const TemporaryFolder folder;
  FolderIndex index(folder.path());
  for (const char* bytes : {"\xFF", "JA\xE7\xBE", "\xED\xA0\x80", "\x80\x80"}) {
    EXPECT_FALSE(fileExists(folder / bytes));
    EXPECT_EQ(index.find(bytes), std::nullopt);
    EXPECT_EQ(numberOf(InputFile::open(folder / bytes)), ErrorNumber::fileNotFound);
  }
}

TEST(Paths, MessagesShowThePlatformsSeparators) {
  const std::string text = nativeText(toPath("logs/EachLogs") / toPath("JA8089.log"));
  EXPECT_TRUE(text == "logs/EachLogs/JA8089.log" || text == "logs\\EachLogs\\JA8089.log") << text;
  EXPECT_EQ(text.find('/') == std::string::npos, platform::fileNamesIgnoreCase()) << text;
}

TEST(FoldersTest, LieAroundTheProgramFolder) {
  const TemporaryFolder station;
  const Folders folders = Folders::of(station / "vel");
  EXPECT_EQ(folders.program, station / "vel");
  EXPECT_EQ(folders.base, station.path());
  EXPECT_EQ(folders.data, station / "data");
  EXPECT_EQ(folders.logs, station / "logs");
  EXPECT_EQ(folders.eachLogs, station / "logs" / "EachLogs");
  EXPECT_EQ(folders.pics, station / "pics");
}

TEST(FoldersTest, AreFoundWhateverTheCaseOfTheirNames) {
  const TemporaryFolder station;
  for (const char* name : {"Data", "LOGS", "LOGS/eachlogs", "Pics"}) {
    std::filesystem::create_directory(station / name);
  }
  const Folders folders = Folders::of(station / "vel");
  EXPECT_TRUE(std::filesystem::equivalent(folders.data, station / "Data"));
  EXPECT_TRUE(std::filesystem::equivalent(folders.logs, station / "LOGS"));
  EXPECT_TRUE(std::filesystem::equivalent(folders.eachLogs, station / "LOGS" / "eachlogs"));
  EXPECT_TRUE(std::filesystem::equivalent(folders.pics, station / "Pics"));
}

TEST(FoldersTest, TheFilesOfTheProgramFolderToo) {
  const TemporaryFolder station;
  std::filesystem::create_directory(station / "vel");
  const Folders folders = Folders::of(station / "vel");
  EXPECT_EQ(settingsFile(folders), folders.program / "vel.env");
  EXPECT_EQ(servicesFile(folders), folders.program / "services.ini");
  EXPECT_EQ(kmlFile(folders), folders.program / "temp.kml");
  for (const char* name : {"VEL.ENV", "Services.ini", "Temp.KML"}) {
    writeBytes(folders.program / name, name);
  }
  EXPECT_EQ(readBytes(settingsFile(folders)), "VEL.ENV");
  EXPECT_EQ(readBytes(servicesFile(folders)), "Services.ini");
  EXPECT_EQ(readBytes(kmlFile(folders)), "Temp.KML");
}

TEST(FoldersTest, WhatAKilledProgramLeftIsRemoved) {
  const TemporaryFolder station;
  std::filesystem::create_directory(station / "vel");
  const Folders folders = Folders::of(station / "vel");
  for (const char* name : {"vel.env", "vel.env.new", "temp.kml.part"}) {
    writeBytes(folders.program / name, "x");
  }
  removeLeftOvers(folders);
  EXPECT_THAT(listFolder(folders.program).value(), ElementsAre("vel.env"));
}

TEST(FoldersTest, ATrailingSlashNamesTheSameFolder) {
  const TemporaryFolder station;
  for (const char* name : {"vel/", "vel//", "vel/.", "x/../vel", "x/../vel/"}) {
    const Folders folders = Folders::of(station / name);
    EXPECT_EQ(folders.program, (station / "vel").make_preferred()) << name;
    EXPECT_EQ(folders.base, station.path()) << name;
  }
}

TEST(FoldersTest, ARelativeProgramFolderIsSeenFromTheWorkingFolder) {
  const auto here = std::filesystem::current_path();
  EXPECT_EQ(Folders::of("vel").program, here / "vel");
  EXPECT_EQ(Folders::of("vel").data, here / "data");
  EXPECT_EQ(Folders::of(".").program, here);
  EXPECT_EQ(Folders::of(".").data, here.parent_path() / "data");
  EXPECT_EQ(Folders::of("..").logs, here.parent_path().parent_path() / "logs");
}

TEST(ExecutableFolder, IsWhereTheProgramLies) {
  const auto folder = platform::executableFolder();
  EXPECT_TRUE(folder.is_absolute());
  EXPECT_TRUE(fileExists(folder / "core_tests") || fileExists(folder / "core_tests.exe")) << folder;
}

TEST(InstanceLockTest, ASecondCopyOfOneProgramFolderGetsNone) {
  const TemporaryFolder folder;
  const std::string key = toUtf8(folder.path());
  auto first = platform::lockInstance(key);
  ASSERT_TRUE(first.ok());
  ASSERT_NE(*first, nullptr);
  const auto second = platform::lockInstance(key);
  ASSERT_TRUE(second.ok());
  EXPECT_EQ(*second, nullptr);
  const auto other = platform::lockInstance(key + "/other station");
  ASSERT_TRUE(other.ok());
  EXPECT_NE(*other, nullptr) << "another program folder is another station";
  first->reset();
  const auto third = platform::lockInstance(key);
  ASSERT_TRUE(third.ok());
  EXPECT_NE(*third, nullptr) << "after the first copy has ended";
}

}  // namespace
}  // namespace vel
