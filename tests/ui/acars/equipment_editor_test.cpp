#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/rewrite_watch.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNotSelected = "Log list not selected. データが選択されていません";
constexpr const char* kIllegal =
    "Illegal character is included. 登録できない文字が含まれています。";

class EquipmentEditor : public test::AcarsWindowTest {
 protected:
  void SetUp() override {
    base_.writeData("aircraft.csv",
                    {"# comment", "JA8089,B744,third", "JA731A,B773", "JA8089,B74S", "N1,A320"});
    base_.writeLog(
        kLog, {"JL0012,O,JA8089,RJTT,KLAX,B744,Log remark,9:05:00",
               "JL0014,O,JA8089,RJTT,KLAX,B744,,9:06:00", "JL0016,O,JA9999,RJTT,KLAX,,,9:07:00"});
    start();
  }
  [[nodiscard]] std::string table() const { return base_.data("aircraft.csv"); }
  [[nodiscard]] bool shown(const char* name) const { return find<QWidget>(name).isVisible(); }
};

TEST_F(EquipmentEditor, TheEditedTypeReplacesTheFirstLineAndRemovesTheOthers) {
  const std::string before = test::readBytes(base_.folders.data / "aircraft.csv");
  select(0);
  test::typeOver(box("Text1"), "B748");
  click("Command1");
  EXPECT_EQ(table(), "JA8089,B748\r\nJA731A,B773\r\nN1,A320\r\n");
  EXPECT_EQ(test::readBytes(base_.folders.data / "aircraft.bak"), before);
  EXPECT_FALSE(fileExists(base_.folders.data / "aircraft.$$$"));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(EquipmentEditor, OnlyTheSelectedLineOfTheListChanges) {
  select(1);
  test::typeOver(box("Text1"), "B748");
  click("Command1");
  EXPECT_THAT(column(kListEquipment), ElementsAre("B744", "B748", ""));
  EXPECT_EQ(line(1), "0002|JL0014|O|JA8089|RJTT|KLAX|B748||09:06:00");
}

TEST_F(EquipmentEditor, AnUnknownRegistrationIsAddedAtTheEnd) {
  select(2);
  test::typeKeys(box("Text1"), " A388 ");
  click("Command1");
  EXPECT_EQ(table(), "JA8089,B744\r\nJA731A,B773\r\nJA8089,B74S\r\nN1,A320\r\nJA9999, A388 \r\n");
  EXPECT_EQ(column(kListEquipment)[2], " A388 ");
}

TEST_F(EquipmentEditor, JapaneseTextIsStoredInCodePage932) {
  select(0);
  test::typeOver(box("Text1"), "ジャンボ");
  click("Command1");
  EXPECT_EQ(test::readBytes(base_.folders.data / "aircraft.csv"),
            "JA8089,\x83\x57\x83\x83\x83\x93\x83\x7B\r\nJA731A,B773\r\nN1,A320\r\n");
}

TEST_F(EquipmentEditor, AnEmptyTypeDeletesTheRegistrationAndEmptiesTheColumn) {
  select(0);
  test::typeOver(box("Text1"), "");
  click("Command1");
  EXPECT_EQ(table(), "JA731A,B773\r\nN1,A320\r\n");
  EXPECT_THAT(column(kListEquipment), ElementsAre("", "B744", ""));
}

TEST_F(EquipmentEditor, EnterInTheBoxPressesItsButton) {
  select(0);
  test::typeOver(box("Text1"), "B748");
  test::pressKey(box("Text1"), Qt::Key_Return);
  EXPECT_EQ(table(), "JA8089,B748\r\nJA731A,B773\r\nN1,A320\r\n");
}

TEST_F(EquipmentEditor, WithoutASelectedLineNothingIsWritten) {
  const std::string before = table();
  select(0);
  test::typeOver(box("Text1"), "a,b");
  list().clearSelection();
  click("Command1");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNotSelected));
  EXPECT_EQ(table(), before);
}

TEST_F(EquipmentEditor, ACommaOrAQuoteIsRefusedAndTheBoxStaysAsTyped) {
  const std::string before = test::readBytes(base_.folders.data / "aircraft.csv");
  select(0);
  for (const char* typed : {"B744,F", "B744\"", "\"", ","}) {
    desktop_.messages.clear();
    test::typeOver(box("Text1"), typed);
    click("Command1");
    EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal)) << typed;
    EXPECT_EQ(text("Text1"), typed);
  }
  EXPECT_EQ(test::readBytes(base_.folders.data / "aircraft.csv"), before);
  EXPECT_THAT(column(kListEquipment), ElementsAre("B744", "B744", ""));
  EXPECT_THAT(listFolder(base_.folders.data).value(),
              ElementsAre("aircraft.csv", "airport.csv", "FLIGHT.csv", "letter.csv"));
  EXPECT_FALSE(shown("Label6"));
}

TEST_F(EquipmentEditor, ATextThatTheTablesCannotHoldIsRefused) {
  const std::string before = table();
  select(0);
  for (const char* typed : {"B744 ✈", "한국", "50¥"}) {
    desktop_.messages.clear();
    test::typeOver(box("Text1"), typed);
    click("Command1");
    EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal)) << typed;
  }
  EXPECT_EQ(table(), before);
}

TEST_F(EquipmentEditor, BlanksAndOtherPunctuationAreStored) {
  select(0);
  test::typeOver(box("Text1"), "B744;'(x)/& #1");
  click("Command1");
  EXPECT_EQ(table(), "JA8089,B744;'(x)/& #1\r\nJA731A,B773\r\nN1,A320\r\n");
}

TEST_F(EquipmentEditor, ProcessingIsShownAndTheButtonIsDisabledWhileTheTableIsWritten) {
  select(0);
  test::typeOver(box("Text1"), "B748");
  test::watchRewrite(
      jobs(), [this] { clickOnly("Command1"); },
      [this](int) {
        EXPECT_TRUE(shown("Label7"));
        EXPECT_FALSE(button("Command1").isEnabled());
        // A second press does nothing.
        clickOnly("Command1");
        EXPECT_EQ(column(kListEquipment)[0], "B744");
      });
  EXPECT_FALSE(shown("Label7"));
  EXPECT_TRUE(button("Command1").isEnabled());
  EXPECT_EQ(table(), "JA8089,B748\r\nJA731A,B773\r\nN1,A320\r\n");
}

TEST_F(EquipmentEditor, CompleteIsShownAndHiddenAgainByTheTimer) {
  select(0);
  click("Command1");
  EXPECT_TRUE(shown("Label6"));
  EXPECT_EQ(text("Label6"), "Complete");
  EXPECT_TRUE(find<QTimer>("Timer1").isActive());
  EXPECT_TRUE(QTest::qWaitFor([this] { return !shown("Label6"); }, 5000));
  EXPECT_FALSE(find<QTimer>("Timer1").isActive());
}

TEST_F(EquipmentEditor, TheButtonKeepsTheKeyboardAfterItWasPressed) {
  select(0);
  button("Command1").setFocus();
  test::pressKey(button("Command1"), Qt::Key_Space);
  EXPECT_TRUE(shown("Label6"));
  EXPECT_TRUE(button("Command1").hasFocus());
}

TEST_F(EquipmentEditor, AMissingTableEndsTheProgramWithNothingWritten) {
  select(0);
  fs::remove(base_.folders.data / "aircraft.csv");
  click("Command1");
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_THAT(listFolder(base_.folders.data).value(),
              ElementsAre("airport.csv", "FLIGHT.csv", "letter.csv"));
  EXPECT_EQ(column(kListEquipment)[0], "B744");
  EXPECT_FALSE(shown("Label6"));
}

TEST_F(EquipmentEditor, AReadDuringTheRewriteLeavesTheNewListAlone) {
  select(0);
  test::typeOver(box("Text1"), "B748");
  clickOnly("Command1");
  click("Command5");
  EXPECT_EQ(table(), "JA8089,B748\r\nJA731A,B773\r\nN1,A320\r\n");
  EXPECT_THAT(column(kListEquipment), ElementsAre("B744", "B744", ""));
}

TEST_F(EquipmentEditor, AnotherLineSelectedDuringTheRewriteKeepsItsEquipment) {
  select(0);
  test::typeOver(box("Text1"), "B748");
  clickOnly("Command1");
  list().setListIndex(2);
  test::finishJobs();
  settle();
  EXPECT_THAT(column(kListEquipment), ElementsAre("B748", "B744", ""));
}

TEST_F(EquipmentEditor, TheNextLookUpShowsTheEdit) {
  select(0);
  test::typeOver(box("Text1"), "B748");
  click("Command1");
  select(1);
  EXPECT_EQ(text("Text1"), "B748");
}

TEST_F(EquipmentEditor, AnEditInASortedListChangesTheShownLineInItsPlace) {
  clickTitle(kListTime);
  clickTitle(kListTime);
  select(0);
  EXPECT_EQ(list().selectedText(kListFlight), "JL0016");
  test::typeOver(box("Text1"), "ZZZZ");
  click("Command1");
  EXPECT_THAT(column(kListEquipment), ElementsAre("ZZZZ", "B744", "B744"));
  EXPECT_EQ(table(), "JA8089,B744\r\nJA731A,B773\r\nJA8089,B74S\r\nN1,A320\r\nJA9999,ZZZZ\r\n");
}

TEST_F(EquipmentEditor, ARegistrationWithAQuoteIsRefused) {
  base_.writeLog(kLog, {"JL0012,O,JA\"9,RJTT,KLAX,B744,,9:05:00"});
  click("Command5");
  select(0);
  const std::string before = table();
  test::typeOver(box("Text1"), "B748");
  click("Command1");
  EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal));
  EXPECT_EQ(table(), before);
}

TEST_F(EquipmentEditor, TheBoxComesBeforeItsButtonInTheOrderOfTheTabKey) {
  select(0);
  box("Text1").setFocus();
  QTest::keyClick(&box("Text1"), Qt::Key_Tab);
  EXPECT_TRUE(button("Command1").hasFocus());
}

}  // namespace
}  // namespace vel
