#include "tables/edits.h"

#include <gtest/gtest.h>

#include "tables/record.h"

namespace vel {
namespace {

TEST(TableEdits, AreWrittenAsTheTablesHaveThem) {
  EXPECT_EQ(equipmentEdit("JA8089", " B744 ").newRecord, "JA8089, B744 ");
  EXPECT_EQ(equipmentEdit("JA8089", "").newRecord, "");
  EXPECT_EQ(flightEdit("NH1", {"RJTT", "KLAX", "Daily"}).newRecord, "NH1,RJTTKLAX,Daily");
  EXPECT_EQ(flightEdit("NH1", {"RJTT", "KLAX", ""}).newRecord, "NH1,RJTTKLAX,-");
  EXPECT_EQ(airportEdit("RJTT", "Tokyo HND").newRecord, "RJTT,Tokyo HND");
  EXPECT_EQ(airportEdit("RJTT", "").newRecord, "");
  Airline airline{.threeLetter = "ANA", .display = "All Nippon", .company = "Holdings"};
  EXPECT_EQ(airlineEdit("NH", airline).newRecord, "NH,ANA,All Nippon");
  EXPECT_EQ(airlineEdit("NH", airline).letterFields, LetterFields::three);
  airline.fourFields = true;
  EXPECT_EQ(airlineEdit("NH", airline).newRecord, "NH,ANA,All Nippon,Holdings");
  EXPECT_EQ(airlineEdit("NH", airline).letterFields, LetterFields::four);
  airline.threeLetter.clear();
  EXPECT_EQ(airlineEdit("NH", airline).newRecord, "NH,,All Nippon,Holdings");
  airline.display.clear();
  EXPECT_EQ(airlineEdit("NH", airline).newRecord, "");
  const TableEdit aircraft = aircraftEdit({"8400A1", "JAL", "JL", "JA1", "B738"});
  EXPECT_EQ(aircraft.key, "8400A1");
  EXPECT_EQ(aircraft.newRecord, "8400A1,JAL,JL,JA1,B738");
}

TEST(CanBeStored, WhatCodePage932Holds) {
  const Encoding encoding = Encoding::codePage932();
  EXPECT_TRUE(canBeStored(encoding, ""));
  EXPECT_TRUE(canBeStored(encoding, "B737-800 (W) \\ ~"));
  EXPECT_TRUE(canBeStored(encoding, "ソ連ポ ＨＮＤ ①髙 ｱ"));
  EXPECT_FALSE(canBeStored(encoding, "Crème"));
  EXPECT_FALSE(canBeStored(encoding, "한국"));
  EXPECT_FALSE(canBeStored(encoding, "✈"));
}

TEST(CanBeStored, BothFormsOfTheWaveDashAreOne) {
  EXPECT_TRUE(canBeStored(Encoding::codePage932(), "羽田\u301C成田"));
  EXPECT_TRUE(canBeStored(Encoding::codePage932(), "羽田\uFF5E成田"));
}

TEST(CanBeStored, AYenSignWouldComeBackAsABackslash) {
  EXPECT_FALSE(canBeStored(Encoding::codePage932(), "\u00A5100"));
  EXPECT_FALSE(canBeStored(Encoding::codePage932(), "日本\u203E"));
}

TEST(CanBeStored, DamagedBytesAndLineBreaksCannot) {
  EXPECT_FALSE(canBeStored(Encoding::codePage932(), "JA\uFFFD"));
  EXPECT_FALSE(canBeStored(Encoding::named("UTF-8").value(), "JA\uFFFD"));
  EXPECT_FALSE(canBeStored(Encoding::codePage932(), "a\nb"));
  EXPECT_FALSE(canBeStored(Encoding::codePage932(), "a\r"));
}

TEST(CanBeStored, AnotherEncodingHoldsOtherTexts) {
  EXPECT_TRUE(canBeStored(Encoding::named("UTF-8").value(), "Crème 한국 ✈"));
  EXPECT_TRUE(canBeStored(Encoding::named("windows-1252").value(), "Crème"));
  EXPECT_FALSE(canBeStored(Encoding::named("windows-1252").value(), "羽田"));
}

}  // namespace
}  // namespace vel
