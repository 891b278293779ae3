#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/hfdl_window.h"
#include "tests/ui/support/rewrite_watch.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kIllegal =
    "Illegal character is included. 登録できない文字が含まれています。";
constexpr const char* kNoAddress = "ICAO24コードが記入されていません。";
constexpr const char* kWrongClipboard =
    "データを取得できません。・・・AirframesでICAO24コードを検索した結果のレジから航空会社名までの"
    "データをコピーしてからこのボタンを押してください。3レター、2レター、レジ、機種を記入します。";
constexpr const char* kTable =
    "; a comment\r\n84C27D,JAL,JL,JA8089,B744\r\n84C27D,XXX,XX,X,X\r\n"
    "861234,ANA,NH,JA731A,B773\r\n400001,BAW,BA,G-CIVE\r\n";

class AircraftEditor : public test::HfdlWindowTest {
 protected:
  void SetUp() override {
    start();
    select(0);
  }
  void type(const char* name, const std::string& value) { test::typeOver(box(name), value); }
  [[nodiscard]] std::string table() const { return base_.data("ICAO24.csv"); }
};

TEST_F(AircraftEditor, ARecordIsReplacedInItsPlaceAndEveryLineOfTheAddressFollows) {
  type("Text1(4)", "B748");
  click("Command1");
  EXPECT_EQ(table(),
            "; a comment\r\n84C27D,JAL,JL,JA8089,B748\r\n861234,ANA,NH,JA731A,B773\r\n"
            "400001,BAW,BA,G-CIVE\r\n");
  EXPECT_THAT(column(kHfdlAircraft), ElementsAre("*JA8089 JAL JL B748", "*JA8089 JAL JL B748",
                                                 " JA731A ANA NH B773", "", "*JA8089 JAL JL B748"));
  EXPECT_TRUE(isShown("Label6"));
  EXPECT_EQ(text("Label6"), "Complete");
  EXPECT_FALSE(isShown("Label7"));
  EXPECT_TRUE(button("Command1").isEnabled());
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_TRUE(QTest::qWaitFor([this] { return !isShown("Label6"); }));
}

TEST_F(AircraftEditor, ANewAddressIsAppended) {
  type("Text1(0)", "AAAAAA");
  type("Text1(3)", "N123");
  click("Command1");
  EXPECT_EQ(table(), std::string(kTable) + "AAAAAA,JAL,JL,N123,\r\n");
  EXPECT_THAT(column(kHfdlAircraft)[3], "*N123 JAL JL ");
  EXPECT_THAT(column(kHfdlAircraft)[0], " JA8089 JAL JL B744");
}

TEST_F(AircraftEditor, EnterInABoxPressesEnt) {
  type("Text1(4)", "B748");
  test::pressKey(box("Text1(4)"), Qt::Key_Return);
  EXPECT_EQ(column(kHfdlAircraft)[0], "*JA8089 JAL JL B748");
}

TEST_F(AircraftEditor, WhileItWritesProcessingIsShownAndTheButtonDisabled) {
  std::vector<std::string> labels;
  test::watchRewrite(
      jobs(), [this] { clickOnly("Command1"); },
      [&](int) {
        EXPECT_TRUE(isShown("Label7"));
        EXPECT_FALSE(button("Command1").isEnabled());
        labels.push_back(text("Label7"));
      });
  EXPECT_THAT(labels, ElementsAre("Processing", "Processing"));
}

TEST_F(AircraftEditor, NoLineNeedsToBeSelected) {
  list().setListIndex(-1);
  ASSERT_TRUE(isShown("Frame1"));
  type("Text1(4)", "B748");
  click("Command1");
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(column(kHfdlAircraft)[0], "*JA8089 JAL JL B748");
}

TEST_F(AircraftEditor, ACommaOrAQuoteInAnyBoxIsRefused) {
  for (const char* name : {"Text1(0)", "Text1(1)", "Text1(2)", "Text1(3)", "Text1(4)"}) {
    for (const char* illegal : {",", "\""}) {
      SCOPED_TRACE(std::string(name) + illegal);
      desktop_.messages.clear();
      select(1);
      select(0);
      type(name, illegal);
      click("Command1");
      EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal));
      EXPECT_EQ(table(), kTable);
      EXPECT_EQ(column(kHfdlAircraft)[0], " JA8089 JAL JL B744");
    }
  }
}

TEST_F(AircraftEditor, AnAddressOfAnyLengthIsWrittenWhole) {
  for (const std::size_t length : {std::size_t{32'767}, std::size_t{40'000}}) {
    SCOPED_TRACE(length);
    const std::string address(length, 'A');
    writeAircraftLog(kLog, {address + " N9 -"});
    test::pressKey(browser(), Qt::Key_F5);
    select(0);
    ASSERT_EQ(list().selectedText(kHfdlAddress), address);
    type("Text1(3)", "N123");
    click("Command1");
    EXPECT_THAT(desktop_.messages, IsEmpty());
    EXPECT_TRUE(table().ends_with("\r\n" + address + ",,,N123,\r\n"));
  }
}

TEST_F(AircraftEditor, WhatTheTableCannotHoldIsRefused) {
  type("Text1(4)", "B744 ✈");
  click("Command1");
  EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal));
  EXPECT_EQ(table(), kTable);
}

TEST_F(AircraftEditor, AnEmptyAddressIsRefused) {
  type("Text1(0)", "");
  click("Command1");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoAddress));
  EXPECT_EQ(table(), kTable);
  EXPECT_EQ(aircraft(), "|JAL|JL|JA8089|B744");
}

TEST_F(AircraftEditor, AnIllegalCharacterIsToldBeforeAMissingAddress) {
  type("Text1(0)", "");
  type("Text1(4)", "a,b");
  click("Command1");
  EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal));
}

TEST_F(AircraftEditor, AMissingTableEndsTheProgram) {
  fs::remove(base_.folders.data / "ICAO24.csv");
  click("Command1");
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 1);
}

TEST_F(AircraftEditor, AnAddressInAnotherLetterCaseIsAnotherRecord) {
  type("Text1(0)", "84c27d");
  click("Command1");
  EXPECT_EQ(table(), std::string(kTable) + "84c27d,JAL,JL,JA8089,B744\r\n");
  EXPECT_EQ(column(kHfdlAircraft)[0], " JA8089 JAL JL B744");
}

TEST_F(AircraftEditor, ATypedThreeLetterCodeIsCapitalAndBringsTheTwoLetterCode) {
  type("Text1(1)", "ana");
  EXPECT_EQ(aircraft(), "84C27D|ANA|NH|JA8089|B744");
}

TEST_F(AircraftEditor, ATypedTwoLetterCodeIsCapitalAndBringsTheThreeLetterCode) {
  type("Text1(2)", "ba");
  EXPECT_EQ(aircraft(), "84C27D|BAW|BA|JA8089|B744");
}

TEST_F(AircraftEditor, ACodeThatNobodyHasEmptiesTheOtherOne) {
  type("Text1(1)", "zzz");
  EXPECT_EQ(aircraft(), "84C27D|ZZZ||JA8089|B744");
  type("Text1(2)", "nh");
  type("Text1(2)", "n");
  EXPECT_EQ(aircraft(), "84C27D||N|JA8089|B744");
}

TEST_F(AircraftEditor, TheFirstLineOfACodeCounts) {
  base_.writeData("letter.csv", {"JL,JAL,first", "JX,JAL,second", "JL,JLX,third"});
  type("Text1(1)", "JAL");
  EXPECT_EQ(text("Text1(2)"), "JL");
  type("Text1(2)", "JL");
  EXPECT_EQ(text("Text1(1)"), "JAL");
}

TEST_F(AircraftEditor, ACapitalTypedInTheMiddleKeepsTheCursorThere) {
  box("Text1(1)").setCursorPosition(1);
  box("Text1(1)").setFocus();
  box("Text1(1)").setCursorPosition(1);
  QTest::keyClicks(&box("Text1(1)"), QStringLiteral("x"));
  EXPECT_EQ(text("Text1(1)"), "JXAL");
  EXPECT_EQ(box("Text1(1)").cursorPosition(), 2);
}

TEST_F(AircraftEditor, ATypedRegistrationBringsTheTypeOfItsFirstLine) {
  type("Text1(4)", "old");
  type("Text1(3)", "JA8089");
  EXPECT_EQ(aircraft(), "84C27D|JAL|JL|JA8089|B744");
  type("Text1(3)", "JA731A");
  EXPECT_EQ(text("Text1(4)"), "B773");
  type("Text1(3)", "ja731a");
  EXPECT_EQ(aircraft(), "84C27D|JAL|JL|ja731a|");
}

TEST_F(AircraftEditor, AMissingLetterTableEndsTheProgramAtATypedCode) {
  fs::remove(base_.folders.data / "letter.csv");
  test::typeKeys(box("Text1(1)"), "x");
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  EXPECT_EQ(desktop_.exitStatus, 1);
}

class ClipboardFill : public AircraftEditor {
 protected:
  void fill(const std::string& clipboard) {
    desktop_.clipboard = clipboard;
    click("Command4");
  }
  void expectRefused(const std::string& clipboard) {
    SCOPED_TRACE(clipboard);
    desktop_.messages.clear();
    fill(clipboard);
    EXPECT_THAT(desktop_.messages, ElementsAre(kWrongClipboard));
    EXPECT_EQ(aircraft(), "84C27D|JAL|JL|JA8089|B744");
  }
};

TEST_F(ClipboardFill, NinePartsBetweenTabsFillFourBoxes) {
  fill("G-CIVE\t27092\tA320\t1997\t400123\tBA\tLHR\tactive\tBAW [BA] British Airways");
  EXPECT_EQ(aircraft(), "84C27D|BAW|BA|G-CIVE|A320");
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(table(), kTable);
}

TEST_F(ClipboardFill, WithoutTabsThePartsStandBetweenBlanks) {
  fill("G-CIVE x A320 1997 400123 BAW [BA] British Airways");
  EXPECT_EQ(aircraft(), "84C27D|BAW|BA|G-CIVE|A320");
}

TEST_F(ClipboardFill, WhatIsFilledInIsNotLookedUp) {
  // letter.csv has NH for ANA, and aircraft.csv B744 for JA8089.
  fill("JA8089\tx\tA388\t4\t5\t6\t7\t8\tana [zz]");
  EXPECT_EQ(aircraft(), "84C27D|ana|zz|JA8089|A388");
}

TEST_F(ClipboardFill, EightPartsAreRefused) {
  expectRefused("G-CIVE\tx\tB744\t4\t5\t6\t7\tBAW [BA]");
}

TEST_F(ClipboardFill, TextsOfEveryOtherShapeAreRefused) {
  expectRefused("");
  expectRefused("G-CIVE");
  expectRefused("G-CIVE\tx\tB744\t4\t5\t6\t7\t8\tBAW(BA)");
  expectRefused("G-CIVE\tx\tB744\t4\t5\t6\t7\t8\tBAW[BA]");
  expectRefused("one two three four five six seven eight nine ten");
  expectRefused("a b c d e f [BA]");
}

}  // namespace
}  // namespace vel
