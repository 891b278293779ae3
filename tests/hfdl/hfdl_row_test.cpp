#include "hfdl/hfdl_row.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/folders.h"
#include "log/row_store.h"
#include "tests/support/test_files.h"

namespace vel::test {
namespace {

using ::testing::ElementsAre;

class HfdlRowTest : public ::testing::Test {
 protected:
  HfdlRowTest() {
    base_.writeData("ICAO24.csv", {"; comment", "", "86D324,JAL,JL,JA732J,B773", "86D3,short,4,5",
                                   "700001,BAW,BA,G-CIVA,B744,extra", "86D324,XXX,XX,second,none"});
    base_.writeData("FLIGHT.csv", {"JL0123,RJTTKJFKX,-", "JL0123,second,-", "BA0007,EGLLRJTT,-",
                                   "ANA12,RJTT,-", "0456,RJAARJBB,-"});
  }

  std::vector<std::string> line(const HfdlRecord& record, std::size_t linesBefore = 0) {
    const Tables tables(base_.folders, Encoding::codePage932());
    FolderIndex photos(base_.folders.pics);
    photos.refresh();
    const auto row = SetLVline(record, tables, photos);
    if (!row.ok()) {
      ADD_FAILURE() << row.error().text();
      return std::vector<std::string>(kHfdlColumns);
    }
    RowStore rows(kHfdlSeparator);
    rows.append(*row);
    EXPECT_EQ(split(*row, kHfdlSeparator).size(), kHfdlColumns - 1);
    std::vector<std::string> fields{hfdlLineNumber(linesBefore + 1)};
    for (std::size_t i = 0; i + 1 < kHfdlColumns; ++i) fields.emplace_back(rows.field(0, i));
    return fields;
  }

  std::string errorOf(const HfdlRecord& record) {
    const Tables tables(base_.folders, Encoding::codePage932());
    FolderIndex photos(base_.folders.pics);
    photos.refresh();
    const auto row = SetLVline(record, tables, photos);
    return row.ok() ? "" : row.error().text();
  }

  static HfdlRecord record(std::string address, std::string registration, std::string flightId) {
    return {"2026/11/17 00:01:24",
            "[3]",
            "D",
            " Agana, Guam",
            std::move(address),
            std::move(registration),
            std::move(flightId)};
  }

  TemporaryBase base_;
};

TEST_F(HfdlRowTest, LineHasTwelveColumns) {
  writeBytes(base_.folders.pics / "JA732J.jpg", "");
  EXPECT_THAT(line(record("86D324", "JA732J", "  JL0123 "), 41),
              ElementsAre("0042", "2026/11/17 00:01:24", "[3]", "D", " Agana, Guam", "86D324",
                          "JA732J", "JL0123", " JA732J JAL JL B773", "o", "RJTT", "KJFKX"));
}

TEST_F(HfdlRowTest, ShortFlightIsLookedUpCompletedAndShownAsReceived) {
  const auto fields = line(record("86D324", "", " 123 "));
  EXPECT_EQ(fields[kHfdlFlight], "123");
  EXPECT_EQ(fields[kHfdlOrigin], "RJTT");
  EXPECT_EQ(fields[kHfdlDestination], "KJFKX");
}

TEST_F(HfdlRowTest, BareNumber7OfAirlineBAIsFlightBA0007) {
  const auto fields = line(record("700001", "", "7"));
  EXPECT_EQ(fields[kHfdlOrigin], "EGLL");
  EXPECT_EQ(fields[kHfdlDestination], "RJTT");
}

TEST_F(HfdlRowTest, ShortFlightOfAnUnknownAircraftIsOnlyFilledWithZeros) {
  EXPECT_EQ(line(record("FFFFFF", "", "456"))[kHfdlOrigin], "RJAA");
}

TEST_F(HfdlRowTest, FlightOfFiveCharactersIsLookedUpAsItStands) {
  const auto fields = line(record("86D324", "", "ANA12"));
  EXPECT_EQ(fields[kHfdlOrigin], "RJTT");
  EXPECT_EQ(fields[kHfdlDestination], "");
}

TEST_F(HfdlRowTest, FlightIsComparedWithItsLetterCase) {
  EXPECT_EQ(line(record("86D324", "", "jl0123"))[kHfdlOrigin], "");
}

TEST_F(HfdlRowTest, AddressInLowerCaseIsNotFound) {
  const auto fields = line(record("86d324", "", "123"));
  EXPECT_EQ(fields[kHfdlAddress], "86d324");
  EXPECT_EQ(fields[kHfdlAircraft], "");
  EXPECT_EQ(fields[kHfdlOrigin], "");
}

TEST_F(HfdlRowTest, AddressRowsOfFewerThanFiveFieldsArePassedOver) {
  base_.writeData("ICAO24.csv", {"", "86D324", "86D324,a", "86D324,a,b", "86D324,a,b,c",
                                 "86D324,JAL,JL,JA732J,B773"});
  EXPECT_EQ(line(record("86D324", "", ""))[kHfdlAircraft], " JA732J JAL JL B773");
  EXPECT_EQ(line(record("86D3", "", ""))[kHfdlAircraft], "");
}

TEST_F(HfdlRowTest, RouteWithoutARemarkIsShown) {
  base_.writeData("FLIGHT.csv", {"JL0123,RJTTKJFK"});
  const auto fields = line(record("86D324", "", "JL0123"));
  EXPECT_EQ(fields[kHfdlOrigin], "RJTT");
  EXPECT_EQ(fields[kHfdlDestination], "KJFK");
}

TEST_F(HfdlRowTest, MatchingFlightWithoutARouteEndsTheProgram) {
  base_.writeData("FLIGHT.csv", {"JL0123"});
  EXPECT_EQ(errorOf(record("86D324", "", "JL0123")), "ERROR #9\n\nFLIGHT.csv, line 1");
}

TEST_F(HfdlRowTest, MissingFlightTableEndsTheProgramOnlyWhereThereIsAFlight) {
  std::filesystem::remove(base_.folders.data / "FLIGHT.csv");
  EXPECT_EQ(errorOf(record("86D324", "", "JL0123")), "Not found data\\flight.csv");
  EXPECT_EQ(errorOf(record("86D324", "", "   ")), "");
}

TEST_F(HfdlRowTest, MissingAddressTableEndsTheProgram) {
  std::filesystem::remove(base_.folders.data / "ICAO24.csv");
  EXPECT_EQ(errorOf(record("86D324", "", "")), "Not found data\\ICAO24.csv");
}

TEST_F(HfdlRowTest, TenThousandthLineShowsOnlyItsLastFourDigits) {
  EXPECT_EQ(line(record("86D324", "", ""), 0)[kHfdlNumber], "0001");
  EXPECT_EQ(line(record("86D324", "", ""), 998)[kHfdlNumber], "0999");
  EXPECT_EQ(line(record("86D324", "", ""), 9998)[kHfdlNumber], "9999");
  EXPECT_EQ(line(record("86D324", "", ""), 9999)[kHfdlNumber], "0000");
  EXPECT_EQ(line(record("86D324", "", ""), 12344)[kHfdlNumber], "2345");
}

TEST_F(HfdlRowTest, PhotoIsFoundWhateverTheLetterCaseOfItsName) {
  writeBytes(base_.folders.pics / "ja732j.JPG", "");
  EXPECT_EQ(line(record("86D324", "JA732J", ""))[kHfdlPhoto], "o");
  EXPECT_EQ(line(record("86D324", "JA733J", ""))[kHfdlPhoto], "x");
  EXPECT_EQ(line(record("86D324", "", ""))[kHfdlPhoto], "x");
}

TEST_F(HfdlRowTest, RegistrationThatLeavesThePhotoFolderHasNoPhoto) {
  writeBytes(base_.folders.base / "secret.jpg", "");
  writeBytes(base_.folders.pics / "a.jpg", "");
  for (const char* name : {"../secret", "..\\secret", "c:a", "./a", "..", "a\x01"}) {
    EXPECT_EQ(line(record("86D324", name, ""))[kHfdlPhoto], "x") << name;
    EXPECT_FALSE(photoName(name).has_value()) << name;
  }
  EXPECT_EQ(photoName("JA732J"), "JA732J.jpg");
}

TEST(AircraftText, OfAnEditedRowBeginsWithAStar) {
  const Icao24Record record{"86D324", "JAL", "JL", "JA732J", "B773"};
  EXPECT_EQ(aircraftText(record, " "), " JA732J JAL JL B773");
  EXPECT_EQ(aircraftText(record, "*"), "*JA732J JAL JL B773");
  EXPECT_EQ(aircraftText(Icao24Record{}, " "), "");
}

TEST(CompletedFlight, TakesTheAirlineAndFourDigits) {
  const Icao24Record aircraft{"700001", "BAW", "BA", "G-CIVA", "B744"};
  EXPECT_EQ(completedFlight("7", aircraft), "BA0007");
  EXPECT_EQ(completedFlight(" 1234 ", aircraft), "BA1234");
  EXPECT_EQ(completedFlight("12345", aircraft), "12345");
  EXPECT_EQ(completedFlight("   ", aircraft), "");
  EXPECT_EQ(completedFlight("7", Icao24Record{}), "0007");
}

TEST_F(HfdlRowTest, DetailFindsNothingInAMissingFlightTable) {
  const Tables tables(base_.folders, Encoding::codePage932());
  const auto route = routeIfPresent(tables, "BA0007");
  ASSERT_TRUE(route.ok());
  ASSERT_TRUE(route->has_value());
  EXPECT_EQ((*route)->departure, "EGLL");
  EXPECT_EQ((*route)->remark, "-");
  std::filesystem::remove(base_.folders.data / "FLIGHT.csv");
  const auto missing = routeIfPresent(tables, "BA0007");
  ASSERT_TRUE(missing.ok());
  EXPECT_FALSE(missing->has_value());
}

TEST(CopiedAircraft, TabbedLineFillsRegistrationTypeAndBothCodes) {
  const auto copied = copiedAircraft(
      "JA732J\t86D324\tB773\t777-346ER\t32431\t429\t2004\tx\tJAL [JL] Japan Airlines");
  ASSERT_TRUE(copied.has_value());
  EXPECT_EQ(copied->registration, "JA732J");
  EXPECT_EQ(copied->equipment, "B773");
  EXPECT_EQ(copied->threeLetter, "JAL");
  EXPECT_EQ(copied->twoLetter, "JL");
}

TEST(CopiedAircraft, LineWithoutTabsIsCutAtBlanks) {
  const auto copied = copiedAircraft("JA732J 86D324 B773 777 32431 429 JAL [JL] Japan Airlines");
  ASSERT_TRUE(copied.has_value());
  EXPECT_EQ(copied->registration, "JA732J");
  EXPECT_EQ(copied->equipment, "B773");
  EXPECT_EQ(copied->threeLetter, "JAL");
  EXPECT_EQ(copied->twoLetter, "JL");
}

TEST(CopiedAircraft, EightPartsAreNotEnough) {
  EXPECT_TRUE(copiedAircraft("1\t2\t3\t4\t5\t6\t7\t8\tJAL [JL]").has_value());
  EXPECT_FALSE(copiedAircraft("1\t2\t3\t4\t5\t6\t7\tJAL [JL]").has_value());
  // Blanks do not count as soon as there is a tab.
  EXPECT_FALSE(copiedAircraft("1\t2 3 4 5 6 7 8 9 10 JAL [JL]").has_value());
}

TEST(CopiedAircraft, EveryWrongShapeIsRefused) {
  for (const char* text : {"", " ", " [", "\t\t\t\t\t\t\t\t", "1\t2\t3\t4\t5\t6\t7\t8\tJAL(JL)",
                           "1\t2\t3\t4\t5\t6\t7\t8\tJAL[JL]", " [JL]\t2\t3\t4\t5\t6\t7\t8\t9",
                           "AB [JL]\t2\t3\t4\t5\t6\t7\t8\t9", "1\t2\t3\t4\t5\t6\t7\t8\tJAL [J",
                           "1 2 3 4 5 6 7 8 9 10"}) {
    EXPECT_FALSE(copiedAircraft(text).has_value()) << text;
  }
  EXPECT_STREQ(kNoCopiedAircraft,
               "データを取得できません。・・・AirframesでICAO24コードを検索した結果のレジから航空会"
               "社名までのデータをコピーしてからこのボタンを押してください。3レター、2レター、レジ"
               "、機種を記入します。");
}

TEST(CopiedAircraft, ALineBreakBeforeTheLineGetsIntoNoBox) {
  for (const char* lineBreak : {"\n", "\r\n", "\r\n\r\n"}) {
    const auto copied = copiedAircraft(
        lineBreak + std::string("JA732J 86D324 B773 777 32431 429 JAL [JL] Japan Airlines"));
    ASSERT_TRUE(copied.has_value());
    EXPECT_EQ(copied->registration, "JA732J");
    EXPECT_EQ(copied->equipment, "B773");
  }
}

}  // namespace
}  // namespace vel::test
