#include "app/station.h"

#include <filesystem>

#include <gmock/gmock.h>

#include "core/file.h"
#include "core/folders.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class Station : public testing::Test {
 protected:
  fs::path make(const fs::path& folder) {
    fs::create_directories(root_.path() / folder);
    return root_.path() / folder;
  }
  void put(const fs::path& file, std::string_view bytes) {
    make(file.parent_path());
    test::writeBytes(root_.path() / file, bytes);
  }
  [[nodiscard]] fs::path at(const fs::path& path) const { return root_.path() / path; }

  test::TemporaryFolder root_;
};

TEST_F(Station, AFolderWithSettingsOrBesideDataOrLogsIsAProgramFolder) {
  EXPECT_FALSE(isProgramFolder(make("bin")));
  put("portable/VEL.ENV", "");
  EXPECT_TRUE(isProgramFolder(at("portable")));
  make("a/Data");
  EXPECT_TRUE(isProgramFolder(make("a/vel")));
  make("b/logs");
  EXPECT_TRUE(isProgramFolder(make("b/vel")));
}

TEST_F(Station, IsFoundFromEveryFolderOfIt) {
  make("base/data");
  make("base/logs/EachLogs");
  make("base/pics");
  make("base/decoder");
  for (const char* chosen : {"base", "base/", "base/data", "base/logs", "base/logs/EachLogs",
                             "base/pics", "base/decoder"}) {
    EXPECT_EQ(programFolderNear(at(chosen)), at("base/vel")) << chosen;
  }
}

TEST_F(Station, WithSettingsKeepsTheirFolder) {
  make("base/logs");
  make("base/vel");
  put("base/manager/vel.env", "");
  EXPECT_EQ(programFolderNear(at("base")), at("base/manager"));
}

TEST_F(Station, IsNotFoundInAnyOtherFolder) {
  make("home/data");
  EXPECT_EQ(programFolderNear(make("home/music")), std::nullopt);
  EXPECT_EQ(programFolderNear(make("home/music/files")), std::nullopt);
  EXPECT_EQ(programFolderNear(at("missing")), std::nullopt);
  EXPECT_FALSE(holdsStation(at("home/music")));
  EXPECT_TRUE(holdsStation(at("home")));
}

TEST_F(Station, IsCompletedWithFoldersAndEmptyTables) {
  ASSERT_TRUE(completeStation(at("new/vel")).ok());
  for (const char* folder : {"new/vel", "new/data", "new/logs", "new/logs/EachLogs", "new/pics"}) {
    EXPECT_TRUE(fs::is_directory(at(folder))) << folder;
  }
  for (const char* table :
       {"aircraft.csv", "FLIGHT.csv", "airport.csv", "letter.csv", "ICAO24.csv"}) {
    EXPECT_EQ(test::readBytes(at("new/data") / table), "") << table;
  }
  EXPECT_THAT(missingTables(at("new/vel")), IsEmpty());
}

TEST_F(Station, KeepsEveryTableThatItHas) {
  put("base/data/flight.CSV", "NH0001,RJTT,KSEA,\r\n");
  put("base/data/airport.csv", "RJTT,Haneda HND\r\n");
  EXPECT_THAT(missingTables(at("base/vel")),
              ElementsAre("aircraft.csv", "letter.csv", "ICAO24.csv"));
  ASSERT_TRUE(completeStation(at("base/vel")).ok());
  EXPECT_EQ(test::readBytes(at("base/data/flight.CSV")), "NH0001,RJTT,KSEA,\r\n");
  EXPECT_EQ(test::readBytes(at("base/data/airport.csv")), "RJTT,Haneda HND\r\n");
  std::vector<std::string> flights;
  for (const auto& entry : fs::directory_iterator(at("base/data"))) {
    const std::string name = toUtf8(entry.path().filename());
    if (equalIgnoringCase(name, "FLIGHT.csv")) flights.push_back(name);
  }
  EXPECT_THAT(flights, ElementsAre("flight.CSV"));
}

TEST_F(Station, FinishesARewriteThatWasCutOffInsteadOfEmptyingTheTable) {
  put("base/data/letter.$$$", "NH,ANA,All Nippon\r\n");
  put("base/data/letter.bak", "");
  ASSERT_TRUE(completeStation(at("base/vel")).ok());
  EXPECT_EQ(test::readBytes(at("base/data/letter.csv")), "NH,ANA,All Nippon\r\n");
}

TEST_F(Station, WhatCannotBeMadeIsNamed) {
  put("base", "a file");
  const Status status = completeStation(at("base/vel"));
  ASSERT_FALSE(status.ok());
  EXPECT_THAT(status.error().text(), testing::HasSubstr(toUtf8(at("base"))));
}

TEST_F(Station, IsRememberedWithEveryCharacterOfItsName) {
  const fs::path folder = at("受信局 %n &amp;") / "vel";
  const fs::path note = at("config/vel/station");
  EXPECT_EQ(rememberedStation(note), std::nullopt);
  ASSERT_TRUE(rememberStation(note, folder).ok());
  EXPECT_EQ(rememberedStation(note), folder);
  ASSERT_TRUE(rememberStation(note, at("other")).ok());
  EXPECT_EQ(rememberedStation(note), at("other"));
}

TEST_F(Station, ADamagedNoteIsNone) {
  for (const std::string& bytes : {std::string(), std::string("relative/vel\n"), std::string("\n"),
                                   std::string(100'000, '\0')}) {
    put("note", bytes);
    EXPECT_EQ(rememberedStation(at("note")), std::nullopt) << bytes.size();
  }
}

}  // namespace
}  // namespace vel
