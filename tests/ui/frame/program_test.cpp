#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/frame/the_program.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using test::TheProgram;
using testing::AllOf;
using testing::HasSubstr;

TEST_F(TheProgram, TellsItsOptionsAndVersionWithoutADisplay) {
  withoutDisplay();
  start({QStringLiteral("--help")});
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_THAT(output_, AllOf(HasSubstr("--program-folder DIR"), HasSubstr("--screenshot FILE"),
                             HasSubstr("--version")));
  start({QStringLiteral("--version")});
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_EQ(output_, "vel 1.0.0\n");
}

TEST_F(TheProgram, RefusesAnUnknownOptionWithoutADisplay) {
  withoutDisplay();
  start({QStringLiteral("--nonsense")});
  finish();
  EXPECT_NE(process_.exitCode(), 0);
  EXPECT_THAT(errors_, HasSubstr("--nonsense"));
}

TEST_F(TheProgram, FillsTheTablesWithoutADisplay) {
  withoutDisplay();
  base_.writeLog("20260102_list.csv", {"NH0105,O,JA731A,RJTT,PHNL,Q,M,01:00:00"});
  const std::filesystem::path file = base_.folders.base / "airports.csv";
  test::writeBytes(file,
                   "ident,type,name,iata_code\nRJTT,large_airport,Tokyo Haneda,HND\n"
                   "KJFK,large_airport,New York Kennedy,JFK\n");
  const QString path = QString::fromStdString(file.string());
  start({QStringLiteral("--import"), path, QStringLiteral("--dry-run")});
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_EQ(output_,
            "OurAirports airports.csv: 2 rows read\nairport.csv: 1 new, 0 differ, 0 the same\n"
            "Nothing was written.\n");
  EXPECT_EQ(base_.data("airport.csv"), "");
  start({QStringLiteral("--import"), path, QStringLiteral("--table"), QStringLiteral("airport"),
         QStringLiteral("--all")});
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_EQ(base_.data("airport.csv"), "RJTT,Tokyo Haneda HND\r\nKJFK,New York Kennedy JFK\r\n");
  test::writeBytes(file, "ident,type,name,iata_code\nRJTT,large_airport,Other name,HND\n");
  start({QStringLiteral("--import"), path, QStringLiteral("--replace")});
  finish();
  EXPECT_EQ(base_.data("airport.csv"), "RJTT,Other name HND\r\nKJFK,New York Kennedy JFK\r\n");
  start({QStringLiteral("--import"), path, QStringLiteral("--table"), QStringLiteral("flight")});
  finish();
  EXPECT_EQ(process_.exitCode(), 1);
  EXPECT_THAT(errors_, HasSubstr("OurAirports airports.csv does not fill FLIGHT.csv."));
  start({QStringLiteral("--import"), path, QStringLiteral("--table"), QStringLiteral("nonsense")});
  finish();
  EXPECT_NE(process_.exitCode(), 0);
  EXPECT_THAT(errors_, HasSubstr("nonsense"));
  start({QStringLiteral("--all")});
  finish();
  EXPECT_NE(process_.exitCode(), 0);
  EXPECT_THAT(errors_, HasSubstr("--import"));
}

TEST_F(TheProgram, SavesAPictureThoughThereIsAMessage) {
  base_.writeLog("20260102_list.csv", {"A1,O,R,D,E,Q,M,01:00:00", "five,fields,only,2,3"});
  start({QStringLiteral("--screenshot"), picture()});
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_TRUE(QFile::exists(picture()));
  EXPECT_THAT(errors_, HasSubstr("Found 1 lines of incorrect data.  不正な行が 1行 ありました。"));
}

TEST_F(TheProgram, EndsWithAMessageWhenNoPictureCanBeMade) {
  fs::remove(base_.folders.data / "airport.csv");
  start({QStringLiteral("--screenshot"), picture()});
  finish();
  EXPECT_EQ(process_.exitCode(), 1);
  EXPECT_FALSE(QFile::exists(picture()));
  EXPECT_THAT(errors_, HasSubstr("Not found data\\airport.csv"));
}

}  // namespace
}  // namespace vel
