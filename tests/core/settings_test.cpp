#include "core/settings.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::cp932;
using test::cp932Lines;
using test::readBytes;
using test::RecordingDesktop;
using test::TemporaryFolder;
using test::writeBytes;
using testing::ElementsAre;
using testing::IsEmpty;

const DefaultSearches kSearches = {"https://photo.example/search/photo.search?regsearch=",
                                   "http://home.example/?F="};

class SettingsTest : public testing::Test {
 protected:
  Settings load() {
    Settings settings;
    EXPECT_TRUE(LoadEnv(desktop_, file_, encoding_, kSearches, settings).ok());
    return settings;
  }
  Settings loadOf(std::string_view bytes) {
    writeBytes(file_, bytes);
    return load();
  }
  Status save(const Settings& settings) { return SaveEnv(file_, encoding_, settings); }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "vel.env";
  Encoding encoding_ = Encoding::codePage932();
  RecordingDesktop desktop_;
};

// "With no vel.env, the search combo boxes show "USER DEF" first, the raw log
// viewer opens 9975 wide and 8310 high, and the main window keeps its designed
// size."
TEST_F(SettingsTest, WithNoFileTheDefaultsStand) {
  const Settings settings = load();
  EXPECT_EQ(settings.env_regDefName0, "USER DEF");
  EXPECT_EQ(settings.env_regDefUrl0, "https://photo.example/search/photo.search?regsearch=");
  EXPECT_EQ(settings.env_FltDefName0, "USER DEF");
  EXPECT_EQ(settings.env_FltDefUrl0, "http://home.example/?F=");
  EXPECT_EQ(settings.env_regSchCmb, 0);
  EXPECT_EQ(settings.env_fltSchCmb, 0);
  EXPECT_EQ(settings.env_Form3_Top, 0);
  EXPECT_EQ(settings.env_Form3_Left, 0);
  EXPECT_EQ(settings.env_Form3_Height, 8310);
  EXPECT_EQ(settings.env_Form3_Width, 9975);
  EXPECT_EQ(settings.env_Form1_Top, 0);
  EXPECT_EQ(settings.env_Form1_Left, 0);
  EXPECT_EQ(settings.env_Form1_Height, 0);
  EXPECT_EQ(settings.env_Form1_Width, 0);
  EXPECT_EQ(settings.env_Form1_WinS, 0);
  EXPECT_EQ(settings.env_fltSchZsp, 0);
  EXPECT_EQ(settings.env_keepCsrPos, 0);
  EXPECT_EQ(settings.env_Config, 0);
  EXPECT_FALSE(fileExists(file_)) << "reading creates nothing";
}

TEST_F(SettingsTest, LoadingWritesItsTwoRunLogLinesAndShowsNothing) {
  load();
  EXPECT_THAT(desktop_.runLogLines, ElementsAre("Start LoadEnv", "End LoadEnv"));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(SettingsTest, LoadingAssignsDefaultsOverWhatWasThere) {
  Settings settings;
  settings.env_Config = 7;
  settings.env_regDefName0 = "mine";
  EXPECT_TRUE(LoadEnv(desktop_, file_, encoding_, kSearches, settings).ok());
  EXPECT_EQ(settings.env_Config, 0);
  EXPECT_EQ(settings.env_regDefName0, "USER DEF");
}

// "A file that holds only some keys changes only those settings."
TEST_F(SettingsTest, AFileThatHoldsOnlySomeKeysChangesOnlyThose) {
  const Settings settings = loadOf("\"env_fltSchCmb\",2\r\n\"env_Form1_Width\",12000\r\n");
  EXPECT_EQ(settings.env_fltSchCmb, 2);
  EXPECT_EQ(settings.env_Form1_Width, 12000);
  EXPECT_EQ(settings.env_regDefName0, "USER DEF");
  EXPECT_EQ(settings.env_Form3_Height, 8310);
  EXPECT_EQ(settings.env_regSchCmb, 0);
}

// "A value that holds a comma survives a save and a load, because text values
// are quoted."
TEST_F(SettingsTest, AValueThatHoldsACommaSurvivesASaveAndALoad) {
  Settings settings = load();
  settings.env_regDefName0 = "photos, mine, all";
  settings.env_regDefUrl0 = "https://x.example/?a=1,2&b=";
  ASSERT_TRUE(save(settings).ok());
  EXPECT_EQ(load().env_regDefName0, "photos, mine, all");
  EXPECT_EQ(load().env_regDefUrl0, "https://x.example/?a=1,2&b=");
}

TEST_F(SettingsTest, AValueThatHoldsAQuoteSurvivesASaveAndALoad) {
  for (const char* name : {"a\"b", "\"", "\"\"", "a\",\"b", "\",", "ends with \""}) {
    Settings settings = load();
    settings.env_FltDefName0 = name;
    settings.env_Config = 3;
    ASSERT_TRUE(save(settings).ok());
    EXPECT_EQ(load().env_FltDefName0, name);
    EXPECT_EQ(load().env_Config, 3) << "the lines after it are read too";
  }
}

TEST_F(SettingsTest, TextsKeepTheirBlanksAndMayBeEmpty) {
  Settings settings = load();
  settings.env_regDefName0 = "  two  blanks ";
  settings.env_FltDefName0 = "";
  ASSERT_TRUE(save(settings).ok());
  EXPECT_EQ(load().env_regDefName0, "  two  blanks ");
  EXPECT_EQ(load().env_FltDefName0, "");
}

// "After a save, the file holds exactly eighteen lines, keys in table order."
TEST_F(SettingsTest, ASaveWritesExactlyEighteenLinesInOrder) {
  ASSERT_TRUE(save(load()).ok());
  EXPECT_EQ(readBytes(file_),
            "\"env_regDefName0\",\"USER DEF\"\r\n"
            "\"env_regDefUrl0\",\"https://photo.example/search/photo.search?regsearch=\"\r\n"
            "\"env_FltDefName0\",\"USER DEF\"\r\n"
            "\"env_FltDefUrl0\",\"http://home.example/?F=\"\r\n"
            "\"env_regSchCmb\",0\r\n"
            "\"env_fltSchCmb\",0\r\n"
            "\"env_Form3_Top\",0\r\n"
            "\"env_Form3_Left\",0\r\n"
            "\"env_Form3_Height\",8310\r\n"
            "\"env_Form3_Width\",9975\r\n"
            "\"env_Form1_Top\",0\r\n"
            "\"env_Form1_Left\",0\r\n"
            "\"env_Form1_Height\",0\r\n"
            "\"env_Form1_Width\",0\r\n"
            "\"env_Form1_WinS\",0\r\n"
            "\"env_fltSchZsp\",0\r\n"
            "\"env_keepCsrPos\",0\r\n"
            "\"env_Config\",0\r\n");
  EXPECT_THAT(listFolder(folder_.path()).value(), ElementsAre("vel.env"));
}

TEST_F(SettingsTest, EverySettingSurvivesASaveAndALoad) {
  Settings settings;
  settings.env_regDefName0 = "機体写真";
  settings.env_regDefUrl0 = "r";
  settings.env_FltDefName0 = "便名～①";
  settings.env_FltDefUrl0 = "f";
  settings.env_regSchCmb = 1;
  settings.env_fltSchCmb = 2;
  settings.env_Form3_Top = -15;
  settings.env_Form3_Left = 4.5;
  settings.env_Form3_Height = 5;
  settings.env_Form3_Width = 6;
  settings.env_Form1_Top = 7;
  settings.env_Form1_Left = -8;
  settings.env_Form1_Height = 12345.75;
  settings.env_Form1_Width = 1000000;
  settings.env_Form1_WinS = kMaximised;
  settings.env_fltSchZsp = 1;
  settings.env_keepCsrPos = -1;
  settings.env_Config = 65535;
  ASSERT_TRUE(save(settings).ok());
  const Settings read = load();
  EXPECT_EQ(read.env_regDefName0, "機体写真");
  EXPECT_EQ(read.env_regDefUrl0, "r");
  EXPECT_EQ(read.env_FltDefName0, "便名～①");
  EXPECT_EQ(read.env_FltDefUrl0, "f");
  EXPECT_EQ(read.env_regSchCmb, 1);
  EXPECT_EQ(read.env_fltSchCmb, 2);
  EXPECT_EQ(read.env_Form3_Top, -15);
  EXPECT_EQ(read.env_Form3_Left, 4.5);
  EXPECT_EQ(read.env_Form3_Height, 5);
  EXPECT_EQ(read.env_Form3_Width, 6);
  EXPECT_EQ(read.env_Form1_Top, 7);
  EXPECT_EQ(read.env_Form1_Left, -8);
  EXPECT_EQ(read.env_Form1_Height, 12345.75);
  EXPECT_EQ(read.env_Form1_Width, 1000000);
  EXPECT_EQ(read.env_Form1_WinS, 2);
  EXPECT_EQ(read.env_fltSchZsp, 1);
  EXPECT_EQ(read.env_keepCsrPos, -1);
  EXPECT_EQ(read.env_Config, 65535);
}

TEST_F(SettingsTest, NamesAreSavedInCodePage932) {
  Settings settings = load();
  settings.env_regDefName0 = "表示－①";
  ASSERT_TRUE(save(settings).ok());
  EXPECT_TRUE(
      readBytes(file_).starts_with("\"env_regDefName0\",\"\x95\x5C\x8E\xA6\x81\x7C\x87\x40\"\r\n"));
}

TEST_F(SettingsTest, AKeyThatOccursTwiceKeepsItsLastValue) {
  EXPECT_EQ(loadOf("\"env_Config\",1\r\n\"env_Config\",2\r\n").env_Config, 2);
}

TEST_F(SettingsTest, UnknownKeysAreSkippedAndKeysTellCaseApart) {
  const Settings settings = loadOf(
      "\"env_new\",\"x\"\r\n\"ENV_CONFIG\",5\r\n\"env_Config \",6\r\n\"env_regSchCmb\",2\r\n");
  EXPECT_EQ(settings.env_Config, 0);
  EXPECT_EQ(settings.env_regSchCmb, 2);
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(SettingsTest, LfAloneAndAMissingLastLineEndAreAccepted) {
  const Settings settings = loadOf("\"env_Config\",1\n\"env_regSchCmb\",2");
  EXPECT_EQ(settings.env_Config, 1);
  EXPECT_EQ(settings.env_regSchCmb, 2);
}

TEST_F(SettingsTest, TrueIsOneAndFalseIsZero) {
  const Settings settings =
      loadOf("\"env_keepCsrPos\",#TRUE#\r\n\"env_fltSchZsp\",#FALSE#\r\n\"env_Config\",4\r\n");
  EXPECT_EQ(settings.env_keepCsrPos, 1);
  EXPECT_EQ(settings.env_fltSchZsp, 0);
  EXPECT_EQ(settings.env_Config, 4);
}

TEST(SettingLine, NumbersAreBareInTheirShortestForm) {
  EXPECT_EQ(formatSetting("env_Form3_Height", 8310.0), "\"env_Form3_Height\",8310");
  EXPECT_EQ(formatSetting("k", -15.5), "\"k\",-15.5");
  EXPECT_EQ(formatSetting("k", 0.1), "\"k\",0.1");
  EXPECT_EQ(formatSetting("k", 1e6), "\"k\",1000000");
  EXPECT_EQ(formatSetting("k", true), "\"k\",#TRUE#");
  EXPECT_EQ(formatSetting("k", false), "\"k\",#FALSE#");
  EXPECT_EQ(formatSetting("k", "a,b"), "\"k\",\"a,b\"");
}

TEST(SettingLine, AValueComesBackAsTheKindThatWasWritten) {
  const auto valueOf = [](std::string_view line) { return parseSetting(line).value().second; };
  EXPECT_EQ(valueOf("\"k\",\"12\""), SettingValue(std::string("12")));
  EXPECT_EQ(valueOf("\"k\",12"), SettingValue(12.0));
  EXPECT_EQ(valueOf("\"k\", -0.5 "), SettingValue(-0.5));
  EXPECT_EQ(valueOf("\"k\",#TRUE#"), SettingValue(true));
  EXPECT_EQ(valueOf("k,3"), SettingValue(3.0));
  EXPECT_EQ(parseSetting("\"a,b\",3").value().first, "a,b");
}

}  // namespace
}  // namespace vel
