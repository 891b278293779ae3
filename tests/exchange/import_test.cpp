#include <chrono>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tables/rewrite.h"
#include "tests/exchange/import_files.h"
#include "tests/exchange/import_station.h"

namespace vel {
namespace {

using testing::HasSubstr;

using Import = test::ImportStation;

constexpr std::string_view kOurAirports =
    "\"id\",\"ident\",\"type\",\"name\",\"municipality\",\"gps_code\",\"iata_code\"\n"
    "1,\"RJTT\",\"large_airport\",\"Tokyo Haneda International "
    "Airport\",\"Tokyo\",\"RJTT\",\"HND\"\n"
    "2,\"KJFK\",\"large_airport\",\"John F Kennedy, International\",\"New York\",\"KJFK\",\"JFK\"\n"
    "3,\"00AK\",\"small_airport\",\"Lowell Field\",\"Anchor Point\",\"00AK\",\"\"\n"
    "4,\"EGLX\",\"closed\",\"Old London\",\"London\",\"EGLX\",\"\"\n"
    "5,\"SBGR\",\"large_airport\",\"Guarulhos International\",\"S\xC3\xA3o "
    "Paulo\",\"SBGR\",\"GRU\"\n"
    "6,\"US-1\",\"military\",\"Home AFB\",\"Home\",\"KHOM\",\"\"\n";

TEST_F(Import, WhatTheLogsNameAndTheTableLacksIsWritten) {
  writeFile("airports.csv", kOurAirports);
  EXPECT_EQ(import("airports.csv"), 0);
  EXPECT_EQ(base_.data("airport.csv"),
            "RJTT,Tokyo Haneda International Airport HND\r\n"
            "KJFK,New York John F Kennedy  International JFK\r\n");
  EXPECT_EQ(out_,
            "OurAirports airports.csv: 6 rows read, 2 without a record, 1 text made storable\n"
            "airport.csv: 2 new, 0 differ, 0 the same\nairport.csv: 2 records written\n");
  EXPECT_EQ(errors_, "");
  EXPECT_EQ(test::readBytes(base_.folders.data / "airport.bak"), "");
  // Once more: nothing is left to do.
  EXPECT_EQ(import("airports.csv"), 0);
  EXPECT_THAT(out_, HasSubstr("airport.csv: 0 new, 0 differ, 2 the same\n"
                              "airport.csv: 0 records written\n"));
}

TEST_F(Import, EverythingIsTakenWhenItIsAskedFor) {
  writeFile("airports.csv", kOurAirports);
  EXPECT_EQ(import("airports.csv", {.all = true}), 0);
  EXPECT_EQ(base_.data("airport.csv"),
            "RJTT,Tokyo Haneda International Airport HND\r\n"
            "KJFK,New York John F Kennedy  International JFK\r\n"
            "SBGR,Sao Paulo Guarulhos International GRU\r\n"
            "KHOM,Home AFB -\r\n");
}

TEST_F(Import, RecordsThatExistAreKeptUnlessTheyAreToBeCorrected) {
  base_.writeData("airport.csv", {"KJFK,my own name JFK", "ZZZZ,stays ZZZ", "KJFK,again JFK"});
  writeFile("airports.csv", kOurAirports);
  EXPECT_EQ(import("airports.csv", {}, true), 0);
  EXPECT_THAT(out_, HasSubstr("airport.csv: 1 new, 1 differs, 0 the same\nNothing was written.\n"));
  EXPECT_EQ(base_.data("airport.csv"),
            "KJFK,my own name JFK\r\nZZZZ,stays ZZZ\r\nKJFK,again JFK\r\n");
  EXPECT_EQ(import("airports.csv"), 0);
  EXPECT_EQ(base_.data("airport.csv"),
            "KJFK,my own name JFK\r\nZZZZ,stays ZZZ\r\nKJFK,again JFK\r\n"
            "RJTT,Tokyo Haneda International Airport HND\r\n");
  EXPECT_EQ(import("airports.csv", {.replace = true}), 0);
  EXPECT_EQ(base_.data("airport.csv"),
            "KJFK,New York John F Kennedy  International JFK\r\nZZZZ,stays ZZZ\r\n"
            "RJTT,Tokyo Haneda International Airport HND\r\n");
}

TEST_F(Import, OpenFlightsHasNoHeaderAndWritesNothingAsBackslashN) {
  writeFile(
      "airports.dat",
      "507,\"London \\\"Heathrow\\\" Airport\",\"London\",\"United Kingdom\",\"LHR\",\"EGLL\","
      "51.47,-0.46,83,0,\"E\",\"Europe/London\",\"airport\",\"OurAirports\"\n"
      "508,\"Nowhere\",\"Nowhere\",\"X\",\\N,\\N,51.47,-0.46,83,0,\"E\",\\N,\"airport\","
      "\"User\"\n");
  EXPECT_EQ(import("airports.dat"), 0);
  EXPECT_EQ(base_.data("airport.csv"), "EGLL,London 'Heathrow' Airport LHR\r\n");
  writeFile("airlines.dat",
            "-1,\"Unknown\",\\N,\"-\",\"N/A\",\\N,\\N,\"Y\"\n"
            "24,\"Old Airline\",\\N,\"BA\",\"OLD\",\"OLD\",\"X\",\"N\"\n"
            "1355,\"British Airways\",\\N,\"BA\",\"BAW\",\"SPEEDBIRD\",\"United Kingdom\",\"Y\"\n"
            "9,\"Not heard\",\\N,\"QF\",\"QFA\",\"QANTAS\",\"Australia\",\"Y\"\n");
  EXPECT_EQ(import("airlines.dat"), 0);
  EXPECT_EQ(base_.data("letter.csv"), "BA,BAW,British Airways\r\n");
}

TEST_F(Import, StandingDataFillsAirportsAirlinesAndAircraft) {
  writeFile("EG.csv",
            "\xEF\xBB\xBF"
            "Code,Name,ICAO,IATA,Location,CountryISO2,Latitude,Longitude,AltitudeFeet\r\n"
            "EGLL,Heathrow Airport,EGLL,LHR,London,GB,51.4,-0.4,83\r\n");
  writeFile("lines.csv",
            "Code,Name,ICAO,IATA,PositioningFlightPattern,CharterFlightPattern\n"
            "ANA,All Nippon Airways,ANA,NH,,\n1B,Somebody,,1B,,\n");
  writeFile("348.csv",
            "ICAO,Registration,ModelICAO,Manufacturer,Model,ManufacturerAndModel,IsPrivateOperator,"
            "Operator,AirlineCode,SerialNumber,YearBuilt\n"
            "3482D8,EC-OLF,B789,Boeing,787,\"Boeing 787\",0,Whoever,WHL,1,2020\n"
            "348000,TOWER,-TWR,,,,0,,,,\n");
  EXPECT_EQ(import("EG.csv"), 0) << errors_;
  EXPECT_EQ(base_.data("airport.csv"), "EGLL,London Heathrow Airport LHR\r\n");
  EXPECT_EQ(import("lines.csv"), 0) << errors_;
  EXPECT_EQ(base_.data("letter.csv"), "NH,ANA,All Nippon Airways\r\n");
  EXPECT_EQ(import("348.csv"), 0) << errors_;
  EXPECT_EQ(base_.data("aircraft.csv"), "EC-OLF,B789\r\n");
  EXPECT_EQ(base_.data("ICAO24.csv"), "3482D8,WHL,,EC-OLF,B789\r\n");
}

TEST_F(Import, RoutesBecomeFlightsAsTheyAreReceived) {
  base_.writeData("letter.csv", {"BA,BAW,British Airways", "NH,ANA,All Nippon Airways"});
  writeFile("BAW-all.csv",
            "Callsign,Code,Number,AirlineCode,AirportCodes\n"
            "BAW117,BAW,117,BAW,EGLL-EINN-KJFK\n"  // by way of another airport
            "ANA105,ANA,105,ANA,RJTT-PHNL\n"
            "BAW61UR,BAW,61UR,BAW,EGLL-LEIB\n"  // no flight number
            "XYZ1,XYZ,1,XYZ,EGLL-KJFK\n"        // no airline of the table
            "BAW5,BAW,5,BAW,EGLL\n"             // no route
            "BAW9,BAW,9,BAW,EGLL-WSSS\n");      // no log names it
  EXPECT_EQ(import("BAW-all.csv"), 0);
  EXPECT_EQ(base_.data("FLIGHT.csv"), "BA0117,EGLLKJFK,-\r\nNH0105,RJTTPHNL,-\r\n");
  EXPECT_THAT(out_, HasSubstr("6 rows read, 3 without a record"));
  // What the routes name is wanted of the airports now.
  writeFile("EI.csv",
            "Code,Name,ICAO,IATA,Location,CountryISO2\n"
            "KJFK,Kennedy,KJFK,JFK,New York,US\nWSSS,Changi,WSSS,SIN,Singapore,SG\n");
  EXPECT_EQ(import("EI.csv"), 0);
  EXPECT_EQ(base_.data("airport.csv"), "KJFK,New York Kennedy JFK\r\n");
}

TEST_F(Import, ARemarkOfTheUsersOwnStays) {
  base_.writeData("letter.csv", {"BA,BAW,British Airways"});
  base_.writeData("FLIGHT.csv", {"BA0117,EGLLKBOS,my remark"});
  writeFile("routes.csv",
            "Callsign,Code,Number,AirlineCode,AirportCodes\nBAW117,BAW,117,BAW,EGLL-KJFK\n");
  EXPECT_EQ(import("routes.csv", {.replace = true}), 0);
  EXPECT_EQ(base_.data("FLIGHT.csv"), "BA0117,EGLLKJFK,my remark\r\n");
}

TEST_F(Import, AircraftFillBothTables) {
  base_.writeData("letter.csv", {"WH,WHL,Whoever"});
  const std::string expected = "EC-OLF,B789\r\nGXLEA,A388\r\n";
  writeFile("aircraftDatabase.csv",
            "icao24,registration,manufacturericao,typecode,operatoricao,operatoriata\n"
            "3482d8,EC-OLF,BOEING,B789,WHL,\n406a12,G-XLEA,AIRBUS,A388,BAW,BA\n"
            "000000,,,,,\n");
  EXPECT_EQ(import("aircraftDatabase.csv"), 0) << errors_;
  // The British one was received without its hyphen.
  EXPECT_EQ(base_.data("aircraft.csv"), expected);
  EXPECT_EQ(base_.data("ICAO24.csv"), "3482D8,WHL,WH,EC-OLF,B789\r\n");
}

TEST_F(Import, OpenSkysOtherFormIsInApostrophes) {
  writeFile("complete.csv",
            "'icao24','timestamp','registration','typecode','operatorIcao','operatorIata'\n"
            "'3482d8','2024','EC-OLF','B789','WHL','WH'\n");
  EXPECT_EQ(import("complete.csv"), 0) << errors_;
  EXPECT_EQ(base_.data("ICAO24.csv"), "3482D8,WHL,WH,EC-OLF,B789\r\n");
}

TEST_F(Import, ReadsbIsAGzipWithSemicolons) {
  writeFile(
      "aircraft.csv.gz",
      test::gzipped("004002;Z-WPA;B732;00;BOEING 737-200;;;\n"
                    "3482d8;EC-OLF;B789;00;BOEING 787-9 \"Dreamliner\";2020;Whoever, S.A.;\n"));
  EXPECT_EQ(import("aircraft.csv.gz"), 0) << errors_;
  EXPECT_EQ(base_.data("aircraft.csv"), "EC-OLF,B789\r\n");
  EXPECT_EQ(base_.data("ICAO24.csv"), "3482D8,,,EC-OLF,B789\r\n");
  EXPECT_THAT(out_, HasSubstr("readsb aircraft.csv: 2 rows read\n"));
  // A record of the user's keeps what the file does not know.
  base_.writeData("ICAO24.csv", {"3482D8,WHL,WH,EC-OLF,B788,x"});
  EXPECT_EQ(import("aircraft.csv.gz", {.table = Table::icao24, .replace = true}), 0);
  EXPECT_EQ(base_.data("ICAO24.csv"), "3482D8,WHL,WH,EC-OLF,B789,x\r\n");
}

TEST_F(Import, ABaseStationDatabaseFillsBothTables) {
  test::writeBaseStation(file("anything.bin"),
                         "('3482D8','EC-OLF','B789','WHL'), ('004002','Z-WPA','B732',NULL)");
  EXPECT_EQ(import("anything.bin"), 0) << errors_;
  EXPECT_EQ(base_.data("aircraft.csv"), "EC-OLF,B789\r\n");
  EXPECT_EQ(base_.data("ICAO24.csv"), "3482D8,WHL,,EC-OLF,B789\r\n");
}

TEST_F(Import, TheTablesOfAnotherStationAreKnownByTheirShape) {
  writeFile("1.txt", test::cp932Lines({"JA731A,B773 改", "a comment", "G-OTHER,A320"}));
  writeFile("2.txt", test::cp932Lines({"NH0105,RJTTPHNL,毎日", "XX0001,AAAABBBB,-"}));
  writeFile("3.txt", test::cp932Lines({"RJTT,東京 HND"}));
  writeFile("4.txt", test::cp932Lines({"NH,ANA,全日空,All Nippon Airways Co."}));
  writeFile("5.txt", test::cp932Lines({"3482D8,WHL,WH,EC-OLF,B789", "ABCDEF,,,X-YZ,C172"}));
  for (const char* name : {"1.txt", "2.txt", "3.txt", "4.txt", "5.txt"}) {
    EXPECT_EQ(import(name), 0) << name << ": " << errors_;
  }
  EXPECT_EQ(base_.data("aircraft.csv"), "JA731A,B773 改\r\n");
  EXPECT_EQ(base_.data("FLIGHT.csv"), "NH0105,RJTTPHNL,毎日\r\n");
  EXPECT_EQ(base_.data("airport.csv"), "RJTT,東京 HND\r\n");
  EXPECT_EQ(base_.data("letter.csv"), "NH,ANA,全日空\r\n");
  EXPECT_EQ(base_.data("ICAO24.csv"), "3482D8,WHL,WH,EC-OLF,B789\r\n");
}

TEST_F(Import, ATableWithCompaniesGetsOneOnEveryLineAndKeepsItsOwn) {
  base_.writeData("letter.csv", {"NH,ANA,old name,Company of its own"});
  writeFile("lines.csv",
            "Code,Name,ICAO,IATA,PositioningFlightPattern,CharterFlightPattern\n"
            "ANA,All Nippon Airways,ANA,NH,,\nBAW,British Airways,BAW,BA,,\n");
  EXPECT_EQ(import("lines.csv", {.replace = true}), 0);
  EXPECT_EQ(base_.data("letter.csv"),
            "NH,ANA,All Nippon Airways,Company of its own\r\n"
            "BA,BAW,British Airways,British Airways\r\n");
}

TEST_F(Import, AShortFlightIsCompletedByItsAircraftsAirline) {
  base_.writeLog("202601030000_HFDL_FMT.log",
                 {"[2]------------------------[2026/01/03 00:04:19]", "   ICAO24 ADDRESS = 3482D8",
                  "   FLIGHT ID      = 117"});
  base_.writeData("ICAO24.csv", {"3482D8,WHL,WH,EC-OLF,B789"});
  base_.writeData("letter.csv", {"WH,WHL,Whoever"});
  writeFile("routes.csv",
            "Callsign,Code,Number,AirlineCode,AirportCodes\nWHL117,WHL,117,WHL,LEMD-KJFK\n");
  EXPECT_EQ(import("routes.csv"), 0);
  EXPECT_EQ(base_.data("FLIGHT.csv"), "WH0117,LEMDKJFK,-\r\n");
}

TEST_F(Import, ATextThatCannotBeStoredIsLeftOutAndCounted) {
  writeFile("airports.csv",
            "ident,type,name,municipality,iata_code\n"
            "RJTT,large_airport,\xF0\x9F\x9B\xAB,,HND\nPHNL,large_airport,Honolulu,,HNL\n");
  EXPECT_EQ(import("airports.csv"), 0);
  EXPECT_EQ(base_.data("airport.csv"), "PHNL,Honolulu HNL\r\n");
  EXPECT_THAT(out_, HasSubstr("1 not storable"));
}

TEST_F(Import, OnlyTheAskedTableIsFilled) {
  writeFile("aircraft.csv.gz", test::gzipped("3482d8;EC-OLF;B789;00;;;;\n"));
  EXPECT_EQ(import("aircraft.csv.gz", {.table = Table::aircraft}), 0);
  EXPECT_EQ(base_.data("aircraft.csv"), "EC-OLF,B789\r\n");
  EXPECT_EQ(base_.data("ICAO24.csv"), "");
  EXPECT_EQ(import("aircraft.csv.gz", {.table = Table::airport}), 1);
  EXPECT_THAT(errors_, HasSubstr("readsb aircraft.csv does not fill airport.csv."));
}

TEST_F(Import, AMissingTableIsMade) {
  std::filesystem::remove(base_.folders.data / "airport.csv");
  writeFile("airports.csv", kOurAirports);
  EXPECT_EQ(import("airports.csv", {}, true), 0);
  EXPECT_FALSE(fileExists(base_.folders.data / "airport.csv"));
  EXPECT_EQ(import("airports.csv"), 0) << errors_;
  EXPECT_THAT(base_.data("airport.csv"), HasSubstr("RJTT,Tokyo"));
}

TEST_F(Import, ATableIsNotMadeWhileAnotherProgramIsBetweenItsRenames) {
  const auto lock = FolderLock::take(base_.folders.data);
  ASSERT_TRUE(lock);
  std::filesystem::remove(base_.folders.data / "airport.csv");
  const Status made = makeMissingTable(base_.folders, Table::airport);
  ASSERT_FALSE(made);
  EXPECT_THAT(made.error().text(), HasSubstr("Can't write file."));
  EXPECT_FALSE(fileExists(base_.folders.data / "airport.csv"));
}

TEST_F(Import, WhatIsAddedBetweenTheReadingAndTheWritingStays) {
  base_.writeData("airport.csv", {"PHNL,Honolulu HNL"});
  writeFile("airports.csv", kOurAirports);
  ImportPlanning planning(base_.folders, encoding_, file("airports.csv"), {.replace = true});
  while (true) {
    const Result<JobProgress> progress = planning.step(Job::Clock::now());
    ASSERT_TRUE(progress);
    if (*progress == JobProgress::done) break;
  }
  base_.writeData("airport.csv", {"PHNL,Honolulu HNL", "RJTT,by another program HND"});
  ReferenceTableRewrite rewrite(base_.folders, encoding_, planning.plan().tables[0].records);
  RewriteOutcome outcome = RewriteOutcome::more;
  while (outcome == RewriteOutcome::more) outcome = rewrite.next();
  EXPECT_EQ(outcome, RewriteOutcome::done);
  EXPECT_THAT(base_.data("airport.csv"), HasSubstr("\r\nRJTT,by another program HND\r\n"));
  EXPECT_THAT(base_.data("airport.csv"), testing::Not(HasSubstr("RJTT,Tokyo")));
}

TEST_F(Import, WhileAnotherProgramChangesTheTablesNothingIsWritten) {
  writeFile("airports.csv", kOurAirports);
  const auto lock = FolderLock::take(base_.folders.data);
  ASSERT_TRUE(lock);
  EXPECT_EQ(import("airports.csv"), 1);
  EXPECT_THAT(errors_, HasSubstr("Can't write file. Using Excel to edit CSV?"));
  EXPECT_EQ(base_.data("airport.csv"), "");
}

}  // namespace
}  // namespace vel
