#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tables/tables.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using testing::ElementsAre;

class LookupsTest : public testing::Test {
 protected:
  void writeRaw(std::string_view name, std::string_view bytes) const {
    test::writeBytes(base_.folders.data / name, bytes);
  }

  test::TemporaryBase base_;
  Tables tables_{base_.folders, Encoding::codePage932()};
};

using Aircraft = LookupsTest;
using Flight = LookupsTest;
using Letter = LookupsTest;
using Icao24 = LookupsTest;

// ---- aircraft.csv

TEST_F(Aircraft, ARegistrationTwiceGivesTheLastInOneWindowAndTheFirstInTheOther) {
  base_.writeData("aircraft.csv", {"JA8089,B744", "JA701A,B772", "JA8089,B748"});
  EXPECT_EQ(tables_.SearchAircraft("JA8089").value(), "B748");
  EXPECT_EQ(tables_.SchAircraft("JA8089").value(), "B744");
}

TEST_F(Aircraft, AnUnknownRegistrationHasNoEquipment) {
  base_.writeData("aircraft.csv", {"JA8089,B744", "JA808,B738", "JA80899,B763"});
  EXPECT_EQ(tables_.SearchAircraft("JA80").value(), "");
  EXPECT_EQ(tables_.SchAircraft("JA808999").value(), "");
}

TEST_F(Aircraft, TheWholeFieldIsComparedWithItsCaseAndItsBlanks) {
  base_.writeData("aircraft.csv",
                  {"ja8089,B1", " JA8089,B2", "JA8089 ,B3", "JA80891,B4", "JA8089,B5"});
  EXPECT_EQ(tables_.SearchAircraft("JA8089").value(), "B5");
  EXPECT_EQ(tables_.SchAircraft("JA8089").value(), "B5");
}

TEST_F(Aircraft, ALineWithoutACommaIsNoRecord) {
  base_.writeData("aircraft.csv", {"JA8089", "JA8089,B744", "JA8089"});
  EXPECT_EQ(tables_.SearchAircraft("JA8089").value(), "B744");
  EXPECT_EQ(tables_.SchAircraft("JA8089").value(), "B744");
}

TEST_F(Aircraft, EquipmentIsTextWithoutTheFurtherFields) {
  base_.writeData("aircraft.csv", {"JA8089,ジャンボ B744,more"});
  EXPECT_EQ(tables_.SearchAircraft("JA8089").value(), "ジャンボ B744");
}

TEST_F(Aircraft, ALaterLineMayTakeTheEquipmentAway) {
  base_.writeData("aircraft.csv", {"JA8089,B744", "JA8089,"});
  EXPECT_EQ(tables_.SearchAircraft("JA8089").value(), "");
}

TEST_F(Aircraft, AMissingTableIsAFileError) {
  EXPECT_EQ(tables_.SearchAircraft("JA8089").error().text(), "ERROR #53");
  EXPECT_EQ(tables_.SchAircraft("JA8089").error().text(), "ERROR #53");
}

TEST_F(Aircraft, TheTableIsFoundWhateverTheCaseOfItsName) {
  base_.writeData("AirCraft.CSV", {"JA8089,B744"});
  EXPECT_EQ(tables_.SearchAircraft("JA8089").value(), "B744");
}

TEST_F(Aircraft, AnEditIsVisibleToTheVeryNextLookUp) {
  base_.writeData("aircraft.csv", {"JA8089,B744"});
  EXPECT_EQ(tables_.SearchAircraft("JA8089").value(), "B744");
  base_.writeData("aircraft.csv", {"JA8089,B748"});
  EXPECT_EQ(tables_.SearchAircraft("JA8089").value(), "B748");
}

TEST_F(Aircraft, DamagedBytesOfAnotherLineDoNoHarm) {
  using namespace std::string_literals;
  writeRaw("aircraft.csv", "\xFF\xFE\x80,\x83\r\n\x83\r\nJA\0,x\r\nJA8089,B744\r\n"s);
  EXPECT_EQ(tables_.SearchAircraft("JA8089").value(), "B744");
}

TEST_F(Aircraft, ADamagedRegistrationIsNeverFound) {
  writeRaw("aircraft.csv", "JA\xFF,B744\r\nJA\xEF\xBF\xBD,B748\r\n");
  EXPECT_EQ(tables_.SearchAircraft("JA\uFFFD").value(), "");
  EXPECT_EQ(tables_.SchAircraft("JA\uFFFD").value(), "");
}

TEST_F(Aircraft, DamagedBytesInTheEquipmentAreShownAsSuch) {
  writeRaw("aircraft.csv", "JA8089,B7\xFF\r\n");
  const std::string equipment = tables_.SearchAircraft("JA8089").value();
  EXPECT_EQ(equipment.substr(0, 2), "B7");
  EXPECT_NE(equipment, "B7");
}

TEST_F(Aircraft, AKeyInJapaneseIsComparedAsText) {
  base_.writeData("aircraft.csv", {"ソ8089,X", "ポ8089,Y"});
  EXPECT_EQ(tables_.SearchAircraft("ポ8089").value(), "Y");
  EXPECT_EQ(tables_.SearchAircraft("ソ8089").value(), "X");
  EXPECT_EQ(tables_.SearchAircraft("ン8089").value(), "");
}

TEST_F(Aircraft, ACharacterWithTwoByteFormsIsOneCharacter) {
  writeRaw("aircraft.csv",
           "\xEE\xE0"
           "1,first\r\n\xFB\xFC"
           "1,second\r\n");
  EXPECT_EQ(tables_.SchAircraft("髙1").value(), "first");
  EXPECT_EQ(tables_.SearchAircraft("髙1").value(), "second");
}

// ---- FLIGHT.csv

TEST_F(Flight, AFlightTwiceGivesTheFirstLine) {
  base_.writeData("FLIGHT.csv", {"NH0106,RJTTKLAX,a", "NH0106,KLAXRJTT,b"});
  const FlightRoute route = tables_.flightRoute("NH0106").value().value();
  EXPECT_EQ(route.departure, "RJTT");
  EXPECT_EQ(route.destination, "KLAX");
  EXPECT_EQ(route.remark, "a");
}

TEST_F(Flight, TheRouteFieldIsCutAfterItsFourthCharacter) {
  base_.writeData("FLIGHT.csv", {"A1,ABCDWXYZ,-", "A2,RJTT,-", "A3,ABCDWXYZ123,-", "A4,,-",
                                 "A5,羽田空港成田,備考"});
  EXPECT_EQ(tables_.flightRoute("A1").value()->departure, "ABCD");
  EXPECT_EQ(tables_.flightRoute("A1").value()->destination, "WXYZ");
  EXPECT_EQ(tables_.flightRoute("A2").value()->departure, "RJTT");
  EXPECT_EQ(tables_.flightRoute("A2").value()->destination, "");
  EXPECT_EQ(tables_.flightRoute("A3").value()->destination, "WXYZ123");
  EXPECT_EQ(tables_.flightRoute("A4").value()->departure, "");
  EXPECT_EQ(tables_.flightRoute("A5").value()->departure, "羽田空港");
  EXPECT_EQ(tables_.flightRoute("A5").value()->destination, "成田");
  EXPECT_EQ(tables_.flightRoute("A5").value()->remark, "備考");
}

TEST_F(Flight, AnUnknownFlightHasNoRoute) {
  base_.writeData("FLIGHT.csv", {"NH0106,RJTTKLAX,a"});
  EXPECT_EQ(tables_.flightRoute("NH010").value(), std::nullopt);
  EXPECT_EQ(tables_.flightRoute("H0106").value(), std::nullopt);
}

TEST_F(Flight, AShortLineOfThatFlightIsAnErrorAndOfAnotherFlightIsNot) {
  base_.writeData("FLIGHT.csv", {"NH1", "NH2,RJTTKLAX", "NH3,RJTTKLAX,-"});
  EXPECT_EQ(tables_.flightRoute("NH1").error().text(), "ERROR #9");
  EXPECT_EQ(tables_.flightRoute("NH2").error().text(), "ERROR #9");
  EXPECT_EQ(tables_.flightRoute("NH3").value()->remark, "-");
}

TEST_F(Flight, ABrokenLineAfterTheMatchDoesNoHarm) {
  base_.writeData("FLIGHT.csv", {"NH1,RJTTKLAX,-", "NH1"});
  EXPECT_EQ(tables_.flightRoute("NH1").value()->departure, "RJTT");
}

TEST_F(Flight, TheTableIsReadUnderBothItsNames) {
  base_.writeData("flight.csv", {"NH1,RJTTKLAX,-"});
  EXPECT_EQ(tables_.flightRoute("NH1").value()->destination, "KLAX");
}

TEST_F(Flight, OnlyTheTestedLookUpNamesTheMissingTable) {
  EXPECT_EQ(tables_.flightRoute("NH1").error().text(), "ERROR #53");
  EXPECT_EQ(tables_.testedFlightRoute("NH1").error().text(), "Not found data\\flight.csv");
}

TEST_F(Flight, TheTestedLookUpNeedsNoRemark) {
  base_.writeData("FLIGHT.csv", {"NH1,RJTTKLAX"});
  EXPECT_EQ(tables_.testedFlightRoute("NH1").value()->destination, "KLAX");
  EXPECT_EQ(tables_.testedFlightRoute("NH1").value()->remark, "");
}

TEST_F(Flight, TheTestedLookUpFindsTheSame) {
  base_.writeData("FLIGHT.csv", {"NH1,RJTTKLAX,-", "NH2"});
  EXPECT_EQ(tables_.testedFlightRoute("NH1").value()->destination, "KLAX");
  EXPECT_EQ(tables_.testedFlightRoute("NH2").error().text(), "ERROR #9");
}

// ---- letter.csv

TEST_F(Letter, APrefixInsideALongerFieldIsShownButNotKnown) {
  base_.writeData("letter.csv", {"XJL,JAL,Long", "NH,ANA,All Nippon"});
  EXPECT_EQ(tables_.AirLineLoad("JL").value().threeLetter, "JAL");
  EXPECT_FALSE(tables_.letterChk("JL").value());
  EXPECT_TRUE(tables_.letterChk("NH").value());
  EXPECT_FALSE(tables_.letterChk("nh").value());
}

TEST_F(Letter, TheFirstLineThatContainsThePrefixWins) {
  base_.writeData("letter.csv", {"XJL,LNG,Long", "JL,JAL,Japan Airlines"});
  EXPECT_EQ(tables_.AirLineLoad("JL").value().display, "Long");
}

TEST_F(Letter, AnEmptyPrefixShowsTheFirstLine) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta", "JL,JAL,Japan Airlines"});
  const Airline airline = tables_.AirLineLoad("").value();
  EXPECT_TRUE(airline.found);
  EXPECT_EQ(airline.threeLetter, "AAE");
  EXPECT_EQ(airline.display, "Air Atlanta");
}

TEST_F(Letter, AnUnknownPrefixFindsNothing) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta"});
  const Airline airline = tables_.AirLineLoad("ZZ").value();
  EXPECT_FALSE(airline.found);
  EXPECT_FALSE(airline.fourFields);
  EXPECT_EQ(airline.threeLetter + airline.display + airline.company, "");
  EXPECT_FALSE(tables_.letterChk("ZZ").value());
}

TEST_F(Letter, AFourthFieldInTheFirstLineCountsForEveryPrefix) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta,Company", "JL,JAL,Japan Airlines"});
  const Airline japan = tables_.AirLineLoad("JL").value();
  EXPECT_TRUE(japan.fourFields);
  EXPECT_EQ(japan.company, "");
  EXPECT_TRUE(tables_.AirLineLoad("ZZ").value().fourFields);
  EXPECT_EQ(tables_.AirLineLoad("CT").value().company, "Company");
}

TEST_F(Letter, AFourthFieldInTheLastLineCountsOnlyForPrefixesNotFoundEarlier) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta", "JL,JAL,Japan Airlines", "NH,ANA,ANA,日本"});
  EXPECT_FALSE(tables_.AirLineLoad("CT").value().fourFields);
  EXPECT_FALSE(tables_.AirLineLoad("JL").value().fourFields);
  EXPECT_TRUE(tables_.AirLineLoad("NH").value().fourFields);
  EXPECT_EQ(tables_.AirLineLoad("NH").value().company, "日本");
  EXPECT_TRUE(tables_.AirLineLoad("ZZ").value().fourFields);
}

TEST_F(Letter, AMatchingLineNeedsThreeFieldsToBeShownButNoneToBeKnown) {
  base_.writeData("letter.csv", {"JL", "NH,ANA", "CT,AAE,Air Atlanta"});
  EXPECT_EQ(tables_.AirLineLoad("JL").error().text(), "ERROR #9");
  EXPECT_EQ(tables_.AirLineLoad("NH").error().text(), "ERROR #9");
  EXPECT_TRUE(tables_.letterChk("JL").value());
  EXPECT_EQ(tables_.AirLineLoad("CT").value().threeLetter, "AAE");
}

TEST_F(Letter, ABlankLineMatchesNoPrefixNotEvenAnEmptyOne) {
  base_.writeData("letter.csv", {"", "CT,AAE,Air Atlanta"});
  EXPECT_EQ(tables_.AirLineLoad("").value().threeLetter, "AAE");
  EXPECT_FALSE(tables_.letterChk("").value());
}

TEST_F(Letter, AByteOfATwoByteCharacterIsNoLetterOfThePrefix) {
  ASSERT_EQ(test::cp932("カ")[1], 'J');
  base_.writeData("letter.csv", {"カL,KAL,wrong", "JL,JAL,right"});
  EXPECT_EQ(tables_.AirLineLoad("JL").value().display, "right");
}

TEST_F(Letter, CodesAreConvertedBothWaysAndTheFirstEqualLineWins) {
  base_.writeData("letter.csv",
                  {"XJL,LNG,Long", "JL,JAL,Japan Airlines", "JL,JEX,Express", "JC,JAL,Two"});
  EXPECT_EQ(tables_.SchLetter("JL", 2).value(), "JAL");
  EXPECT_EQ(tables_.SchLetter("JAL", 3).value(), "JL");
  EXPECT_EQ(tables_.SchLetter("JAL", 0).value(), "JL");
  EXPECT_EQ(tables_.SchLetter("JA", 3).value(), "");
  EXPECT_EQ(tables_.SchLetter("JA", 2).value(), "");
}

TEST_F(Letter, ConversionOfAShortLineIsAnErrorOnlyWhereItMatches) {
  base_.writeData("letter.csv", {"JL", "NH,ANA"});
  EXPECT_EQ(tables_.SchLetter("JL", 2).error().text(), "ERROR #9");
  EXPECT_EQ(tables_.SchLetter("NH", 2).value(), "ANA");
  EXPECT_EQ(tables_.SchLetter("ANA", 3).value(), "NH");
}

TEST_F(Letter, AMissingTableIsAFileErrorForEveryLookUp) {
  EXPECT_EQ(tables_.AirLineLoad("JL").error().text(), "ERROR #53");
  EXPECT_EQ(tables_.letterChk("JL").error().text(), "ERROR #53");
  EXPECT_EQ(tables_.SchLetter("JL", 2).error().text(), "ERROR #53");
}

// ---- ICAO24.csv

TEST_F(Icao24, TheFirstOfTwoEqualAddressesIsUsed) {
  base_.writeData("ICAO24.csv", {"8400A1,JAL,JL,JA1,B738", "8400A1,ANA,NH,JA2,B763"});
  EXPECT_THAT(tables_.Icao24Chk("8400A1").value(),
              ElementsAre("8400A1", "JAL", "JL", "JA1", "B738"));
}

TEST_F(Icao24, BlankCommentAndShortLinesAreSkipped) {
  base_.writeData("ICAO24.csv",
                  {"", "; comment", "8400A1", "8400A1,JAL,JL,JA1", "8400A1,,,JA2,B763"});
  EXPECT_THAT(tables_.Icao24Chk("8400A1").value(), ElementsAre("8400A1", "", "", "JA2", "B763"));
}

TEST_F(Icao24, ALineOfSixFieldsGivesItsFirstFive) {
  base_.writeData("ICAO24.csv", {"8400A1,JAL,JL,JA1,B738,more"});
  EXPECT_THAT(tables_.Icao24Chk("8400A1").value(),
              ElementsAre("8400A1", "JAL", "JL", "JA1", "B738"));
}

TEST_F(Icao24, AnAddressInAnotherLetterCaseIsNotFound) {
  base_.writeData("ICAO24.csv", {"8400A1,JAL,JL,JA1,B738"});
  EXPECT_THAT(tables_.Icao24Chk("8400a1").value(), ElementsAre("", "", "", "", ""));
}

TEST_F(Icao24, AMissingTableEndsOneLookUpAndIsNothingToTheOther) {
  EXPECT_EQ(tables_.Icao24Chk("8400A1").error().text(), "Not found data\\ICAO24.csv");
  EXPECT_THAT(tables_.icao24IfPresent("8400A1").value(), ElementsAre("", "", "", "", ""));
}

TEST_F(Icao24, ThePresentTableIsReadByBoth) {
  base_.writeData("icao24.csv", {"8400A1,JAL,JL,JA1,B738"});
  EXPECT_EQ(tables_.icao24IfPresent("8400A1").value()[3], "JA1");
  EXPECT_EQ(tables_.Icao24Chk("8400A1").value()[3], "JA1");
}

// ---- other encodings

TEST(OtherEncodings, AUtf8TableIsReadWhenTheStationUsesUtf8) {
  const test::TemporaryBase base;
  test::writeBytes(base.folders.data / "aircraft.csv", "JA8089,ジャンボ\r\n");
  const Tables tables(base.folders, Encoding::named("UTF-8").value());
  EXPECT_EQ(tables.SearchAircraft("JA8089").value(), "ジャンボ");
}

}  // namespace
}  // namespace vel
