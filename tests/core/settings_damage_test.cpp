// What a settings file that is damaged, or that cannot be written, costs: never
// a default, never the old file, never a word to the user.

#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/settings.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::cp932;
using test::readBytes;
using test::RecordingDesktop;
using test::TemporaryFolder;
using test::writeBytes;
using testing::ElementsAre;
using testing::IsEmpty;

class SettingsDamageTest : public testing::Test {
 protected:
  Settings load() {
    Settings settings;
    LoadEnv(desktop_, file_, Encoding::codePage932(), {"photo=", "flight="}, settings);
    return settings;
  }
  Status save(const Settings& settings) {
    return SaveEnv(file_, Encoding::codePage932(), settings);
  }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "vel.env";
  RecordingDesktop desktop_;
};

TEST_F(SettingsDamageTest, ReadingStopsAtABadLineAndKeepsWhatItRead) {
  const std::string nuls("\0\0\0\0", 4);
  const std::string endless(std::size_t{3} << 20, '7');
  const std::string lines[] = {
      "",
      "   ",
      "garbage",
      "\"env_fltSchCmb\"",
      "\"env_fltSchCmb\",",
      "\"env_fltSchCmb",
      "\"env_fltSchCmb\";3",
      "\"env_fltSchCmb\",12abc",
      "\"env_fltSchCmb\",abc",
      "\"env_fltSchCmb\",1 2",
      "\"env_fltSchCmb\",#MAYBE#",
      "\"env_fltSchCmb\",nan",
      "\"env_fltSchCmb\",inf",
      "\"env_fltSchCmb\",1e999",
      "\"env_fltSchCmb\",99999999999",
      "\"env_fltSchCmb\",\"3\"",
      "\"env_Form1_Top\",\"wide\"",
      "\"env_regDefName0\",5",
      "\"env_regDefName0\",#TRUE#",
      "\"env_regDefName0\",\"no end",
      "\"env_regDefName0\",\"",
      nuls,
      "\"env_fltSchCmb\"," + nuls,
      "\"env_fltSchCmb\"," + endless,
      "\xFF\xFE\x81",
  };
  for (const std::string& bad : lines) {
    writeBytes(file_, "\"env_regSchCmb\",2\r\n" + bad + "\r\n\"env_Config\",9\r\n");
    const Settings settings = load();
    EXPECT_EQ(settings.env_regSchCmb, 2) << bad.substr(0, 40);
    EXPECT_EQ(settings.env_fltSchCmb, 0) << bad.substr(0, 40);
    EXPECT_EQ(settings.env_Config, 0) << bad.substr(0, 40);
    EXPECT_EQ(settings.env_regDefName0, "USER DEF") << bad.substr(0, 40);
    EXPECT_EQ(settings.env_Form3_Width, 9975) << bad.substr(0, 40);
  }
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_FALSE(desktop_.ended);
}

TEST_F(SettingsDamageTest, BytesThatAreNoTextDoNotStopTheRead) {
  writeBytes(file_,
             "\"env_regDefName0\",\"a\xFF"
             "b\"\r\n\"env_Config\",9\r\n");
  EXPECT_EQ(load().env_regDefName0, "a\uFFFDb");
  EXPECT_EQ(load().env_Config, 9);
}

TEST_F(SettingsDamageTest, EmptyAndHalfWrittenFilesLeaveTheRestAtItsDefaults) {
  ASSERT_TRUE(save(load()).ok());
  const std::string whole = readBytes(file_);
  for (std::size_t size = 0; size <= whole.size(); size += 7) {
    writeBytes(file_, whole.substr(0, size));
    const Settings settings = load();
    EXPECT_EQ(settings.env_regDefUrl0, "photo=") << size;
    EXPECT_EQ(settings.env_regDefName0, "USER DEF") << size;
    EXPECT_EQ(settings.env_Form1_Width, 0) << size;
  }
}

TEST_F(SettingsDamageTest, AFolderInItsPlaceLeavesTheDefaultsAndIsNotReplaced) {
  std::filesystem::create_directory(file_);
  EXPECT_EQ(load().env_Form3_Height, 8310);
  EXPECT_FALSE(save(Settings()).ok());
  EXPECT_TRUE(std::filesystem::is_directory(file_));
  EXPECT_FALSE(fileExists(folder_ / "vel.env.new"));
}

TEST_F(SettingsDamageTest, ATemporaryFileThatCannotBeMadeKeepsTheOldSettings) {
  writeBytes(file_, "\"env_Config\",9\r\n");
  std::filesystem::create_directory(folder_ / "vel.env.new");
  const Status saved = save(Settings());
  ASSERT_FALSE(saved.ok());
  EXPECT_EQ(saved.error().number, ErrorNumber::permissionDenied);
  EXPECT_EQ(readBytes(file_), "\"env_Config\",9\r\n");
}

TEST_F(SettingsDamageTest, AProgramFolderThatIsGoneIsAnErrorAndNoMore) {
  const Status saved = SaveEnv(folder_ / "gone" / "vel.env", Encoding::codePage932(), Settings());
  ASSERT_FALSE(saved.ok());
  EXPECT_EQ(saved.error().number, ErrorNumber::pathNotFound);
}

TEST_F(SettingsDamageTest, ANameThatTheEncodingCannotHoldKeepsTheOldSettings) {
  writeBytes(file_, "\"env_Config\",9\r\n");
  Settings settings;
  settings.env_FltDefName0 = "😀";
  EXPECT_FALSE(save(settings).ok());
  EXPECT_EQ(readBytes(file_), "\"env_Config\",9\r\n");
  EXPECT_THAT(listFolder(folder_.path()).value(), ElementsAre("vel.env"));
}

TEST_F(SettingsDamageTest, WhatACrashLeftOfATemporaryFileIsOverwritten) {
  writeBytes(folder_ / "vel.env.new", std::string(100'000, 'x'));
  ASSERT_TRUE(save(load()).ok());
  EXPECT_EQ(load().env_Form3_Height, 8310);
  EXPECT_THAT(listFolder(folder_.path()).value(), ElementsAre("vel.env"));
}

}  // namespace
}  // namespace vel
