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
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").value(), "B748");
  EXPECT_EQ(tables_.equipmentOfFirstLine("JA8089").value(), "B744");
}

TEST_F(Aircraft, AnUnknownRegistrationHasNoEquipment) {
  base_.writeData("aircraft.csv", {"JA8089,B744", "JA808,B738", "JA80899,B763"});
  EXPECT_EQ(tables_.equipmentOfLastLine("JA80").value(), "");
  EXPECT_EQ(tables_.equipmentOfFirstLine("JA808999").value(), "");
}

TEST_F(Aircraft, TheWholeFieldIsComparedWithItsCaseAndItsBlanks) {
  base_.writeData("aircraft.csv",
                  {"ja8089,B1", " JA8089,B2", "JA8089 ,B3", "JA80891,B4", "JA8089,B5"});
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").value(), "B5");
  EXPECT_EQ(tables_.equipmentOfFirstLine("JA8089").value(), "B5");
}

TEST_F(Aircraft, ALineWithoutACommaIsNoRecord) {
  base_.writeData("aircraft.csv", {"JA8089", "JA8089,B744", "JA8089"});
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").value(), "B744");
  EXPECT_EQ(tables_.equipmentOfFirstLine("JA8089").value(), "B744");
}

TEST_F(Aircraft, EquipmentIsTextWithoutTheFurtherFields) {
  base_.writeData("aircraft.csv", {"JA8089,ジャンボ B744,more"});
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").value(), "ジャンボ B744");
}

TEST_F(Aircraft, ALaterLineMayTakeTheEquipmentAway) {
  base_.writeData("aircraft.csv", {"JA8089,B744", "JA8089,"});
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").value(), "");
}

TEST_F(Aircraft, AMissingTableIsAFileError) {
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").error().text(), "ERROR #53");
  EXPECT_EQ(tables_.equipmentOfFirstLine("JA8089").error().text(), "ERROR #53");
}

TEST_F(Aircraft, TheTableIsFoundWhateverTheCaseOfItsName) {
  base_.writeData("AirCraft.CSV", {"JA8089,B744"});
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").value(), "B744");
}

TEST_F(Aircraft, AnEditIsVisibleToTheVeryNextLookUp) {
  base_.writeData("aircraft.csv", {"JA8089,B744"});
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").value(), "B744");
  base_.writeData("aircraft.csv", {"JA8089,B748"});
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").value(), "B748");
}

TEST_F(Aircraft, DamagedBytesOfAnotherLineDoNoHarm) {
  using namespace std::string_literals;
  writeRaw("aircraft.csv", "\xFF\xFE\x80,\x83\r\n\x83\r\nJA\0,x\r\nJA8089,B744\r\n"s);
  EXPECT_EQ(tables_.equipmentOfLastLine("JA8089").value(), "B744");
}

TEST_F(Aircraft, ADamagedRegistrationIsNeverFound) {
  writeRaw("aircraft.csv", "JA\xFF,B744\r\nJA\xEF\xBF\xBD,B748\r\n");
  EXPECT_EQ(tables_.equipmentOfLastLine("JA\uFFFD").value(), "");
  EXPECT_EQ(tables_.equipmentOfFirstLine("JA\uFFFD").value(), "");
}

TEST_F(Aircraft, DamagedBytesInTheEquipmentAreShownAsSuch) {
  writeRaw("aircraft.csv", "JA8089,B7\xFF\r\n");
  const std::string equipment = tables_.equipmentOfLastLine("JA8089").value();
  EXPECT_EQ(equipment.substr(0, 2), "B7");
  EXPECT_NE(equipment, "B7");
}

TEST_F(Aircraft, AKeyInJapaneseIsComparedAsText) {
  base_.writeData("aircraft.csv", {"ソ8089,X", "ポ8089,Y"});
  EXPECT_EQ(tables_.equipmentOfLastLine("ポ8089").value(), "Y");
  EXPECT_EQ(tables_.equipmentOfLastLine("ソ8089").value(), "X");
  EXPECT_EQ(tables_.equipmentOfLastLine("ン8089").value(), "");
}

TEST_F(Aircraft, ACharacterWithTwoByteFormsIsOneCharacter) {
  writeRaw("aircraft.csv",
           "\xEE\xE0"
           "1,first\r\n\xFB\xFC"
           "1,second\r\n");
  EXPECT_EQ(tables_.equipmentOfFirstLine("髙1").value(), "first");
  EXPECT_EQ(tables_.equipmentOfLastLine("髙1").value(), "second");
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
  EXPECT_EQ(tables_.flightRoute("NH1").error().text(), "ERROR #9\n\nFLIGHT.csv, line 1");
  EXPECT_EQ(tables_.flightRoute("NH2").error().text(), "ERROR #9\n\nFLIGHT.csv, line 2");
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
  EXPECT_EQ(tables_.testedFlightRoute("NH2").error().text(), "ERROR #9\n\nFLIGHT.csv, line 2");
}

// ---- letter.csv

TEST_F(Letter, APrefixInsideALongerFieldIsShownButNotKnown) {
  base_.writeData("letter.csv", {"XJL,JAL,Long", "NH,ANA,All Nippon"});
  EXPECT_EQ(tables_.airlineOf("JL").value().threeLetter, "JAL");
  EXPECT_FALSE(tables_.knowsAirline("JL").value());
  EXPECT_TRUE(tables_.knowsAirline("NH").value());
  EXPECT_FALSE(tables_.knowsAirline("nh").value());
}

TEST_F(Letter, TheFirstLineThatContainsThePrefixWins) {
  base_.writeData("letter.csv", {"XJL,LNG,Long", "JL,JAL,Japan Airlines"});
  EXPECT_EQ(tables_.airlineOf("JL").value().display, "Long");
}

TEST_F(Letter, AnEmptyPrefixShowsTheFirstLine) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta", "JL,JAL,Japan Airlines"});
  const Airline airline = tables_.airlineOf("").value();
  EXPECT_TRUE(airline.found);
  EXPECT_EQ(airline.threeLetter, "AAE");
  EXPECT_EQ(airline.display, "Air Atlanta");
}

TEST_F(Letter, AnUnknownPrefixFindsNothing) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta"});
  const Airline airline = tables_.airlineOf("ZZ").value();
  EXPECT_FALSE(airline.found);
  EXPECT_FALSE(airline.fourFields);
  EXPECT_EQ(airline.threeLetter + airline.display + airline.company, "");
  EXPECT_FALSE(tables_.knowsAirline("ZZ").value());
}

TEST_F(Letter, AFourthFieldInTheFirstLineCountsForEveryPrefix) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta,Company", "JL,JAL,Japan Airlines"});
  const Airline japan = tables_.airlineOf("JL").value();
  EXPECT_TRUE(japan.fourFields);
  EXPECT_EQ(japan.company, "");
  EXPECT_TRUE(tables_.airlineOf("ZZ").value().fourFields);
  EXPECT_EQ(tables_.airlineOf("CT").value().company, "Company");
}

TEST_F(Letter, AFourthFieldInTheLastLineCountsOnlyForPrefixesNotFoundEarlier) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta", "JL,JAL,Japan Airlines", "NH,ANA,ANA,日本"});
  EXPECT_FALSE(tables_.airlineOf("CT").value().fourFields);
  EXPECT_FALSE(tables_.airlineOf("JL").value().fourFields);
  EXPECT_TRUE(tables_.airlineOf("NH").value().fourFields);
  EXPECT_EQ(tables_.airlineOf("NH").value().company, "日本");
  EXPECT_TRUE(tables_.airlineOf("ZZ").value().fourFields);
}

TEST_F(Letter, AMatchingLineNeedsThreeFieldsToBeShownButNoneToBeKnown) {
  base_.writeData("letter.csv", {"JL", "NH,ANA", "CT,AAE,Air Atlanta"});
  EXPECT_EQ(tables_.airlineOf("JL").error().text(), "ERROR #9\n\nletter.csv, line 1");
  EXPECT_EQ(tables_.airlineOf("NH").error().text(), "ERROR #9\n\nletter.csv, line 2");
  EXPECT_TRUE(tables_.knowsAirline("JL").value());
  EXPECT_EQ(tables_.airlineOf("CT").value().threeLetter, "AAE");
}

TEST_F(Letter, ABlankLineMatchesNoPrefixNotEvenAnEmptyOne) {
  base_.writeData("letter.csv", {"", "CT,AAE,Air Atlanta"});
  EXPECT_EQ(tables_.airlineOf("").value().threeLetter, "AAE");
  EXPECT_FALSE(tables_.knowsAirline("").value());
}

TEST_F(Letter, AByteOfATwoByteCharacterIsNoLetterOfThePrefix) {
  ASSERT_EQ(test::cp932("カ")[1], 'J');
  base_.writeData("letter.csv", {"カL,KAL,wrong", "JL,JAL,right"});
  EXPECT_EQ(tables_.airlineOf("JL").value().display, "right");
}

TEST_F(Letter, CodesAreConvertedBothWaysAndTheFirstEqualLineWins) {
  base_.writeData("letter.csv",
                  {"XJL,LNG,Long", "JL,JAL,Japan Airlines", "JL,JEX,Express", "JC,JAL,Two"});
  EXPECT_EQ(tables_.threeLetterCodeOf("JL").value(), "JAL");
  EXPECT_EQ(tables_.prefixOf("JAL").value(), "JL");
  EXPECT_EQ(tables_.prefixOf("JAL").value(), "JL");
  EXPECT_EQ(tables_.prefixOf("JA").value(), "");
  EXPECT_EQ(tables_.threeLetterCodeOf("JA").value(), std::nullopt);
}

TEST_F(Letter, ConversionOfAShortLineIsAnErrorOnlyWhereItMatches) {
  base_.writeData("letter.csv", {"JL", "NH,ANA"});
  EXPECT_EQ(tables_.threeLetterCodeOf("JL").error().text(), "ERROR #9\n\nletter.csv, line 1");
  EXPECT_EQ(tables_.threeLetterCodeOf("NH").value(), "ANA");
  EXPECT_EQ(tables_.prefixOf("ANA").value(), "NH");
}

TEST_F(Letter, AMissingTableIsAFileErrorForEveryLookUp) {
  EXPECT_EQ(tables_.airlineOf("JL").error().text(), "ERROR #53");
  EXPECT_EQ(tables_.knowsAirline("JL").error().text(), "ERROR #53");
  EXPECT_EQ(tables_.threeLetterCodeOf("JL").error().text(), "ERROR #53");
}

// ---- ICAO24.csv

TEST_F(Icao24, TheFirstOfTwoEqualAddressesIsUsed) {
  base_.writeData("ICAO24.csv", {"8400A1,JAL,JL,JA1,B738", "8400A1,ANA,NH,JA2,B763"});
  EXPECT_THAT(tables_.aircraftOfAddress("8400A1").value(),
              ElementsAre("8400A1", "JAL", "JL", "JA1", "B738"));
}

TEST_F(Icao24, BlankCommentAndShortLinesAreSkipped) {
  base_.writeData("ICAO24.csv",
                  {"", "; comment", "8400A1", "8400A1,JAL,JL,JA1", "8400A1,,,JA2,B763"});
  EXPECT_THAT(tables_.aircraftOfAddress("8400A1").value(),
              ElementsAre("8400A1", "", "", "JA2", "B763"));
}

TEST_F(Icao24, ALineOfSixFieldsGivesItsFirstFive) {
  base_.writeData("ICAO24.csv", {"8400A1,JAL,JL,JA1,B738,more"});
  EXPECT_THAT(tables_.aircraftOfAddress("8400A1").value(),
              ElementsAre("8400A1", "JAL", "JL", "JA1", "B738"));
}

TEST_F(Icao24, AnAddressInAnotherLetterCaseIsNotFound) {
  base_.writeData("ICAO24.csv", {"8400A1,JAL,JL,JA1,B738"});
  EXPECT_THAT(tables_.aircraftOfAddress("8400a1").value(), ElementsAre("", "", "", "", ""));
}

TEST_F(Icao24, AMissingTableEndsOneLookUpAndIsNothingToTheOther) {
  EXPECT_EQ(tables_.aircraftOfAddress("8400A1").error().text(), "Not found data\\ICAO24.csv");
  EXPECT_THAT(tables_.aircraftOfAddressIfPresent("8400A1").value(),
              ElementsAre("", "", "", "", ""));
}

TEST_F(Icao24, ThePresentTableIsReadByBoth) {
  base_.writeData("icao24.csv", {"8400A1,JAL,JL,JA1,B738"});
  EXPECT_EQ(tables_.aircraftOfAddressIfPresent("8400A1").value()[3], "JA1");
  EXPECT_EQ(tables_.aircraftOfAddress("8400A1").value()[3], "JA1");
}

// ---- other encodings

TEST(OtherEncodings, AUtf8TableIsReadWhenTheStationUsesUtf8) {
  const test::TemporaryBase base;
  test::writeBytes(base.folders.data / "aircraft.csv", "JA8089,ジャンボ\r\n");
  const Tables tables(base.folders, Encoding::named("UTF-8").value());
  EXPECT_EQ(tables.equipmentOfLastLine("JA8089").value(), "ジャンボ");
}

// ---- line ends and byte order marks

class LineEnds : public testing::Test {
 protected:
  [[nodiscard]] Tables with(std::string_view name, std::string_view bytes,
                            const Encoding& encoding = Encoding::codePage932()) const {
    test::writeBytes(base_.folders.data / name, bytes);
    return {base_.folders, encoding};
  }
  test::TemporaryBase base_;
};

TEST_F(LineEnds, ACarriageReturnAloneEndsALineInEveryLookUp) {
  EXPECT_EQ(with("aircraft.csv", "JA1,A\rJA8089,B744\rJA2,B").equipmentOfLastLine("JA8089").value(),
            "B744");
  EXPECT_EQ(with("aircraft.csv", "JA1,A\rJA8089,B744\r\rJA2,B").equipmentOfFirstLine("JA2").value(),
            "B");
  EXPECT_EQ(with("FLIGHT.csv", "A,RJTTKLAX,-\rNH1,RJTTKLAX,x\r\nB,RJTTKLAX,-")
                .flightRoute("NH1")
                .value()
                ->remark,
            "x");
  const Tables letters = with("letter.csv", "JL,JAL,Japan\rNH,ANA,All Nippon\rCT,AAE,Atlanta\r");
  EXPECT_TRUE(letters.knowsAirline("NH").value());
  EXPECT_EQ(letters.airlineOf("NH").value().display, "All Nippon");
  EXPECT_EQ(letters.threeLetterCodeOf("CT").value(), "AAE");
  EXPECT_EQ(letters.prefixOf("ANA").value(), "NH");
  const Tables airports = with("airport.csv", "RJTT,Tokyo HND\rRJAA,Narita NRT\rKLAX,LA LAX");
  EXPECT_EQ(airports.airportNameOfLastLine("RJAA").value(), "Narita NRT");
  EXPECT_EQ(airports.airportNameOfFirstLine("KLAX").value(), "LA LAX");
  EXPECT_EQ(airports.airportCodeOfThreeLetters("NRT").value(), "RJAA");
  EXPECT_EQ(airports.airportCodeOfName("Narita NRT").value(), "RJAA");
  EXPECT_THAT(airports.airportNames("").value(), ElementsAre("Tokyo HND", "Narita NRT", "LA LAX"));
  EXPECT_THAT(
      with("ICAO24.csv", "A,1,2,3,4\r8400A1,JAL,JL,JA1,B738\r").aircraftOfAddress("8400A1").value(),
      ElementsAre("8400A1", "JAL", "JL", "JA1", "B738"));
}

TEST_F(LineEnds, AKeyInTheMiddleOfALineIsNoKey) {
  EXPECT_EQ(with("aircraft.csv", "XJA8089,no\rYJA8089,no\r\n JA8089,no")
                .equipmentOfFirstLine("JA8089")
                .value(),
            "");
}

TEST_F(LineEnds, LinesAreCountedWhateverTheyEndIn) {
  EXPECT_EQ(with("FLIGHT.csv", "A,RJTTKLAX,-\r\n\r\nB,RJTTKLAX,-\rC,RJTTKLAX,-\nNH1\n")
                .flightRoute("NH1")
                .error()
                .text(),
            "ERROR #9\n\nFLIGHT.csv, line 5");
}

TEST_F(LineEnds, AByteOrderMarkIsNoPartOfTheFirstRecord) {
  const Encoding utf8 = Encoding::named("UTF-8").value();
  EXPECT_EQ(with("aircraft.csv", "\xEF\xBB\xBFJA1,A\r\nJA2,B\r\n", utf8)
                .equipmentOfLastLine("JA1")
                .value(),
            "A");
  const Tables letters = with("letter.csv", "\xEF\xBB\xBFJL,JAL,Japan\r\n", utf8);
  EXPECT_TRUE(letters.knowsAirline("JL").value());
  EXPECT_EQ(letters.prefixOf("JAL").value(), "JL");
  // Elsewhere, and in other encodings, these bytes are text.
  EXPECT_EQ(with("aircraft.csv", "\xEF\xBB\xBFJA1,A\r\n").equipmentOfLastLine("JA1").value(), "");
  EXPECT_EQ(with("aircraft.csv", "JA0,x\r\n\xEF\xBB\xBFJA1,A\r\n", utf8)
                .equipmentOfLastLine("JA1")
                .value(),
            "");
}

TEST_F(LineEnds, ATableOfManyBlocksWithoutALineFeedIsReadToItsEnd) {
  std::string bytes;
  for (int i = 0; i < 40000; ++i)
    bytes += "JA" + std::to_string(i) + ",B7" + std::to_string(i) + '\r';
  const Tables tables = with("aircraft.csv", bytes);
  for (const char* number : {"0", "7777", "20011", "39999"}) {
    EXPECT_EQ(tables.equipmentOfFirstLine(std::string("JA") + number).value(),
              std::string("B7") + number);
  }
}

}  // namespace
}  // namespace vel
