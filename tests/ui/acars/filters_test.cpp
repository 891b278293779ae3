#include <QCheckBox>
#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class AcarsFilters : public test::AcarsWindowTest {
 protected:
  void SetUp() override { start(); }
  [[nodiscard]] QComboBox& photo() const { return find<QComboBox>("Combo4"); }
  [[nodiscard]] QComboBox& comparison() const { return find<QComboBox>("Combo5"); }
  void tickLetter() const {
    QTest::keyClick(&find<QCheckBox>("Check1"), Qt::Key_Space);
    test::finishJobs();
  }
};

TEST_F(AcarsFilters, AtStartAllPhotosAndThePrefixComparisonAreSelected) {
  EXPECT_EQ(photo().currentIndex(), 0);
  EXPECT_EQ(comparison().currentIndex(), 1);
  EXPECT_FALSE(find<QCheckBox>("Check1").isChecked());
  EXPECT_EQ(find<QCheckBox>("Check1").text(), "Letter");
}

TEST_F(AcarsFilters, SmallLettersBecomeCapitalsInEveryBoxButEquipmentAndRemarks) {
  for (const char* name : {"Text4(0)", "Text4(1)", "Text4(2)", "Text4(6)"}) {
    test::typeKeys(box(name), "ab1-zZ");
    EXPECT_EQ(text(name), "AB1-ZZ") << name;
  }
  for (const char* name : {"Text4(4)", "Text4(5)"}) {
    test::typeKeys(box(name), "ab1-zZ");
    EXPECT_EQ(text(name), "ab1-zZ") << name;
  }
}

TEST_F(AcarsFilters, TypingSmallLettersFiltersWithCapitals) {
  test::typeKeys(box("Text4(0)"), "jl");
  EXPECT_EQ(text("Text4(0)"), "JL");
  EXPECT_THAT(flights(), ElementsAre("JL0012"));
  EXPECT_EQ(line(0), "0001|JL0012|O|JA8089|RJTT|KLAX|B744|Log remark|09:05:00");
  EXPECT_EQ(text("Label3"), "1");
}

TEST_F(AcarsFilters, EveryKeystrokeReadsTheLogAgain) {
  const long before = reads();
  test::typeKeys(box("Text4(0)"), "JL");
  EXPECT_EQ(reads(), before + 2);
}

TEST_F(AcarsFilters, TheRegistrationBoxFiltersRegistrations) {
  test::typeKeys(box("Text4(1)"), "ja");
  EXPECT_THAT(flights(), ElementsAre("JL0012", "NH0105"));
}

TEST_F(AcarsFilters, TheAirportBoxFiltersDeparturesAndDestinations) {
  test::typeKeys(box("Text4(2)"), "rjaa");
  EXPECT_THAT(flights(), ElementsAre("BA0007"));
  test::typeOver(box("Text4(2)"), "rjtt");
  EXPECT_THAT(flights(), ElementsAre("JL0012", "NH0105"));
}

TEST_F(AcarsFilters, TheEquipmentBoxFiltersWhatIsTyped) {
  test::typeKeys(box("Text4(4)"), "b744");
  EXPECT_THAT(flights(), IsEmpty());
  test::typeOver(box("Text4(4)"), "B744");
  EXPECT_THAT(flights(), ElementsAre("JL0012", "BA0007"));
}

TEST_F(AcarsFilters, TheRemarksBoxFiltersWhatIsTyped) {
  test::typeKeys(box("Text4(5)"), "remark");
  EXPECT_THAT(flights(), ElementsAre("JL0012"));
  test::typeOver(box("Text4(5)"), "定期");
  EXPECT_THAT(flights(), ElementsAre("NH0105"));
}

TEST_F(AcarsFilters, ThePhotoChooserFiltersBothFormsOfTheMark) {
  test::choose(photo(), 1);
  EXPECT_THAT(flights(), ElementsAre("JL0012", "BA0007"));
  test::choose(photo(), 2);
  EXPECT_THAT(flights(), ElementsAre("NH0105", "ZZ0009"));
  test::choose(photo(), 0);
  EXPECT_THAT(flights(), SizeIs(4));
}

TEST_F(AcarsFilters, TheTimeBoxFiltersByItsComparison) {
  test::typeKeys(box("Text4(6)"), "09:35:00");
  EXPECT_THAT(flights(), ElementsAre("NH0105"));
  test::choose(comparison(), 0);
  EXPECT_THAT(flights(), ElementsAre("JL0012", "NH0105"));
  test::choose(comparison(), 2);
  EXPECT_THAT(flights(), ElementsAre("NH0105", "BA0007", "ZZ0009"));
  test::typeOver(box("Text4(6)"), "");
  EXPECT_THAT(flights(), SizeIs(4));
}

TEST_F(AcarsFilters, LetterShowsOnlyFlightsMissingFromTheTable) {
  tickLetter();
  EXPECT_THAT(flights(), ElementsAre("ZZ0009"));
  tickLetter();
  EXPECT_THAT(flights(), SizeIs(4));
}

TEST_F(AcarsFilters, LetterReadsTheTableAfreshForEveryRead) {
  tickLetter();
  base_.writeData("letter.csv", {"ZZ,ZZZ,Zulu"});
  click("Command5");
  EXPECT_THAT(flights(), ElementsAre("JL0012", "NH0105", "BA0007"));
}

TEST_F(AcarsFilters, LetterWithoutTheTableEndsTheProgramWithNothingSaved) {
  std::filesystem::remove(base_.folders.data / "letter.csv");
  tickLetter();
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 1);
  window().close();
  EXPECT_FALSE(fileExists(base_.folders.program / "vel.env"));
}

TEST_F(AcarsFilters, AllFiltersWorkTogether) {
  test::typeKeys(box("Text4(2)"), "RJ");
  EXPECT_THAT(flights(), SizeIs(4));
  test::choose(photo(), 1);
  EXPECT_THAT(flights(), ElementsAre("JL0012", "BA0007"));
  test::typeKeys(box("Text4(4)"), "B744");
  test::typeKeys(box("Text4(1)"), "-");
  EXPECT_THAT(flights(), ElementsAre("BA0007"));
  test::typeKeys(box("Text4(6)"), "10");
  EXPECT_THAT(flights(), ElementsAre("BA0007"));
  tickLetter();
  EXPECT_THAT(flights(), IsEmpty());
}

TEST_F(AcarsFilters, ClearPutsEveryFilterBackAndReadsOnce) {
  for (const char* name :
       {"Text4(0)", "Text4(1)", "Text4(2)", "Text4(4)", "Text4(5)", "Text4(6)"}) {
    test::typeKeys(box(name), "Q");
  }
  test::choose(photo(), 2);
  test::choose(comparison(), 2);
  tickLetter();
  ASSERT_THAT(flights(), IsEmpty());
  const long before = reads();
  click("Command9");
  EXPECT_EQ(reads(), before + 1);
  for (const char* name :
       {"Text4(0)", "Text4(1)", "Text4(2)", "Text4(4)", "Text4(5)", "Text4(6)"}) {
    EXPECT_EQ(text(name), "") << name;
  }
  EXPECT_EQ(photo().currentIndex(), 0);
  EXPECT_EQ(comparison().currentIndex(), 1);
  EXPECT_FALSE(find<QCheckBox>("Check1").isChecked());
  EXPECT_THAT(flights(), SizeIs(4));
}

TEST_F(AcarsFilters, ClearWithNoFilterSetStillReadsOnce) {
  const long before = reads();
  QTest::keyClick(&window(), Qt::Key_L, Qt::ControlModifier);
  test::finishJobs();
  EXPECT_EQ(reads(), before + 1);
  EXPECT_THAT(flights(), SizeIs(4));
}

TEST_F(AcarsFilters, CtrlFGoesToTheFlightFilterAndSelectsIt) {
  test::typeKeys(box("Text4(0)"), "JL");
  list().setFocus();
  QTest::keyClick(&window(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(box("Text4(0)").hasFocus());
  EXPECT_EQ(box("Text4(0)").selectedText(), "JL");
}

TEST_F(AcarsFilters, RefreshKeepsTheFilters) {
  test::typeKeys(box("Text4(0)"), "NH");
  click("Command5");
  EXPECT_EQ(text("Text4(0)"), "NH");
  EXPECT_THAT(flights(), ElementsAre("NH0105"));
}

}  // namespace
}  // namespace vel
