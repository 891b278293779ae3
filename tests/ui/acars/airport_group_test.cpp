#include <QElapsedTimer>
#include <QLabel>
#include <QListView>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/rewrite_watch.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNoCode = "Write 4-letter airport code. 4桁の空港コードを記入してください";
constexpr const char* kIllegal =
    "Illegal character is included. 登録できない文字が含まれています。";

class AirportGroupWindow : public test::AcarsWindowTest {
 protected:
  void SetUp() override {
    base_.writeData("airport.csv", {"RJTT,Tokyo Haneda HND", "RJAA,Tokyo Narita NRT",
                                    "KLAX,Los Angeles LAX", "XHND,HNDville XXX",
                                    "RJCC,新千歳 ＣＴＳ CTS", "RJTT,Second Haneda HND,third"});
    start();
  }
  [[nodiscard]] QListView& candidates() const { return find<QListView>("List1"); }
  [[nodiscard]] std::vector<std::string> listed() const {
    std::vector<std::string> names;
    const QAbstractItemModel* model = candidates().model();
    for (int i = 0; i < model->rowCount(); ++i) {
      names.push_back(model->index(i, 0).data().toString().toStdString());
    }
    return names;
  }
  void clickCandidate(int row) const {
    const QModelIndex index = candidates().model()->index(row, 0);
    candidates().scrollTo(index);
    QTest::mouseClick(candidates().viewport(), Qt::LeftButton, {},
                      candidates().visualRect(index).center());
  }
  [[nodiscard]] std::string table() const { return base_.data("airport.csv"); }
};

TEST_F(AirportGroupWindow, AtStartTheWholeTableIsListedInFileOrder) {
  EXPECT_THAT(listed(), ElementsAre("Tokyo Haneda HND", "Tokyo Narita NRT", "Los Angeles LAX",
                                    "HNDville XXX", "新千歳 ＣＴＳ CTS", "Second Haneda HND"));
}

TEST_F(AirportGroupWindow, TheKeywordHanedaFindsHanedaWhateverItsCase) {
  test::typeKeys(box("Text3"), "haneda");
  EXPECT_THAT(listed(), ElementsAre("Tokyo Haneda HND", "Second Haneda HND"));
  test::typeOver(box("Text3"), "HANEDA");
  EXPECT_THAT(listed(), ElementsAre("Tokyo Haneda HND", "Second Haneda HND"));
}

TEST_F(AirportGroupWindow, TheKeywordHndFindsItAnywhereInTheName) {
  test::typeKeys(box("Text3"), "HND");
  EXPECT_THAT(listed(), ElementsAre("Tokyo Haneda HND", "HNDville XXX", "Second Haneda HND"));
}

TEST_F(AirportGroupWindow, TheKeywordIsNotLookedForInTheCode) {
  test::typeKeys(box("Text3"), "RJAA");
  EXPECT_THAT(listed(), IsEmpty());
}

TEST_F(AirportGroupWindow, JapaneseAndFullWidthKeywordsAreFound) {
  test::typeOver(box("Text3"), "千歳");
  EXPECT_THAT(listed(), ElementsAre("新千歳 ＣＴＳ CTS"));
  test::typeOver(box("Text3"), "ｃｔｓ");
  EXPECT_THAT(listed(), ElementsAre("新千歳 ＣＴＳ CTS"));
}

TEST_F(AirportGroupWindow, EveryKeystrokeNarrowsTheCandidatesAndAnEmptyBoxListsAll) {
  test::typeKeys(box("Text3"), "n");
  EXPECT_EQ(listed().size(), 5U);
  test::typeKeys(box("Text3"), "r");
  EXPECT_THAT(listed(), ElementsAre("Tokyo Narita NRT"));
  QTest::keyClick(&box("Text3"), Qt::Key_Backspace);
  QTest::keyClick(&box("Text3"), Qt::Key_Backspace);
  EXPECT_EQ(listed().size(), 6U);
}

TEST_F(AirportGroupWindow, AnEditOfTheTableIsSeenByTheNextSearch) {
  base_.writeData("airport.csv", {"EGLL,London Heathrow LHR"});
  test::typeKeys(box("Text3"), "l");
  EXPECT_THAT(listed(), ElementsAre("London Heathrow LHR"));
}

TEST_F(AirportGroupWindow, AMissingTableEndsTheProgramWithItsMessage) {
  std::filesystem::remove(base_.folders.data / "airport.csv");
  test::typeKeys(box("Text3"), "h");
  EXPECT_THAT(desktop_.messages, ElementsAre("Not found data\\airport.csv"));
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_THAT(listed(), IsEmpty());
}

TEST_F(AirportGroupWindow, AClickOnACandidateShowsItsCodeInTheToolTip) {
  clickCandidate(2);
  EXPECT_EQ(candidates().toolTip(), QStringLiteral("KLAX"));
  clickCandidate(0);
  EXPECT_EQ(candidates().toolTip(), QStringLiteral("RJTT"));
  test::typeKeys(box("Text3"), "n");
  EXPECT_TRUE(candidates().toolTip().isEmpty());
}

TEST_F(AirportGroupWindow, TheArrowKeysShowTheCodeToo) {
  clickCandidate(0);
  candidates().setFocus();
  QTest::keyClick(&candidates(), Qt::Key_Down);
  EXPECT_EQ(candidates().toolTip(), QStringLiteral("RJAA"));
}

TEST_F(AirportGroupWindow, TheArrowButtonsPutTheCodeIntoTheRoute) {
  select(0);
  test::typeKeys(box("Text3"), "narita");
  clickCandidate(0);
  EXPECT_EQ(button("Command3(0)").text(), QStringLiteral("<"));
  click("Command3(0)");
  EXPECT_EQ(text("Text2(0)"), "RJAA");
  EXPECT_EQ(text("Label2(4)"), "Tokyo Narita NRT");
  EXPECT_EQ(text("Text2(1)"), "KLAX");
  test::typeOver(box("Text3"), "haneda");
  clickCandidate(1);
  click("Command3(1)");
  EXPECT_EQ(text("Text2(0)"), "RJAA");
  EXPECT_EQ(text("Text2(1)"), "RJTT");
}

TEST_F(AirportGroupWindow, WithoutACandidateTheArrowButtonsChangeNothing) {
  select(0);
  click("Command3(0)");
  click("Command3(1)");
  EXPECT_EQ(text("Text2(0)"), "RJTT");
  EXPECT_EQ(text("Text2(1)"), "KLAX");
}

TEST_F(AirportGroupWindow, TypingSmallLettersGivesACapitalCodeAndItsName) {
  test::typeKeys(box("Text2(5)"), "rjt");
  EXPECT_EQ(text("Text2(5)"), "rjt");
  EXPECT_EQ(text("Text2(6)"), "");
  test::typeKeys(box("Text2(5)"), "t");
  EXPECT_EQ(text("Text2(5)"), "RJTT");
  EXPECT_EQ(text("Text2(6)"), "Tokyo Haneda HND");
}

TEST_F(AirportGroupWindow, ACodeOfAnotherLengthEmptiesTheName) {
  test::typeKeys(box("Text2(5)"), "RJTT");
  test::typeKeys(box("Text2(5)"), "x");
  EXPECT_EQ(text("Text2(6)"), "");
  QTest::keyClick(&box("Text2(5)"), Qt::Key_Backspace);
  EXPECT_EQ(text("Text2(6)"), "Tokyo Haneda HND");
  QTest::keyClick(&box("Text2(5)"), Qt::Key_Backspace);
  EXPECT_EQ(text("Text2(6)"), "");
}

TEST_F(AirportGroupWindow, ALetterWithoutACapitalOfOneCharacterKeepsTheCodesLength) {
  test::typeKeys(box("Text2(5)"), "rjt");
  test::commitText(box("Text2(5)"), "ß");
  EXPECT_EQ(text("Text2(5)"), "RJTß");
}

TEST_F(AirportGroupWindow, AnUnknownCodeHasNoName) {
  test::typeKeys(box("Text2(5)"), "zzzz");
  EXPECT_EQ(text("Text2(5)"), "ZZZZ");
  EXPECT_EQ(text("Text2(6)"), "");
}

TEST_F(AirportGroupWindow, AnAirportIsChangedInItsPlaceAndStaysOneLine) {
  const std::string before = test::readBytes(base_.folders.data / "airport.csv");
  test::typeKeys(box("Text2(5)"), "rjtt");
  test::typeOver(box("Text2(6)"), "東京 HND");
  click("Command8");
  EXPECT_EQ(table(),
            "RJTT,東京 HND\r\nRJAA,Tokyo Narita NRT\r\nKLAX,Los Angeles LAX\r\n"
            "XHND,HNDville XXX\r\nRJCC,新千歳 ＣＴＳ CTS\r\n");
  EXPECT_EQ(test::readBytes(base_.folders.data / "airport.bak"), before);
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(AirportGroupWindow, ANewAirportIsAddedAtTheEndWithoutASelectedLine) {
  test::typeKeys(box("Text2(5)"), "egll");
  test::typeKeys(box("Text2(6)"), "London LHR");
  test::pressKey(box("Text2(6)"), Qt::Key_Return);
  EXPECT_TRUE(table().ends_with("RJTT,Second Haneda HND\r\nEGLL,London LHR\r\n"));
}

TEST_F(AirportGroupWindow, AnEmptyNameDeletesEveryLineOfTheCode) {
  test::typeKeys(box("Text2(5)"), "rjtt");
  test::typeOver(box("Text2(6)"), "");
  click("Command8");
  EXPECT_EQ(table(),
            "RJAA,Tokyo Narita NRT\r\nKLAX,Los Angeles LAX\r\nXHND,HNDville XXX\r\n"
            "RJCC,新千歳 ＣＴＳ CTS\r\n");
}

TEST_F(AirportGroupWindow, ACodeOfThreeLettersIsRefusedAndNothingIsWritten) {
  const std::string before = test::readBytes(base_.folders.data / "airport.csv");
  for (const char* code : {"HND", "", "RJTTX", "RJ,"}) {
    desktop_.messages.clear();
    test::typeOver(box("Text2(5)"), code);
    test::typeOver(box("Text2(6)"), "a,b");
    click("Command8");
    EXPECT_THAT(desktop_.messages, ElementsAre(kNoCode)) << code;
  }
  EXPECT_EQ(test::readBytes(base_.folders.data / "airport.csv"), before);
  EXPECT_FALSE(fileExists(base_.folders.data / "airport.bak"));
}

TEST_F(AirportGroupWindow, ACommaOrAQuoteIsRefused) {
  const std::string before = table();
  test::typeKeys(box("Text2(5)"), "RJTT");
  test::typeOver(box("Text2(6)"), "Tokyo, Haneda HND");
  click("Command8");
  test::typeOver(box("Text2(5)"), "RJ\"T");
  test::typeOver(box("Text2(6)"), "Tokyo");
  click("Command8");
  EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal, kIllegal));
  EXPECT_EQ(table(), before);
}

TEST_F(AirportGroupWindow, ProcessingAndCompleteAreShownAroundTheWrite) {
  test::typeKeys(box("Text2(5)"), "RJTT");
  test::watchRewrite(
      jobs(), [this] { clickOnly("Command8"); },
      [this](int) {
        EXPECT_TRUE(find<QLabel>("Label7").isVisible());
        EXPECT_FALSE(button("Command8").isEnabled());
      });
  EXPECT_TRUE(button("Command8").isEnabled());
  EXPECT_FALSE(find<QLabel>("Label7").isVisible());
  EXPECT_TRUE(find<QLabel>("Label6").isVisible());
}

TEST_F(AirportGroupWindow, ReachingTheListWithTheTabKeyChoosesNothing) {
  select(0);
  box("Text3").setFocus();
  QTest::keyClick(&box("Text3"), Qt::Key_Tab);
  ASSERT_TRUE(candidates().hasFocus());
  EXPECT_TRUE(candidates().toolTip().isEmpty());
  click("Command3(0)");
  EXPECT_EQ(text("Text2(0)"), "RJTT");
  EXPECT_EQ(text("Text2(1)"), "KLAX");
  // An arrow key does.
  candidates().setFocus();
  QTest::keyClick(&candidates(), Qt::Key_Down);
  click("Command3(1)");
  EXPECT_EQ(text("Text2(1)"), candidates().toolTip().toStdString());
  EXPECT_NE(text("Text2(1)"), "KLAX");
}

TEST_F(AirportGroupWindow, ACandidateThatTheTableLostMeanwhileLeavesTheRoute) {
  select(0);
  clickCandidate(1);
  base_.writeData("airport.csv", {"RJTT,Tokyo Haneda HND", "KLAX,Los Angeles LAX"});
  click("Command3(0)");
  EXPECT_EQ(text("Text2(0)"), "RJTT");
  EXPECT_EQ(text("Notice(0)"), "Not in airport.csv / 未登録: Tokyo Narita NRT");
  EXPECT_TRUE(find<QLabel>("Notice(0)").isVisible());
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(AirportGroupWindow, ALongNameShowsItsBeginning) {
  base_.writeData("airport.csv", {"RJTT," + std::string(300, 'n')});
  test::typeKeys(box("Text2(5)"), "rjtt");
  EXPECT_EQ(box("Text2(6)").cursorPosition(), 0);
}

}  // namespace
}  // namespace vel
