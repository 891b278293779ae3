#include "core/helpers.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::readBytes;
using test::RecordingDesktop;
using test::TemporaryFolder;
using test::writeBytes;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ZeroPad, SevenWithWidthThreeIs007) {
  EXPECT_EQ(ZeroPad(7, 3), "007");
  EXPECT_EQ(ZeroPad("7", 3), "007");
}

TEST(ZeroPad, ALongTextKeepsItsLastTenCharacters) {
  EXPECT_EQ(ZeroPad("123456789012", 10), "3456789012");
}

TEST(ZeroPad, TakesEveryWidthFromOneToTen) {
  EXPECT_EQ(ZeroPad(1234, 1), "4");
  EXPECT_EQ(ZeroPad(1234, 4), "1234");
  EXPECT_EQ(ZeroPad("", 10), "0000000000");
  EXPECT_EQ(ZeroPad(0, 2), "00");
  EXPECT_EQ(ZeroPad("羽田", 3), "0羽田");
}

TEST(FindUpperWord3, FindsLaxButNotAndAtTheVeryEnd) {
  std::size_t position = 1;
  EXPECT_EQ(FindUpperWord3("FROM TO LAX AND", position), 9U);
  EXPECT_EQ(position, 9U);
  // From LAX on there is only AND, which no blank follows.
  EXPECT_EQ(FindUpperWord3("FROM TO LAX AND", position), 0U);
  EXPECT_EQ(position, 0U);
}

TEST(FindUpperWord3, ATextOfSixCharactersGivesZeroWhateverItHolds) {
  std::size_t position = 3;
  EXPECT_EQ(FindUpperWord3("A LAX ", position), 0U);
  EXPECT_EQ(position, 3U) << "a short text leaves the position as it was";
  EXPECT_EQ(FindUpperWord3("", position), 0U);
  EXPECT_EQ(position, 3U);
  EXPECT_EQ(FindUpperWord3("東 LAX ", position), 0U);
  EXPECT_EQ(position, 3U) << "length counts characters, not bytes";
}

TEST(FindUpperWord3, ATextOfSevenCharactersIsSearched) {
  std::size_t position = 1;
  EXPECT_EQ(FindUpperWord3("AB LAX ", position), 4U);
}

TEST(FindUpperWord3, StartsAtTheFirstBlankAtOrAfterThePosition) {
  const std::string text = "A HND LAX JFK B";
  std::size_t position = 1;
  EXPECT_EQ(FindUpperWord3(text, position), 3U);
  EXPECT_EQ(FindUpperWord3(text, position), 7U);
  EXPECT_EQ(FindUpperWord3(text, position), 11U);
  EXPECT_EQ(FindUpperWord3(text, position), 0U);
  position = 2;
  EXPECT_EQ(FindUpperWord3(text, position), 3U) << "a blank at the position itself counts";
  position = 16;
  EXPECT_EQ(FindUpperWord3(text, position), 0U) << "past the end";
}

TEST(FindUpperWord3, WantsThreeCapitalsBetweenBlanks) {
  for (const char* text : {"to HN HNDX Hnd h end", "HND and more", "x HN1 y z w", "x ＨＮＤ y",
                           "x HND, y z", "to HNÉ x y"}) {
    std::size_t position = 1;
    EXPECT_EQ(FindUpperWord3(text, position), 0U) << text;
    EXPECT_EQ(position, 0U) << text;
  }
}

TEST(FindUpperWord3, CountsCharactersBeforeTheWord) {
  std::size_t position = 1;
  EXPECT_EQ(FindUpperWord3("東京国際空港 HND 他", position), 8U);
  position = 7;
  EXPECT_EQ(FindUpperWord3("東京国際空港 HND 他", position), 8U);
}

TEST(RenameFile, MovesTheFile) {
  const TemporaryFolder folder;
  writeBytes(folder / "aircraft.csv", "JA8089,B744\r\n");
  EXPECT_TRUE(renameFile(folder / "aircraft.csv", folder / "aircraft.bak").ok());
  EXPECT_EQ(readBytes(folder / "aircraft.bak"), "JA8089,B744\r\n");
  EXPECT_FALSE(fileExists(folder / "aircraft.csv"));
}

TEST(RenameFile, AMissingFileIsError53) {
  const TemporaryFolder folder;
  const Status renamed = renameFile(folder / "letter.csv", folder / "letter.bak");
  ASSERT_FALSE(renamed.ok());
  EXPECT_EQ(renamed.error().text(), "ERROR #53");
}

TEST(RenameFile, ATargetThatExistsIsError58AndBothFilesStay) {
  const TemporaryFolder folder;
  writeBytes(folder / "letter.csv", "new");
  writeBytes(folder / "letter.bak", "old");
  const Status renamed = renameFile(folder / "letter.csv", folder / "letter.bak");
  ASSERT_FALSE(renamed.ok());
  EXPECT_EQ(renamed.error().text(), "ERROR #58");
  EXPECT_EQ(readBytes(folder / "letter.csv"), "new");
  EXPECT_EQ(readBytes(folder / "letter.bak"), "old");
}

TEST(ShellOpen, HandsTheTargetOnAsItStandsAndGivesTheResultBack) {
  RecordingDesktop desktop;
  desktop.openResults = {33, 2, 31};
  const std::string address = "https://example.org/?a=%28JL&b=羽 田'\"$(x)";
  EXPECT_EQ(ShellOpen(desktop, address), 33);
  EXPECT_EQ(ShellOpen(desktop, "a.jpg"), 2);
  EXPECT_EQ(ShellOpen(desktop, "a.kml"), 31);
  EXPECT_THAT(desktop.opened, ElementsAre(address, "a.jpg", "a.kml"));
}

TEST(RunLog, ACallReachesTheOneEntryPoint) {
  RecordingDesktop desktop;
  WriteRunLog(desktop, "Coplete GetLogFileList");
  EXPECT_THAT(desktop.runLogLines, ElementsAre("Coplete GetLogFileList"));
}

TEST(ErrorText, IsTheNumberUnlessAMessageIsGiven) {
  EXPECT_EQ(Error{ErrorNumber::fileNotFound}.text(), "ERROR #53");
  EXPECT_EQ(Error{ErrorNumber::deviceIo}.text(), "ERROR #57");
  EXPECT_EQ(Error{ErrorNumber::diskFull}.text(), "ERROR #61");
  EXPECT_EQ(Error{ErrorNumber::permissionDenied}.text(), "ERROR #70");
  EXPECT_EQ(Error{ErrorNumber::pathAccess}.text(), "ERROR #75");
  EXPECT_EQ(Error{ErrorNumber::pathNotFound}.text(), "ERROR #76");
  const Error given{ErrorNumber::fileNotFound, "Not found data\\airport.csv"};
  EXPECT_EQ(given.text(), "Not found data\\airport.csv");
}

}  // namespace
}  // namespace vel
