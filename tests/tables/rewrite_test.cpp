#include "tables/rewrite.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/file.h"
#include "tables/tables.h"
#include "tests/support/driven_rewrite.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RewriteTest : public testing::Test {
 protected:
  void writeRaw(std::string_view name, std::string_view bytes) const {
    test::writeBytes(base_.folders.data / name, bytes);
  }
  [[nodiscard]] std::string raw(std::string_view name) const {
    return test::readBytes(base_.folders.data / name);
  }
  [[nodiscard]] bool exists(std::string_view name) const {
    return fileExists(base_.folders.data / name);
  }
  test::DrivenRewrite rewrite(const TableEdit& edit) {
    return test::drive(desktop_, base_.folders, encoding_, edit, turns_);
  }
  void expectDone(const TableEdit& edit) {
    EXPECT_EQ(rewrite(edit), test::DrivenRewrite::done);
    EXPECT_THAT(desktop_.messages, IsEmpty());
    EXPECT_FALSE(desktop_.ended);
  }
  void expectFatal(const TableEdit& edit, const std::string& message) {
    EXPECT_EQ(rewrite(edit), test::DrivenRewrite::programEnds);
    EXPECT_THAT(desktop_.messages, ElementsAre(message));
    EXPECT_TRUE(desktop_.ended);
    EXPECT_EQ(desktop_.exitStatus, 1);
  }

  test::TemporaryBase base_;
  test::RecordingDesktop desktop_;
  test::EventTurns turns_;
  Encoding encoding_ = Encoding::codePage932();
};

// ---- which lines change

TEST_F(RewriteTest, ANewKeyIsAppendedAtTheEnd) {
  base_.writeData("aircraft.csv", {"ZZ,1", "AA,2"});
  expectDone({.table = Table::aircraft, .key = "MM", .newRecord = "MM,3"});
  EXPECT_EQ(base_.data("aircraft.csv"), "ZZ,1\r\nAA,2\r\nMM,3\r\n");
}

TEST_F(RewriteTest, TheFirstLineOfAKeyIsReplacedInPlaceAndLaterOnesAreRemoved) {
  base_.writeData("aircraft.csv", {"A,1", "JA8089,old", "B,2", "JA8089,older", "C,3", "JA8089,x"});
  expectDone({.table = Table::aircraft, .key = "JA8089", .newRecord = "JA8089,B744"});
  EXPECT_EQ(base_.data("aircraft.csv"), "A,1\r\nJA8089,B744\r\nB,2\r\nC,3\r\n");
}

TEST_F(RewriteTest, AfterTheEditBothWindowsShowTheSameEquipment) {
  base_.writeData("aircraft.csv", {"JA8089,first", "JA8089,second"});
  expectDone({.table = Table::aircraft, .key = "JA8089", .newRecord = "JA8089,B744"});
  const Tables tables(base_.folders, encoding_);
  EXPECT_EQ(tables.equipmentOfLastLine("JA8089").value(), "B744");
  EXPECT_EQ(tables.equipmentOfFirstLine("JA8089").value(), "B744");
}

TEST_F(RewriteTest, AnEmptyEquipmentRemovesEveryLineOfTheRegistration) {
  base_.writeData("aircraft.csv", {"JA8089,a", "B,2", "JA8089,b"});
  expectDone({.table = Table::aircraft, .key = "JA8089", .newRecord = ""});
  EXPECT_EQ(base_.data("aircraft.csv"), "B,2\r\n");
}

TEST_F(RewriteTest, DeletingAnUnknownKeyAppendsNothing) {
  base_.writeData("airport.csv", {"RJTT,Tokyo HND"});
  expectDone({.table = Table::airport, .key = "RJAA", .newRecord = ""});
  EXPECT_EQ(base_.data("airport.csv"), "RJTT,Tokyo HND\r\n");
}

TEST_F(RewriteTest, AnEmptyNameRemovesEveryLineOfTheAirport) {
  base_.writeData("airport.csv", {"RJTT,Tokyo HND", "RJAA,Narita NRT", "RJTT,Haneda HND"});
  expectDone({.table = Table::airport, .key = "RJTT", .newRecord = ""});
  EXPECT_EQ(base_.data("airport.csv"), "RJAA,Narita NRT\r\n");
}

TEST_F(RewriteTest, TheKeyIsTheWholeFieldInItsLetterCase) {
  base_.writeData("aircraft.csv", {"JA80891,1", "ja8089,2", " JA8089,3", "XJA8089,4"});
  expectDone({.table = Table::aircraft, .key = "JA8089", .newRecord = "JA8089,B744"});
  EXPECT_EQ(base_.data("aircraft.csv"),
            "JA80891,1\r\nja8089,2\r\n JA8089,3\r\nXJA8089,4\r\nJA8089,B744\r\n");
}

TEST_F(RewriteTest, AnEmptyTableTakesItsFirstRecord) {
  writeRaw("aircraft.csv", "");
  expectDone({.table = Table::aircraft, .key = "JA8089", .newRecord = "JA8089,B744"});
  EXPECT_EQ(raw("aircraft.csv"), "JA8089,B744\r\n");
}

TEST_F(RewriteTest, TheLastLineNeedsNoLineEnd) {
  writeRaw("aircraft.csv", "A,1\r\nB,2");
  expectDone({.table = Table::aircraft, .key = "C", .newRecord = "C,3"});
  EXPECT_EQ(raw("aircraft.csv"), "A,1\r\nB,2\r\nC,3\r\n");
}

TEST_F(RewriteTest, LineFeedsAloneAreAcceptedAndCrLfIsWritten) {
  writeRaw("aircraft.csv", "A,1\nB,2,\nC,\nD,4\r\n");
  expectDone({.table = Table::aircraft, .key = "D", .newRecord = "D,5"});
  EXPECT_EQ(raw("aircraft.csv"), "A,1\r\nB,2\r\nC,\r\nD,5\r\n");
}

// ---- how the other lines are carried through

TEST_F(RewriteTest, AircraftLinesWithoutACommaDisappear) {
  base_.writeData("aircraft.csv", {"; comment", "A,1", "", "JA8089", "B,2"});
  expectDone({.table = Table::aircraft, .key = "JA8089", .newRecord = "JA8089,B744"});
  EXPECT_EQ(base_.data("aircraft.csv"), "A,1\r\nB,2\r\nJA8089,B744\r\n");
}

TEST_F(RewriteTest, AircraftLinesKeepTwoFields) {
  base_.writeData("aircraft.csv", {"A,1,x,y", "B,", ",", "C,2,"});
  expectDone({.table = Table::aircraft, .key = "Z", .newRecord = ""});
  EXPECT_EQ(base_.data("aircraft.csv"), "A,1\r\nB,\r\n,\r\nC,2\r\n");
}

TEST_F(RewriteTest, FlightLinesKeepThreeFields) {
  base_.writeData("FLIGHT.csv", {"A,RJTTKLAX,-,x,y", "B,RJTTKLAX,", "C,,,"});
  expectDone({.table = Table::flight, .key = "D", .newRecord = "D,KLAXRJTT,備考"});
  EXPECT_EQ(base_.data("FLIGHT.csv"), "A,RJTTKLAX,-\r\nB,RJTTKLAX,\r\nC,,\r\nD,KLAXRJTT,備考\r\n");
}

TEST_F(RewriteTest, AirportLinesKeepTwoFields) {
  base_.writeData("airport.csv", {"RJTT,Tokyo HND,x", "RJAA,Narita NRT"});
  expectDone({.table = Table::airport, .key = "RJBB", .newRecord = "RJBB,Kansai KIX"});
  EXPECT_EQ(base_.data("airport.csv"), "RJTT,Tokyo HND\r\nRJAA,Narita NRT\r\nRJBB,Kansai KIX\r\n");
}

TEST_F(RewriteTest, Icao24LinesStayAsTheyWereRead) {
  base_.writeData("ICAO24.csv", {"", "; comment, more", "A", "B,1,2,3,4,5,6", "8400A1,x,x,x,x"});
  expectDone({.table = Table::icao24, .key = "8400A1", .newRecord = "8400A1,JAL,JL,JA1,B738"});
  EXPECT_EQ(base_.data("ICAO24.csv"),
            "\r\n; comment, more\r\nA\r\nB,1,2,3,4,5,6\r\n8400A1,JAL,JL,JA1,B738\r\n");
}

TEST_F(RewriteTest, TwoLinesOfAnAddressBecomeOneAtThePlaceOfTheFirst) {
  base_.writeData("ICAO24.csv", {"8400A1,a", "B,1,2,3,4", "8400A1,b,c,d,e"});
  expectDone({.table = Table::icao24, .key = "8400A1", .newRecord = "8400A1,JAL,JL,JA1,B738"});
  EXPECT_EQ(base_.data("ICAO24.csv"), "8400A1,JAL,JL,JA1,B738\r\nB,1,2,3,4\r\n");
}

TEST_F(RewriteTest, LetterLinesKeepThreeFieldsInThreeFieldMode) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta", "JL,JAL,Japan,Company", "NH,ANA,ANA"});
  expectDone({.table = Table::letter, .key = "CT", .newRecord = "CT,AAE,Atlanta"});
  EXPECT_EQ(base_.data("letter.csv"), "CT,AAE,Atlanta\r\nJL,JAL,Japan\r\nNH,ANA,ANA\r\n");
}

TEST_F(RewriteTest, LetterLinesKeepFourFieldsInFourFieldMode) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta,One", "JL,JAL,Japan,Two,Three"});
  expectDone({.table = Table::letter,
              .key = "CT",
              .newRecord = "CT,AAE,Atlanta,New",
              .letterFields = LetterFields::four});
  EXPECT_EQ(base_.data("letter.csv"), "CT,AAE,Atlanta,New\r\nJL,JAL,Japan,Two\r\n");
}

TEST_F(RewriteTest, ACommaInTheCompanyMakesAnExtraField) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta,One"});
  expectDone({.table = Table::letter,
              .key = "CT",
              .newRecord = "CT,AAE,Atlanta,Co, Ltd",
              .letterFields = LetterFields::four});
  EXPECT_EQ(base_.data("letter.csv"), "CT,AAE,Atlanta,Co, Ltd\r\n");
}

TEST_F(RewriteTest, AnAirlineFoundInsideALongerFieldIsNotTheOneThatIsEdited) {
  base_.writeData("letter.csv", {"XJL,LNG,Long"});
  expectDone({.table = Table::letter, .key = "JL", .newRecord = "JL,JAL,Japan"});
  EXPECT_EQ(base_.data("letter.csv"), "XJL,LNG,Long\r\nJL,JAL,Japan\r\n");
}

TEST_F(RewriteTest, ClearingAnAirlineRemovesItsLine) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta", "JL,JAL,Japan"});
  expectDone({.table = Table::letter, .key = "CT", .newRecord = ""});
  EXPECT_EQ(base_.data("letter.csv"), "JL,JAL,Japan\r\n");
}

TEST_F(RewriteTest, AnEditedAirlineKeepsFieldOneAsItStandsInTheFile) {
  // One character, two byte forms: the typed record has the other one.
  writeRaw("letter.csv",
           "\xEE\xE0"
           "L,OLD,Old\r\nJL,JAL,Japan\r\n");
  expectDone({.table = Table::letter, .key = "髙L", .newRecord = "髙L,NEW,New"});
  EXPECT_EQ(raw("letter.csv"),
            "\xEE\xE0"
            "L,NEW,New\r\nJL,JAL,Japan\r\n");
}

TEST_F(RewriteTest, AnAirlineOfNothingButItsKeyKeepsFieldOne) {
  base_.writeData("letter.csv", {"JL,JAL,Japan", "CT,AAE,Atlanta"});
  expectDone({.table = Table::letter, .key = "JL", .newRecord = "JL"});
  EXPECT_EQ(base_.data("letter.csv"), "JL\r\nCT,AAE,Atlanta\r\n");
}

TEST_F(RewriteTest, CarriedBytesStayEvenWhereTheyAreNoText) {
  using namespace std::string_literals;
  const std::string damaged = "\xFF\x80,\x83\r\nA\0B,\0\r\n\xEE\xE0,\x83\x5C\r\n,\x82\r\n"s;
  writeRaw("aircraft.csv", damaged);
  expectDone({.table = Table::aircraft, .key = "JA8089", .newRecord = "JA8089,ソ"});
  EXPECT_EQ(raw("aircraft.csv"), damaged + "JA8089,\x83\x5C\r\n");
}

TEST_F(RewriteTest, AMixtureOfShortenedDroppedAndUnchangedLinesKeepsItsOrder) {
  std::string before;
  std::string after;
  for (int i = 0; i < 20000; ++i) {
    const std::string record = "JA" + std::to_string(i) + ",B7" + std::to_string(i % 90);
    switch (i % 7) {
      case 3:
        before += record + ",dropped field\r\n";
        after += record + "\r\n";
        break;
      case 4:
        before += "; dropped line " + std::to_string(i) + "\r\n";
        break;
      case 5:
        before += record + "\n";
        after += record + "\r\n";
        break;
      default:
        before += record + "\r\n";
        after += record + "\r\n";
    }
  }
  writeRaw("aircraft.csv", before);
  expectDone({.table = Table::aircraft, .key = "none", .newRecord = ""});
  EXPECT_EQ(raw("aircraft.csv"), after);
  EXPECT_EQ(raw("aircraft.bak"), before);
}

TEST_F(RewriteTest, ALineOfSeveralMegabytesIsCarriedThrough) {
  const std::string longLine = "A," + std::string(5000000, 'x') + "\r\n";
  writeRaw("ICAO24.csv", longLine + "B,1\r\n");
  expectDone({.table = Table::icao24, .key = "B", .newRecord = "B,2,3,4,5"});
  EXPECT_EQ(raw("ICAO24.csv"), longLine + "B,2,3,4,5\r\n");
}

// ---- lines that are not as they must be

TEST_F(RewriteTest, AShortFlightLineEndsTheProgramWithTheTableUntouched) {
  base_.writeData("FLIGHT.csv", {"A,RJTTKLAX,-", "B,RJTTKLAX", "C,RJTTKLAX,-"});
  expectFatal({.table = Table::flight, .key = "A", .newRecord = "A,KLAXRJTT,-"},
              "ERROR #9\n\nFLIGHT.csv, line 2");
  EXPECT_EQ(base_.data("FLIGHT.csv"), "A,RJTTKLAX,-\r\nB,RJTTKLAX\r\nC,RJTTKLAX,-\r\n");
  EXPECT_FALSE(exists("FLIGHT.bak"));
  EXPECT_FALSE(exists("FLIGHT.$$$"));
}

TEST_F(RewriteTest, AnAirportLineWithoutANameEndsTheProgram) {
  base_.writeData("airport.csv", {"RJTT,Tokyo HND", "RJAA"});
  expectFatal({.table = Table::airport, .key = "RJTT", .newRecord = "RJTT,x"},
              "ERROR #9\n\nairport.csv, line 2");
  EXPECT_EQ(base_.data("airport.csv"), "RJTT,Tokyo HND\r\nRJAA\r\n");
}

TEST_F(RewriteTest, ALetterLineOfTwoFieldsEndsTheProgram) {
  base_.writeData("letter.csv", {"CT,AAE", "JL,JAL,Japan"});
  expectFatal({.table = Table::letter, .key = "JL", .newRecord = "JL,JAL,x"},
              "ERROR #9\n\nletter.csv, line 1");
}

TEST_F(RewriteTest, ALineOfThreeFieldsEndsTheProgramInFourFieldMode) {
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta,One", "JL,JAL,Japan"});
  expectFatal({.table = Table::letter,
               .key = "CT",
               .newRecord = "CT,AAE,x,y",
               .letterFields = LetterFields::four},
              "ERROR #9\n\nletter.csv, line 2");
  EXPECT_EQ(base_.data("letter.csv"), "CT,AAE,Air Atlanta,One\r\nJL,JAL,Japan\r\n");
}

TEST_F(RewriteTest, AShortLineOfTheEditedKeyIsReplacedLikeAnyOther) {
  base_.writeData("FLIGHT.csv", {"A", "B,RJTTKLAX,-"});
  expectDone({.table = Table::flight, .key = "A", .newRecord = "A,KLAXRJTT,-"});
  EXPECT_EQ(base_.data("FLIGHT.csv"), "A,KLAXRJTT,-\r\nB,RJTTKLAX,-\r\n");
}

TEST_F(RewriteTest, AnEndlessLineEndsTheProgramWithTheTableUntouched) {
  const std::string endless(std::size_t{17} << 20, 'x');
  writeRaw("ICAO24.csv", endless);
  expectFatal({.table = Table::icao24, .key = "A", .newRecord = "A,1,2,3,4"},
              "ERROR #57\n\nICAO24.csv, line 1");
  EXPECT_EQ(raw("ICAO24.csv"), endless);
  EXPECT_FALSE(exists("ICAO24.$$$"));
}

TEST_F(RewriteTest, TheErrorOfAnEndlessLineNamesItsTableAndItsNumber) {
  std::string table;
  for (int line = 1; line <= 40'000; ++line) table += std::to_string(line) + ",RJTTKLAX,-\r\n";
  writeRaw("FLIGHT.csv", table + std::string(std::size_t{17} << 20, 'x') + "\r\nA,RJTTKLAX,-\r\n");
  expectFatal({.table = Table::flight, .key = "A", .newRecord = "A,KLAXRJTT,-"},
              "ERROR #57\n\nFLIGHT.csv, line 40001");
  EXPECT_FALSE(exists("FLIGHT.$$$"));
}

TEST_F(RewriteTest, AMissingTableEndsTheProgram) {
  expectFatal({.table = Table::icao24, .key = "A", .newRecord = "A,1,2,3,4"}, "ERROR #53");
  EXPECT_FALSE(exists("ICAO24.csv"));
}

// ---- blank lines, line ends and byte order marks

TEST_F(RewriteTest, BlankLinesAreCarriedThrough) {
  writeRaw("FLIGHT.csv", "\r\nA,RJTTKLAX,-\r\n\nB,RJTTKLAX,-\r\n\r\n");
  expectDone({.table = Table::flight, .key = "B", .newRecord = "B,KLAXRJTT,-"});
  EXPECT_EQ(raw("FLIGHT.csv"), "\r\nA,RJTTKLAX,-\r\n\r\nB,KLAXRJTT,-\r\n\r\n");
  writeRaw("airport.csv", "RJTT,Tokyo HND\r\n\r\n");
  expectDone({.table = Table::airport, .key = "RJAA", .newRecord = "RJAA,Narita NRT"});
  EXPECT_EQ(raw("airport.csv"), "RJTT,Tokyo HND\r\n\r\nRJAA,Narita NRT\r\n");
  for (const LetterFields fields : {LetterFields::three, LetterFields::four}) {
    writeRaw("letter.csv", "\r\nCT,AAE,Atlanta,One\r\n");
    expectDone({.table = Table::letter, .key = "ZZ", .newRecord = {}, .letterFields = fields});
    EXPECT_EQ(raw("letter.csv"), fields == LetterFields::four ? "\r\nCT,AAE,Atlanta,One\r\n"
                                                              : "\r\nCT,AAE,Atlanta\r\n");
  }
}

TEST_F(RewriteTest, ABlankLineIsNotTheRecordOfAnEmptyKey) {
  writeRaw("letter.csv", "\r\nCT,AAE,Atlanta\r\n");
  expectDone({.table = Table::letter, .key = "", .newRecord = ",ANA,x"});
  EXPECT_EQ(raw("letter.csv"), "\r\nCT,AAE,Atlanta\r\n,ANA,x\r\n");
}

TEST_F(RewriteTest, ALineOfBlanksIsNoBlankLine) {
  writeRaw("FLIGHT.csv", "A,RJTTKLAX,-\r\n\r\n \r\n");
  expectFatal({.table = Table::flight, .key = "A", .newRecord = "A,KLAXRJTT,-"},
              "ERROR #9\n\nFLIGHT.csv, line 3");
}

TEST_F(RewriteTest, TheErrorNamesTheFileAsItWasFound) {
  writeRaw("Flight.CSV", "A\r\n");
  expectFatal({.table = Table::flight, .key = "B", .newRecord = "B,KLAXRJTT,-"},
              "ERROR #9\n\nFlight.CSV, line 1");
}

TEST_F(RewriteTest, ATableWithCarriageReturnsAloneComesOutComplete) {
  writeRaw("aircraft.csv", "A,1\rB,2,x\r\rcomment\rC,3\r\nD,4\nE,5");
  expectDone({.table = Table::aircraft, .key = "C", .newRecord = "C,9"});
  EXPECT_EQ(raw("aircraft.csv"), "A,1\r\nB,2\r\nC,9\r\nD,4\r\nE,5\r\n");
  std::string before;
  std::string after;
  for (int i = 0; i < 40000; ++i) {
    const std::string record = "JA" + std::to_string(i) + ",RJTTKLAX,-";
    before += record + '\r';
    after += record + "\r\n";
  }
  writeRaw("FLIGHT.csv", before);
  expectDone({.table = Table::flight, .key = "none", .newRecord = {}});
  EXPECT_EQ(raw("FLIGHT.csv"), after);
}

TEST_F(RewriteTest, AByteOrderMarkIsKeptAndTheFirstRecordIsFoundBehindIt) {
  encoding_ = Encoding::named("UTF-8").value();
  writeRaw("aircraft.csv", "\xEF\xBB\xBFJA1,A\r\nJA2,B\r\n");
  expectDone({.table = Table::aircraft, .key = "JA1", .newRecord = "JA1,ジャンボ"});
  EXPECT_EQ(raw("aircraft.csv"), "\xEF\xBB\xBFJA1,ジャンボ\r\nJA2,B\r\n");
  writeRaw("aircraft.csv", "\xEF\xBB\xBF");
  expectDone({.table = Table::aircraft, .key = "JA1", .newRecord = "JA1,A"});
  EXPECT_EQ(raw("aircraft.csv"), "\xEF\xBB\xBFJA1,A\r\n");
}

TEST_F(RewriteTest, AKeyFromTheAirThatNoFieldCanHoldIsRefused) {
  base_.writeData("FLIGHT.csv", {"A,RJTTKLAX,-"});
  for (const char* key : {"AB,12", "AB\"12", "AB\x01", "AB\t", "AB\x7F", "AB\xC2\x85"}) {
    desktop_.messages.clear();
    EXPECT_EQ(rewrite(flightEdit(key, {"RJTT", "KLAX", "-"})), test::DrivenRewrite::refused) << key;
    EXPECT_THAT(desktop_.messages,
                ElementsAre("Illegal character is included. 登録できない文字が含まれています。"));
  }
  EXPECT_EQ(turns_.count, 0);
  EXPECT_EQ(base_.data("FLIGHT.csv"), "A,RJTTKLAX,-\r\n");
}

// ---- the files

TEST_F(RewriteTest, TheBackupIsTheTableJustBeforeTheRewrite) {
  base_.writeData("FLIGHT.csv", {"A,RJTTKLAX,-"});
  writeRaw("FLIGHT.bak", "an older backup");
  writeRaw("FLIGHT.$$$", "left over from a cancelled rewrite, and longer than the new table is");
  expectDone({.table = Table::flight, .key = "A", .newRecord = "A,KLAXRJTT,-"});
  EXPECT_EQ(raw("FLIGHT.csv"), "A,KLAXRJTT,-\r\n");
  EXPECT_EQ(raw("FLIGHT.bak"), "A,RJTTKLAX,-\r\n");
  EXPECT_FALSE(exists("FLIGHT.$$$"));
  expectDone({.table = Table::flight, .key = "A", .newRecord = "A,RJTTRJAA,-"});
  EXPECT_EQ(raw("FLIGHT.bak"), "A,KLAXRJTT,-\r\n");
}

TEST_F(RewriteTest, EveryTableHasItsOwnFiles) {
  base_.writeData("aircraft.csv", {"A,1"});
  base_.writeData("FLIGHT.csv", {"A,RJTTKLAX,-"});
  base_.writeData("airport.csv", {"RJTT,Tokyo HND"});
  base_.writeData("letter.csv", {"CT,AAE,Air Atlanta"});
  base_.writeData("ICAO24.csv", {"A,1,2,3,4"});
  for (const Table table :
       {Table::aircraft, Table::flight, Table::airport, Table::letter, Table::icao24}) {
    expectDone({.table = table, .key = "none", .newRecord = ""});
  }
  EXPECT_THAT(
      listFolder(base_.folders.data).value(),
      ElementsAre("aircraft.bak", "aircraft.csv", "airport.bak", "airport.csv", "FLIGHT.bak",
                  "FLIGHT.csv", "ICAO24.bak", "ICAO24.csv", "letter.bak", "letter.csv"));
}

TEST_F(RewriteTest, FilesKeepTheNamesTheyWereFoundUnder) {
  base_.writeData("flight.csv", {"A,RJTTKLAX,-"});
  writeRaw("Flight.BAK", "old");
  expectDone({.table = Table::flight, .key = "A", .newRecord = "A,KLAXRJTT,-"});
  EXPECT_THAT(listFolder(base_.folders.data).value(), ElementsAre("Flight.BAK", "flight.csv"));
  EXPECT_EQ(raw("flight.csv"), "A,KLAXRJTT,-\r\n");
  EXPECT_EQ(raw("Flight.BAK"), "A,RJTTKLAX,-\r\n");
}

TEST_F(RewriteTest, AHardLinkFromTheNewFileToTheTableCostsNoByte) {
  base_.writeData("aircraft.csv", {"A,1", "B,2"});
  std::filesystem::create_hard_link(base_.folders.data / "aircraft.csv",
                                    base_.folders.data / "aircraft.$$$");
  expectDone({.table = Table::aircraft, .key = "A", .newRecord = "A,3"});
  EXPECT_EQ(base_.data("aircraft.csv"), "A,3\r\nB,2\r\n");
  EXPECT_EQ(base_.data("aircraft.bak"), "A,1\r\nB,2\r\n");
}

// ---- the event loop's two turns

TEST_F(RewriteTest, TheEventLoopRunsOnceBeforeAnythingIsOpenedAndOnceBeforeTheRenames) {
  base_.writeData("aircraft.csv", {"A,1"});
  writeRaw("aircraft.bak", "old");
  std::vector<std::string> seen;
  turns_.each = [&] {
    seen.push_back((exists("aircraft.$$$") ? raw("aircraft.$$$") : "none") + "|" +
                   raw("aircraft.csv") + "|" + raw("aircraft.bak"));
  };
  expectDone({.table = Table::aircraft, .key = "A", .newRecord = "A,2"});
  EXPECT_THAT(seen, ElementsAre("none|A,1\r\n|old", "A,2\r\n|A,1\r\n|old"));
}

TEST_F(RewriteTest, AProgramThatEndsInTheFirstTurnTouchesNothing) {
  base_.writeData("aircraft.csv", {"A,1"});
  turns_.each = [&] { desktop_.endProgram(0); };
  EXPECT_EQ(rewrite({.table = Table::aircraft, .key = "A", .newRecord = "A,2"}),
            test::DrivenRewrite::programEnds);
  EXPECT_THAT(listFolder(base_.folders.data).value(), ElementsAre("aircraft.csv"));
  EXPECT_EQ(base_.data("aircraft.csv"), "A,1\r\n");
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(RewriteTest, AProgramThatEndsInTheSecondTurnRenamesNothing) {
  base_.writeData("aircraft.csv", {"A,1"});
  writeRaw("aircraft.bak", "old");
  turns_.each = [&] {
    if (turns_.count == 2) desktop_.endProgram(0);
  };
  EXPECT_EQ(rewrite({.table = Table::aircraft, .key = "A", .newRecord = "A,2"}),
            test::DrivenRewrite::programEnds);
  EXPECT_EQ(base_.data("aircraft.csv"), "A,1\r\n");
  EXPECT_EQ(raw("aircraft.bak"), "old");
  EXPECT_EQ(raw("aircraft.$$$"), "A,2\r\n");
}

TEST_F(RewriteTest, ATableThatVanishesInTheFirstTurnIsReported) {
  base_.writeData("aircraft.csv", {"A,1"});
  turns_.each = [&] { std::filesystem::remove(base_.folders.data / "aircraft.csv"); };
  expectFatal({.table = Table::aircraft, .key = "A", .newRecord = "A,2"}, "ERROR #53");
  EXPECT_THAT(listFolder(base_.folders.data).value(), IsEmpty());
}

TEST_F(RewriteTest, ATableThatVanishesInTheSecondTurnIsReported) {
  base_.writeData("aircraft.csv", {"A,1"});
  turns_.each = [&] {
    if (turns_.count == 2) std::filesystem::remove(base_.folders.data / "aircraft.csv");
  };
  expectFatal({.table = Table::aircraft, .key = "A", .newRecord = "A,2"}, "ERROR #53");
  EXPECT_EQ(raw("aircraft.$$$"), "A,2\r\n");
}

TEST_F(RewriteTest, WhereTheNewFileVanishesInTheSecondTurnTheTableStays) {
  base_.writeData("aircraft.csv", {"A,1"});
  writeRaw("aircraft.bak", "old");
  turns_.each = [&] {
    if (turns_.count == 2) std::filesystem::remove(base_.folders.data / "aircraft.$$$");
  };
  expectFatal({.table = Table::aircraft, .key = "A", .newRecord = "A,2"}, "ERROR #53");
  EXPECT_EQ(base_.data("aircraft.csv"), "A,1\r\n");
  EXPECT_EQ(raw("aircraft.bak"), "old");
}

TEST_F(RewriteTest, ARewriteOfAnotherTableMayRunBeforeItsFirstStep) {
  base_.writeData("aircraft.csv", {"A,1"});
  base_.writeData("FLIGHT.csv", {"A,RJTTKLAX,-"});
  turns_.each = [&] {
    if (turns_.count != 1) return;
    EXPECT_EQ(rewrite({.table = Table::flight, .key = "A", .newRecord = "A,KLAXRJTT,-"}),
              test::DrivenRewrite::done);
  };
  expectDone({.table = Table::aircraft, .key = "A", .newRecord = "A,2"});
  EXPECT_EQ(base_.data("aircraft.csv"), "A,2\r\n");
  EXPECT_EQ(base_.data("FLIGHT.csv"), "A,KLAXRJTT,-\r\n");
}

// ---- text that cannot be stored

TEST_F(RewriteTest, ARecordThatTheEncodingCannotHoldIsRefusedBeforeAnythingHappens) {
  base_.writeData("aircraft.csv", {"A,1"});
  EXPECT_EQ(rewrite({.table = Table::aircraft, .key = "A", .newRecord = "A,Crème"}),
            test::DrivenRewrite::refused);
  EXPECT_THAT(desktop_.messages,
              ElementsAre("Illegal character is included. 登録できない文字が含まれています。"));
  EXPECT_EQ(turns_.count, 0);
  EXPECT_FALSE(desktop_.ended);
  EXPECT_THAT(listFolder(base_.folders.data).value(), ElementsAre("aircraft.csv"));
}

// ---- a rewrite that was cut off

TEST_F(RewriteTest, ARewriteCutOffBetweenItsRenamesIsFinishedAtStartUp) {
  writeRaw("FLIGHT.$$$", "new");
  writeRaw("FLIGHT.bak", "old");
  writeRaw("icao24.$$$", "new 24");
  writeRaw("icao24.bak", "old 24");
  recoverTables(base_.folders);
  EXPECT_THAT(listFolder(base_.folders.data).value(),
              ElementsAre("FLIGHT.bak", "FLIGHT.csv", "icao24.bak", "ICAO24.csv"));
  EXPECT_EQ(raw("FLIGHT.csv"), "new");
  EXPECT_EQ(raw("FLIGHT.bak"), "old");
  EXPECT_EQ(raw("ICAO24.csv"), "new 24");
}

TEST_F(RewriteTest, NoOtherStateIsRepaired) {
  writeRaw("FLIGHT.$$$", "no backup");
  writeRaw("aircraft.bak", "no new file");
  writeRaw("letter.csv", "live");
  writeRaw("letter.$$$", "new");
  writeRaw("letter.bak", "old");
  writeRaw("Airport.CSV", "live under another case");
  writeRaw("airport.$$$", "new");
  writeRaw("airport.bak", "old");
  const auto before = listFolder(base_.folders.data).value();
  recoverTables(base_.folders);
  EXPECT_EQ(listFolder(base_.folders.data).value(), before);
  EXPECT_EQ(raw("letter.csv"), "live");
  EXPECT_EQ(raw("Airport.CSV"), "live under another case");
}

TEST_F(RewriteTest, RecoveryOfAMissingFolderDoesNothing) {
  std::filesystem::remove_all(base_.folders.data);
  recoverTables(base_.folders);
  EXPECT_FALSE(std::filesystem::exists(base_.folders.data));
}

}  // namespace
}  // namespace vel
