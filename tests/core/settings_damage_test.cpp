// What a settings file that is damaged, or that cannot be written, costs: never
// a default, never the old file, never a word to the user.

#include <algorithm>
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
    loaded_ = LoadEnv(desktop_, file_, encoding_, {"photo=", "flight="}, settings);
    return settings;
  }
  Status save(const Settings& settings) { return SaveEnv(file_, encoding_, settings); }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "vel.env";
  Encoding encoding_ = Encoding::codePage932();
  Status loaded_;
  RecordingDesktop desktop_;
};

TEST_F(SettingsDamageTest, ReadingStopsAtABadLineAndKeepsWhatItRead) {
  const std::string nuls("\0\0\0\0", 4);
  const std::string endless(std::size_t{3} << 20, '7');
  const std::string lines[] = {
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
             "\"env_regDefName0\",\"a\x85\x01"
             "b\"\r\n\"env_Config\",9\r\n");
  EXPECT_EQ(load().env_regDefName0,
            "a\uFFFD\x01"
            "b");
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

TEST_F(SettingsDamageTest, BlankLinesAreSkipped) {
  writeBytes(file_, "\r\n\"env_regSchCmb\",2\r\n\r\n   \r\n\n\"env_Config\",9\r\n\r\n");
  EXPECT_EQ(load().env_regSchCmb, 2);
  EXPECT_EQ(load().env_Config, 9);
}

TEST_F(SettingsDamageTest, ALoneCrEndsALineAndAByteOrderMarkIsSkipped) {
  writeBytes(file_,
             "\xEF\xBB\xBF\"env_regSchCmb\",2\r\"env_regDefName0\",\"a\"\r\"env_Config\",9\r");
  const Settings settings = load();
  EXPECT_EQ(settings.env_regSchCmb, 2);
  EXPECT_EQ(settings.env_regDefName0, "a");
  EXPECT_EQ(settings.env_Config, 9);
}

TEST_F(SettingsDamageTest, AFolderInItsPlaceLeavesTheDefaultsAndIsNotReplaced) {
  std::filesystem::create_directory(file_);
  const Settings settings = load();
  EXPECT_EQ(settings.env_Form3_Height, 8310);
  ASSERT_FALSE(loaded_.ok());
  EXPECT_EQ(loaded_.error().text(),
            "Can't read vel.env. It is left as it is, and the settings are not saved this time."
            "　vel.envを読めません。vel.envはそのままにし、今回の設定は保存しません。");
  EXPECT_FALSE(save(settings).ok());
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

TEST_F(SettingsDamageTest, ANameThatTheEncodingCannotHoldKeepsItsBytesAndCostsNoOtherSetting) {
  writeBytes(file_, "\"env_FltDefName0\",\"" + cp932("便名") + "\"\r\n");
  for (const char* name : {"😀", "two\nlines", "two\rlines"}) {
    Settings settings = load();
    settings.env_FltDefName0 = name;
    settings.env_regDefUrl0 = name;
    settings.env_regDefName0 = "機体";
    settings.env_Config = 9;
    ASSERT_TRUE(save(settings).ok()) << name;
    const std::string saved = readBytes(file_);
    EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 18) << name;
    EXPECT_TRUE(saved.starts_with("\"env_regDefName0\",\"" + cp932("機体") +
                                  "\"\r\n\"env_regDefUrl0\",\"photo=\"\r\n"
                                  "\"env_FltDefName0\",\"" +
                                  cp932("便名") + "\"\r\n"))
        << name;
    EXPECT_TRUE(saved.ends_with("\"env_Config\",9\r\n")) << name;
  }
}

TEST_F(SettingsDamageTest, BytesThatTheEncodingDoesNotKnowAreSavedAsTheyWereRead) {
  const std::string line = "\"env_regDefName0\",\"a\x81\x01 \x85\x40z\"\r\n";
  writeBytes(file_, line);
  Settings settings = load();
  settings.env_Config = 9;
  ASSERT_TRUE(save(settings).ok());
  EXPECT_TRUE(readBytes(file_).starts_with(line));
  EXPECT_TRUE(readBytes(file_).ends_with("\"env_Config\",9\r\n"));
}

TEST_F(SettingsDamageTest, AStartUnderAnotherEncodingCostsNoName) {
  writeBytes(file_, "\"env_regDefName0\",\"" + cp932("機体表示") + "\"\r\n");
  encoding_ = Encoding::named("UTF-8").value();
  Settings settings = load();
  settings.env_FltDefName0 = "便名";
  ASSERT_TRUE(save(settings).ok());
  EXPECT_TRUE(
      readBytes(file_).starts_with("\"env_regDefName0\",\"" + cp932("機体表示") + "\"\r\n"));
  EXPECT_EQ(load().env_FltDefName0, "便名");
  encoding_ = Encoding::codePage932();
  EXPECT_EQ(load().env_regDefName0, "機体表示");
}

TEST_F(SettingsDamageTest, ANameThatIsChangedAndChangedBackIsTheSame) {
  writeBytes(file_, "\"env_regDefName0\",\"a\x81\x01\"\r\n");
  Settings settings = load();
  const std::string before = settings.env_regDefName0;
  settings.env_regDefName0 = "b";
  ASSERT_TRUE(save(settings).ok());
  EXPECT_TRUE(readBytes(file_).starts_with("\"env_regDefName0\",\"b\"\r\n"));
  settings.env_regDefName0 = before;
  ASSERT_TRUE(save(settings).ok());
  EXPECT_TRUE(readBytes(file_).starts_with("\"env_regDefName0\",\"a\x81\x01\"\r\n"));
}

TEST_F(SettingsDamageTest, WhatACrashLeftOfATemporaryFileIsOverwritten) {
  writeBytes(folder_ / "vel.env.new", std::string(100'000, 'x'));
  ASSERT_TRUE(save(load()).ok());
  EXPECT_EQ(load().env_Form3_Height, 8310);
  EXPECT_THAT(listFolder(folder_.path()).value(), ElementsAre("vel.env"));
}

}  // namespace
}  // namespace vel
