// Files that nobody should import: each ends with a message, and with the tables
// as they were.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/exchange/import_files.h"
#include "tests/exchange/import_station.h"
#include "tests/support/heap_meter.h"

namespace vel {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

using BadImport = test::ImportStation;

struct Case {
  const char* what;
  std::string bytes;
  const char* message;
};

TEST_F(BadImport, EachIsRefusedWithItsMessageAndTheTablesStay) {
  base_.writeData("airport.csv", {"RJTT,Tokyo HND"});
  const std::string before = allTables();
  const std::string ourHead = "ident,type,name,iata_code\n";
  const std::string routeHead = "Callsign,Code,Number,AirlineCode,AirportCodes\n";
  const std::string packed = test::gzipped("004002;Z-WPA;B732;00;BOEING;;;\n");
  std::string damaged = packed;
  damaged[packed.size() / 2] = static_cast<char>(damaged[packed.size() / 2] ^ 0x55);
  const std::vector<Case> cases = {
      {"empty", "", "The file is empty."},
      {"no format", "hello world\nhow are you\n", "This file is none that can be imported."},
      {"a picture", std::string("\x89PNG\r\n\x1A\n\0\0\0", 11), "This file is none"},
      {"OurAirports without a column", "ident,type,name\nRJTT,x,y\n",
       "OurAirports airports.csv: the column iata_code is missing."},
      {"airports without a column", "Code,Name,ICAO,Location,CountryISO2\nx,y,z,a,b\n",
       "Standing data, airports: the column iata is missing."},
      {"airlines without a column", "Code,Name,PositioningFlightPattern\nx,y,z\n",
       "Standing data, airlines: the column iata is missing."},
      {"aircraft without a column", "ICAO,ModelICAO\n3482D8,B789\n",
       "Standing data, aircraft: the column registration is missing."},
      {"routes without a column", "Callsign,Code,AirportCodes\nBAW1,BAW,A-B\n",
       "Standing data, routes: the column number is missing."},
      {"OpenSky without a column", "icao24,registration\n3482d8,X\n",
       "OpenSky aircraftDatabase.csv: the column typecode is missing."},
      {"wrong quotes", ourHead + "RJTT,x,\"Tokyo\" Haneda,HND\n",
       "Row 2: a quote stands within a field, or is not closed."},
      {"quotes that do not close", ourHead + "RJTT,x,\"Tokyo,HND\nKJFK,x,y,JFK\n",
       "Row 2: a quote is not closed; the file is cut off."},
      {"a row cut off", routeHead + "BAW117,BAW,117,BAW,EGLL-KJFK\nBAW118,BAW",
       "Row 3 has only 2 of 5 columns; the file is damaged or cut off."},
      {"OpenFlights cut off",
       "1,\"A\",\"B\",\"C\",\"AAA\",\"AAAA\",1.0,2.0,3,0,\"E\",\"t\",\"airport\",\"x\"\n2,\"A\","
       "\"B\"\n",
       "Row 2 has only 3 of 11 columns"},
      {"airlines cut off", "1,\"A\",\\N,\"AA\",\"AAA\",\"X\",\"Y\",\"Y\"\n2,\"B\",\\N\n",
       "Row 2 has only 3 of 8 columns"},
      {"readsb cut off", "004002;Z-WPA;B732;00;BOEING;;;\n0040", "Row 2 has only 1 of 3 columns"},
      {"an own table cut off",
       "NH0105,RJTTPHNL,-\r\n" + std::string() +
           "NH0106,RJTTPHNL,-\r\nNH0107,RJTTPHNL,-\r\nNH0108,RJTTPHNL,-\r\nNH0109,RJTTPHNL,-\r\n"
           "NH0110,RJTTPHNL,-\r\nNH0111,RJTTPHNL,-\r\nNH0112,RJTTPHNL,-\r\nNH0113,RJTTPHNL,-\r\n"
           "NH0114,RJTT",
       "Row 10 has only 2 of 3 columns"},
      {"another encoding", ourHead + "RJTT,x,\x93\x8C\x8B\x9E,HND\n",
       "Row 2: its text is not UTF-8."},
      {"UTF-16", std::string("\xFF\xFEi\0d\0", 6), "The text is UTF-16: save it as UTF-8."},
      {"an own table in another encoding", "RJTT,\xE6\x9D\xB1\xFD\xFF\xA0 HND\r\nRJAA,\x81 NRT\r\n",
       "Row 2: its text is not in the station's encoding."},
      {"a zip", std::string("PK\x03\x04\x14\0\0\0", 8), "This is a zip archive: unpack it first"},
      {"a gzip cut off", packed.substr(0, packed.size() - 4),
       "The gzip file is damaged or cut off."},
      {"a damaged gzip", damaged, "The gzip file is damaged or cut off."},
      {"a database cut off", std::string("SQLite format 3\0garbage", 23),
       "The database cannot be read: "},
  };
  for (const Case& each : cases) {
    writeFile("file", each.bytes);
    EXPECT_THAT(refusal("file"), StartsWith(each.message)) << each.what;
    EXPECT_EQ(import("file", {.all = true, .replace = true}), 1) << each.what;
    EXPECT_THAT(errors_, HasSubstr(each.message)) << each.what;
  }
  EXPECT_EQ(allTables(), before);
  EXPECT_FALSE(fileExists(base_.folders.data / "airport.bak"));
}

TEST_F(BadImport, OnlyARegularFileIsRead) {
  EXPECT_THAT(refusal("missing"), StartsWith("There is no such file."));
  std::filesystem::create_directory(file("folder"));
  EXPECT_THAT(refusal("folder"), StartsWith("There is no such file."));
}

TEST_F(BadImport, ADatabaseNeedsItsTableAndColumnsAndMustNotBeLocked) {
  {
    test::TestDatabase database(file("other.sqb"));
    database.run("CREATE TABLE Flights (x)");
  }
  EXPECT_THAT(refusal("other.sqb"), StartsWith("The database has no table Aircraft."));
  {
    test::TestDatabase database(file("columns.sqb"));
    database.run("CREATE TABLE Aircraft (ModeS, Registration, OperatorFlagCode)");
  }
  EXPECT_THAT(refusal("columns.sqb"),
              StartsWith("The database's table Aircraft has no column ICAOTypeCode."));
  // A view is no table: what it does is not known.
  {
    test::TestDatabase database(file("view.sqb"));
    database.run("CREATE VIEW Aircraft AS SELECT 1 AS ModeS");
  }
  EXPECT_THAT(refusal("view.sqb"), StartsWith("The database has no table Aircraft."));
  test::writeBaseStation(file("locked.sqb"), "('3482D8','EC-OLF','B789','WHL')");
  test::TestDatabase holder(file("locked.sqb"));
  holder.run("BEGIN EXCLUSIVE");
  EXPECT_THAT(refusal("locked.sqb"), StartsWith("Another program has locked the database"));
  holder.run("ROLLBACK");
  EXPECT_EQ(refusal("locked.sqb"), "");
}

TEST_F(BadImport, AFileThatChangesWhileItIsReadIsRefused) {
  std::string airports = "ident,type,name,iata_code\n";
  for (int i = 0; i < 40'000; ++i) airports += "RJTT,large_airport,Tokyo Haneda,HND\n";
  writeFile("airports.csv", airports);
  ImportPlanning planning(base_.folders, encoding_, file("airports.csv"), {.all = true});
  ASSERT_TRUE(planning.step(Job::Clock::now()));
  ASSERT_TRUE(planning.step(Job::Clock::now()));
  writeFile("airports.csv", airports + "KJFK,large_airport,Kennedy,JFK\n");
  while (true) {
    const Result<JobProgress> progress = planning.step(Job::Clock::now());
    if (!progress) {
      EXPECT_THAT(progress.error().text(), StartsWith("The file changed while it was read."));
      return;
    }
    ASSERT_EQ(*progress, JobProgress::more);
  }
}

TEST_F(BadImport, ABombEndsAtALimitThatIsTold) {
  // A million zeros in a thousand bytes, again and again: one endless line.
  std::string bomb;
  const std::string member = test::gzipped(std::string(1'000'000, '0'));
  for (int i = 0; i < 100; ++i) bomb += member;
  writeFile("bomb.gz", test::gzipped("004002;Z-WPA;B732\n") + bomb);
  EXPECT_THAT(refusal("bomb.gz"),
              StartsWith("Row 2: it is longer than 16 MiB, which is the limit."));
  // The same with lines.
  std::string lines;
  while (lines.size() < 1'000'000) lines += "004002;Z-WPA;B732\n";
  const std::string packed = test::gzipped(lines);
  bomb.clear();
  for (int i = 0; i < 20; ++i) bomb += packed;
  writeFile("lines.gz", bomb);
  EXPECT_THAT(refusal("lines.gz", {.mostBytes = 8U << 20}),
              StartsWith("The file unpacks to more than 8 MiB, which is the limit."));
}

TEST_F(BadImport, TooManyRowsAreRefusedAndMemoryIsBounded) {
  std::string rows = "ident,type,name,iata_code\n";
  for (int i = 0; i < 1001; ++i) rows += "RJTT,large_airport,Tokyo Haneda,HND\n";
  writeFile("airports.csv", rows);
  EXPECT_THAT(refusal("airports.csv", {.mostRows = 1000}),
              StartsWith("The file has more than 1000 rows, which is the limit."));
  EXPECT_EQ(refusal("airports.csv", {.mostRows = 1001}), "");
  std::string many = "icao24,registration,typecode\n";
  for (int i = 0; i < 40'000; ++i) {
    char row[48];
    std::snprintf(row, sizeof row, "%06x,N%d,B738\n", i, i);
    many += row;
  }
  writeFile("many.csv", many);
  EXPECT_THAT(refusal("many.csv", {.mostMemory = 1U << 20}),
              StartsWith("The records take more than 1 MiB of memory, which is the limit."));
}

TEST_F(BadImport, WhatNoLogNamesIsNotKept) {
  // 200,000 aircraft, of which the logs name one: they pass by.
  std::string packed;
  for (int part = 0; part < 20; ++part) {
    std::string rows;
    for (int i = 0; i < 10'000; ++i) {
      char row[64];
      std::snprintf(row, sizeof row, "%06x;N%d;B738;00;BOEING 737;;;\n", part * 10'000 + i, i);
      rows += row;
    }
    packed += test::gzipped(rows);
  }
  writeFile("aircraft.csv.gz", test::gzipped("3482d8;EC-OLF;B789;00;;;;\n") + packed);
  const std::size_t before = test::heapInUse();
  test::resetHeapPeak();
  EXPECT_EQ(import("aircraft.csv.gz", {}, true), 0) << errors_;
  EXPECT_THAT(out_, HasSubstr("200001 rows read"));
  EXPECT_THAT(out_, HasSubstr("aircraft.csv: 1 new"));
  EXPECT_LT(test::heapPeak() - before, std::size_t{4} << 20);
}

}  // namespace
}  // namespace vel
