#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tables/tables.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Airport : public testing::Test {
 protected:
  test::TemporaryBase base_;
  Tables tables_{base_.folders, Encoding::codePage932()};
};

TEST_F(Airport, TheLastLineThatContainsTheCodeGivesTheName) {
  base_.writeData("airport.csv", {"RJTT,Tokyo HND", "RJAA,Narita NRT", "XRJTT,Longer XXX"});
  EXPECT_EQ(tables_.airportNameOfLastLine("RJTT").value(), "Longer XXX");
  EXPECT_EQ(tables_.airportNameOfLastLine("RJAA").value(), "Narita NRT");
  EXPECT_EQ(tables_.airportNameOfLastLine("RJ").value(), "Longer XXX");
  EXPECT_EQ(tables_.airportNameOfLastLine("rjtt").value(), "");
}

TEST_F(Airport, AnEmptyCodeHasNoNameAndOpensNoTable) {
  EXPECT_EQ(tables_.airportNameOfLastLine("").value(), "");
  EXPECT_EQ(tables_.airportNameOfLastLine("RJTT").error().text(), "ERROR #53");
}

TEST_F(Airport, TheCodeWithinANameIsNoMatch) {
  base_.writeData("airport.csv", {"KLAX,Los Angeles LAX", "XXXX,Not RJTT at all YYY"});
  EXPECT_EQ(tables_.airportNameOfLastLine("RJTT").value(), "");
  EXPECT_EQ(tables_.airportNameOfFirstLine("RJTT").value(), std::nullopt);
}

TEST_F(Airport, AnEmptyNameIsNotAMissingAirport) {
  base_.writeData("airport.csv", {"RJTT,", "RJAA,Narita NRT"});
  EXPECT_EQ(tables_.airportNameOfFirstLine("RJTT").value(), "");
  EXPECT_EQ(tables_.airportNameOfFirstLine("RJBB").value(), std::nullopt);
}

TEST_F(Airport, AShortLineIsAnErrorOnlyWhereItMatches) {
  base_.writeData("airport.csv", {"RJTT", "RJAA,Narita NRT"});
  EXPECT_EQ(tables_.airportNameOfLastLine("RJTT").error().text(),
            "ERROR #9\n\nairport.csv, line 1");
  EXPECT_EQ(tables_.airportNameOfLastLine("RJAA").value(), "Narita NRT");
  EXPECT_EQ(tables_.airportNameOfFirstLine("RJTT").error().text(),
            "ERROR #9\n\nairport.csv, line 1");
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("NRT").value(), "RJAA");
  EXPECT_EQ(tables_.airportCodeOfName("Narita NRT").value(), "RJAA");
  EXPECT_THAT(tables_.airportNames("").value(), ElementsAre("Narita NRT"));
}

TEST_F(Airport, AByteOfATwoByteCharacterIsNoLetterOfTheCode) {
  ASSERT_EQ(test::cp932("カ")[1], 'J');
  base_.writeData("airport.csv", {"RJTT,right HND", "RカTT,wrong XXX"});
  EXPECT_EQ(tables_.airportNameOfLastLine("JTT").value(), "right HND");
}

TEST_F(Airport, TheFirstNameThatEndsInTheThreeLettersGivesTheCode) {
  base_.writeData("airport.csv",
                  {"AAAA,HND first", "RJTT,Tokyo HND", "RJTX,Other HND", "RJAA,Narita NRT"});
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("HND").value(), "RJTT");
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("NRT").value(), "RJAA");
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("hnd").value(), "");
}

TEST_F(Airport, OnlyThreeCharactersCanBeTheEndOfAName) {
  base_.writeData("airport.csv", {"RJTT,Tokyo HND"});
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("ND").value(), "");
  EXPECT_EQ(tables_.airportCodeOfThreeLetters(" HND").value(), "");
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("").value(), "");
}

TEST_F(Airport, ANameWithFurtherFieldsStillEndsInItsCode) {
  base_.writeData("airport.csv", {"RJTT,Tokyo HND,more", "RJAA,Narita NRT HND x"});
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("HND").value(), "RJTT");
}

TEST_F(Airport, AByteOfATwoByteCharacterIsNoLetterOfTheThree) {
  ASSERT_EQ(test::cp932("ォ")[1], 'H');
  base_.writeData("airport.csv", {"XXXX,空港ォND", "RJTT,羽田HND"});
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("HND").value(), "RJTT");
}

TEST_F(Airport, ThreeLettersInFullWidthAreFoundToo) {
  base_.writeData("airport.csv", {"RJAA,成田ＮＲＴ", "RJTT,羽田ＨＮＤ"});
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("ＨＮＤ").value(), "RJTT");
}

TEST_F(Airport, TheFirstEqualCodeGivesTheName) {
  base_.writeData("airport.csv", {"XRJTT,Longer XXX", "RJTT,Tokyo HND", "RJTT,Second HND"});
  EXPECT_EQ(tables_.airportNameOfFirstLine("RJTT").value(), "Tokyo HND");
  EXPECT_EQ(tables_.airportNameOfFirstLine("RJT").value(), std::nullopt);
}

TEST_F(Airport, AnEmptiedCodeBoxFindsNothingAlsoWithABlankLineInTheTable) {
  base_.writeData("airport.csv", {"RJTT,Tokyo HND", "", "RJAA,Narita NRT"});
  EXPECT_EQ(tables_.airportNameOfFirstLine("").value(), std::nullopt);
}

TEST_F(Airport, TheFirstEqualNameGivesTheCode) {
  base_.writeData("airport.csv",
                  {"AAAA,Tokyo HND 2", "RJTT,Tokyo HND", "RJTX,Tokyo HND", "RJAA,成田 NRT"});
  EXPECT_EQ(tables_.airportCodeOfName("Tokyo HND").value(), "RJTT");
  EXPECT_EQ(tables_.airportCodeOfName("成田 NRT").value(), "RJAA");
  EXPECT_EQ(tables_.airportCodeOfName("tokyo hnd").value(), "");
}

TEST_F(Airport, TheKeywordIsFoundInAnyLetterCase) {
  base_.writeData("airport.csv",
                  {"RJTT,Tokyo Haneda HND", "RJAA,Tokyo Narita NRT", "XXXX,Not hnd at the end"});
  EXPECT_THAT(tables_.airportNames("haneda").value(), ElementsAre("Tokyo Haneda HND"));
  EXPECT_THAT(tables_.airportNames("HND").value(),
              ElementsAre("Tokyo Haneda HND", "Not hnd at the end"));
}

TEST_F(Airport, TheKeywordIsNotLookedForInTheCode) {
  base_.writeData("airport.csv", {"RJTT,Tokyo Haneda HND"});
  EXPECT_THAT(tables_.airportNames("RJTT").value(), IsEmpty());
}

TEST_F(Airport, AnEmptyKeywordListsTheWholeTableInItsOrder) {
  base_.writeData("airport.csv", {"RJTT,b", "RJAA,a,more", "RJBB,b"});
  EXPECT_THAT(tables_.airportNames("").value(), ElementsAre("b", "a", "b"));
}

TEST_F(Airport, FullWidthLettersHaveACaseToo) {
  base_.writeData("airport.csv", {"RJTT,羽田ＨＮＤ", "RJAA,成田NRT"});
  EXPECT_THAT(tables_.airportNames("ｈｎｄ").value(), ElementsAre("羽田ＨＮＤ"));
  EXPECT_THAT(tables_.airportNames("hnd").value(), IsEmpty());
  EXPECT_THAT(tables_.airportNames("nrt").value(), ElementsAre("成田NRT"));
}

TEST_F(Airport, AByteOfATwoByteCharacterIsNoLetterOfTheKeyword) {
  ASSERT_EQ(test::cp932("ア")[1], 'A');
  base_.writeData("airport.csv", {"RJTT,アB", "RJAA,AB"});
  EXPECT_THAT(tables_.airportNames("ab").value(), ElementsAre("AB"));
}

TEST_F(Airport, BothFormsOfTheWaveDashFindTheStoredOne) {
  base_.writeData("airport.csv", {"RJTT,羽田～HND"});
  EXPECT_THAT(tables_.airportNames("\u301C").value(), ElementsAre("羽田\uFF5EHND"));
  EXPECT_EQ(tables_.airportCodeOfName("羽田\u301CHND").value(), "RJTT");
}

TEST_F(Airport, ADamagedNameIsListedButNothingDamagedIsFound) {
  test::writeBytes(base_.folders.data / "airport.csv", "RJTT,Tokyo\xFF HND\r\n");
  EXPECT_EQ(tables_.airportNames("tokyo").value().size(), 1U);
  EXPECT_THAT(tables_.airportNames("\uFFFD").value(), IsEmpty());
}

TEST_F(Airport, OnlyTheKeywordSearchNamesTheMissingTable) {
  EXPECT_EQ(tables_.airportNames("x").error().text(), "Not found data\\airport.csv");
  EXPECT_EQ(tables_.airportNames("").error().text(), "Not found data\\airport.csv");
  EXPECT_EQ(tables_.airportCodeOfThreeLetters("HND").error().text(), "ERROR #53");
  EXPECT_EQ(tables_.airportNameOfFirstLine("RJTT").error().text(), "ERROR #53");
  EXPECT_EQ(tables_.airportCodeOfName("x").error().text(), "ERROR #53");
}

}  // namespace
}  // namespace vel
