#include <QLabel>
#include <QPalette>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/rewrite_watch.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNotSelected = "Log list not selected. データが選択されていません";
constexpr const char* kIllegal =
    "Illegal character is included. 登録できない文字が含まれています。";
const QColor kLightGrey(0xC0, 0xC0, 0xC0);

class AirlineEditorWindow : public test::AcarsWindowTest {
 protected:
  void startWith(std::initializer_list<std::string_view> letterLines) {
    base_.writeData("letter.csv", letterLines);
    base_.writeLog(kLog, {"JL0012,O,JA8089,RJTT,KLAX,B744,Log remark,9:05:00",
                          "QQ0001,O,JA9999,AAAA,BBBB,,,9:07:00", ",O,N1,AAAA,BBBB,,,9:08:00"});
    start();
  }
  [[nodiscard]] std::string table() const { return base_.data("letter.csv"); }
  void fill(const std::string& threeLetter, const std::string& display) const {
    test::typeOver(box("Text2(3)"), threeLetter);
    test::typeOver(box("Text2(4)"), display);
  }
  [[nodiscard]] QColor companyBackground() const {
    const QLineEdit& company = box("Text2(7)");
    const auto group = company.isEnabled() ? QPalette::Active : QPalette::Disabled;
    return company.palette().color(group, QPalette::Base);
  }
  [[nodiscard]] QColor companyLabelColour() const {
    return find<QLabel>("Label2(7)").palette().color(QPalette::Active, QPalette::WindowText);
  }
  void expectFourFields(bool expected) const {
    const QPalette usual;
    EXPECT_EQ(box("Text2(7)").isEnabled(), expected);
    EXPECT_EQ(companyBackground(), expected ? usual.color(QPalette::Base) : kLightGrey);
    EXPECT_EQ(companyLabelColour(), expected ? usual.color(QPalette::WindowText) : kLightGrey);
  }
};

TEST_F(AirlineEditorWindow, TheFrameNamesItsThreeBoxes) {
  startWith({"JL,JAL,Japan Airlines"});
  std::vector<std::string> captions;
  for (const QLabel* label : find<QGroupBox>("Frame3").findChildren<QLabel*>()) {
    captions.push_back(label->text().toStdString());
  }
  EXPECT_THAT(captions, ElementsAre("3Letter", "Display", "Company"));
}

TEST_F(AirlineEditorWindow, ATableOfThreeFieldsDisablesTheCompany) {
  startWith({"NH,ANA,All Nippon", "JL,JAL,Japan Airlines"});
  select(0);
  EXPECT_EQ(text("Text2(3)"), "JAL");
  EXPECT_EQ(text("Text2(4)"), "Japan Airlines");
  EXPECT_EQ(text("Text2(7)"), "");
  expectFourFields(false);
}

TEST_F(AirlineEditorWindow, AFirstLineOfFourFieldsEnablesTheCompanyForEveryAirline) {
  startWith({"NH,ANA,All Nippon,ANA Holdings", "JL,JAL,Japan Airlines,JAL Group"});
  select(0);
  EXPECT_EQ(text("Text2(7)"), "JAL Group");
  expectFourFields(true);
  select(1);
  EXPECT_EQ(text("Text2(7)"), "");
  expectFourFields(true);
}

TEST_F(AirlineEditorWindow, ALastLineOfFourFieldsEnablesTheCompanyOnlyForAirlinesNotFoundBefore) {
  startWith({"JL,JAL,Japan Airlines", "NH,ANA,All Nippon,ANA Holdings"});
  select(0);
  expectFourFields(false);
  select(1);
  expectFourFields(true);
  select(0);
  expectFourFields(false);
}

TEST_F(AirlineEditorWindow, AFlightWithoutAPrefixShowsTheFirstLine) {
  startWith({"NH,ANA,All Nippon", "JL,JAL,Japan Airlines"});
  select(2);
  EXPECT_EQ(text("Text2(3)"), "ANA");
}

TEST_F(AirlineEditorWindow, TheEditedAirlineReplacesItsLine) {
  startWith({"NH,ANA,All Nippon", "JL,JAL,Japan Airlines", "JL,XXX,again", "BA,BAW,British"});
  const std::string before = test::readBytes(base_.folders.data / "letter.csv");
  select(0);
  fill("JLX", "日本航空");
  click("Command6");
  EXPECT_EQ(table(), "NH,ANA,All Nippon\r\nJL,JLX,日本航空\r\nBA,BAW,British\r\n");
  EXPECT_EQ(test::readBytes(base_.folders.data / "letter.bak"), before);
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(AirlineEditorWindow, AnUnknownAirlineIsAddedAtTheEnd) {
  startWith({"NH,ANA,All Nippon", "JL,JAL,Japan Airlines"});
  select(1);
  fill("QQA", "Quick Air");
  click("Command6");
  EXPECT_EQ(table(), "NH,ANA,All Nippon\r\nJL,JAL,Japan Airlines\r\nQQ,QQA,Quick Air\r\n");
}

TEST_F(AirlineEditorWindow, WithFourFieldsTheCompanyIsWrittenOnEveryLine) {
  startWith({"NH,ANA,All Nippon,Holdings,fifth", "JL,JAL,Japan Airlines,JAL Group"});
  select(0);
  test::typeOver(box("Text2(7)"), "Japan Airlines Co.");
  click("Command6");
  EXPECT_EQ(table(), "NH,ANA,All Nippon,Holdings\r\nJL,JAL,Japan Airlines,Japan Airlines Co.\r\n");
}

TEST_F(AirlineEditorWindow, WithFourFieldsAnUnknownAirlineGetsAllFour) {
  startWith({"NH,ANA,All Nippon,Holdings"});
  select(1);
  fill("QQA", "Quick Air");
  click("Command6");
  EXPECT_EQ(table(), "NH,ANA,All Nippon,Holdings\r\nQQ,QQA,Quick Air,\r\n");
}

TEST_F(AirlineEditorWindow, WithFourFieldsAShortLineEndsTheProgramWithTheTableUntouched) {
  startWith({"NH,ANA,All Nippon,Holdings", "JL,JAL,Japan Airlines", "ZZ,ZZZ,three"});
  const std::string before = table();
  select(0);
  click("Command6");
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #9\n\nletter.csv, line 3"));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(table(), before);
}

TEST_F(AirlineEditorWindow, WithFourFieldsTheEditedLineItselfMayBeShort) {
  startWith({"NH,ANA,All Nippon,Holdings", "JL,JAL,Japan Airlines"});
  select(0);
  click("Command6");
  EXPECT_EQ(table(), "NH,ANA,All Nippon,Holdings\r\nJL,JAL,Japan Airlines,\r\n");
}

TEST_F(AirlineEditorWindow, ACommaInTheCompanySplitsTheRecord) {
  startWith({"JL,JAL,Japan Airlines,JAL"});
  select(0);
  test::typeOver(box("Text2(7)"), "Japan Airlines, Ltd.");
  click("Command6");
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(table(), "JL,JAL,Japan Airlines,Japan Airlines, Ltd.\r\n");
}

TEST_F(AirlineEditorWindow, BothBoxesEmptyDeleteTheAirline) {
  startWith({"NH,ANA,All Nippon", "JL,JAL,Japan Airlines", "BA,BAW,British", "JL,J,again"});
  select(0);
  fill("", "");
  click("Command6");
  EXPECT_EQ(table(), "NH,ANA,All Nippon\r\nBA,BAW,British\r\n");
}

TEST_F(AirlineEditorWindow, OneEmptyBoxIsNoDeletion) {
  startWith({"JL,JAL,Japan Airlines"});
  select(0);
  fill("", "Japan");
  click("Command6");
  EXPECT_EQ(table(), "JL,,Japan\r\n");
}

TEST_F(AirlineEditorWindow, ALongerPrefixIsShownButNotReplaced) {
  startWith({"XJL,JAL,Japan Airlines", "NH,ANA,All Nippon"});
  select(0);
  EXPECT_EQ(text("Text2(3)"), "JAL");
  click("Command6");
  EXPECT_EQ(table(), "XJL,JAL,Japan Airlines\r\nNH,ANA,All Nippon\r\nJL,JAL,Japan Airlines\r\n");
}

TEST_F(AirlineEditorWindow, WithoutASelectedLineNothingIsWritten) {
  startWith({"JL,JAL,Japan Airlines"});
  select(0);
  fill("a,b", "x");
  list().clearSelection();
  click("Command6");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNotSelected));
  EXPECT_EQ(table(), "JL,JAL,Japan Airlines\r\n");
}

TEST_F(AirlineEditorWindow, ACommaOrAQuoteInTheCodeOrTheNameIsRefused) {
  startWith({"JL,JAL,Japan Airlines"});
  select(0);
  fill("J,L", "Japan");
  click("Command6");
  fill("JAL", "Japan \"Airlines\"");
  click("Command6");
  EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal, kIllegal));
  EXPECT_EQ(table(), "JL,JAL,Japan Airlines\r\n");
  EXPECT_EQ(text("Text2(4)"), "Japan \"Airlines\"");
}

TEST_F(AirlineEditorWindow, ACompanyThatTheTablesCannotHoldIsRefused) {
  startWith({"JL,JAL,Japan Airlines,JAL"});
  select(0);
  test::typeOver(box("Text2(7)"), "Fly ✈");
  click("Command6");
  EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal));
  EXPECT_EQ(table(), "JL,JAL,Japan Airlines,JAL\r\n");
}

TEST_F(AirlineEditorWindow, TheSelectedRowTakesTheButtonColourUntilTheListIsReadAgain) {
  startWith({"JL,JAL,Japan Airlines"});
  select(0);
  click("Command6");
  const auto background = [this](int row, int column) {
    return window().model()->index(row, column).data(Qt::BackgroundRole);
  };
  const QColor buttonFace = QApplication::palette().color(QPalette::Button);
  for (int column = 0; column < kListColumns; ++column) {
    EXPECT_EQ(background(0, column).value<QColor>(), buttonFace);
    EXPECT_FALSE(background(1, column).isValid());
  }
  clickTitle(kListTime);
  clickTitle(kListTime);
  EXPECT_EQ(background(2, kListFlight).value<QColor>(), buttonFace);
  EXPECT_FALSE(background(0, kListFlight).isValid());
  click("Command5");
  for (int row = 0; row < 3; ++row) EXPECT_FALSE(background(row, kListFlight).isValid());
}

TEST_F(AirlineEditorWindow, ProcessingIsShownAndTheButtonIsDisabledWhileTheTableIsWritten) {
  startWith({"JL,JAL,Japan Airlines"});
  select(0);
  test::watchRewrite(
      jobs(), [this] { QTest::keyClick(&box("Text2(4)"), Qt::Key_Return); },
      [this](int) {
        EXPECT_TRUE(find<QLabel>("Label7").isVisible());
        EXPECT_FALSE(button("Command6").isEnabled());
      });
  EXPECT_TRUE(button("Command6").isEnabled());
  EXPECT_FALSE(find<QLabel>("Label7").isVisible());
  EXPECT_TRUE(find<QLabel>("Label6").isVisible());
}

}  // namespace
}  // namespace vel
