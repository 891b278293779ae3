#include <filesystem>

#include <gmock/gmock.h>

#include "tests/acars/read_list.h"

namespace vel {
namespace {

using test::ListLogTest;
using test::ListRead;
using testing::ElementsAre;
using testing::IsEmpty;

class ListFilterTest : public ListLogTest {
 protected:
  /// The flights of the shown rows.
  std::vector<std::string> shown(const ListFilter& filter) {
    const ListRead read = readLines(
        {"JL0001,O,JA8089,RJTT,KLAX,B744,Daily,9:05:00",
         "NH0002,○,JA731A,RJAA,RJTT,B773,daily,09:35:00",
         "BA0003,X,G-CIVE,EGLL,RJTT,B744,定期便,10:00:00",
         "ZZ0004,×,N12345,KSFO,RJAA,A388,表示,23:59:59", "QQ0005,?,D-ABCD,EDDF,RJBB,,,00:00:00"},
        filter);
    std::vector<std::string> flights;
    for (const std::string& row : read.rows) flights.push_back(row.substr(0, 6));
    return flights;
  }
};

TEST_F(ListFilterTest, WithoutAFilterEveryRowIsShown) {
  EXPECT_THAT(shown({}), ElementsAre("JL0001", "NH0002", "BA0003", "ZZ0004", "QQ0005"));
}

TEST_F(ListFilterTest, AvailableShowsBothMarksOfAPhoto) {
  EXPECT_THAT(shown({.photo = PhotoFilter::available}), ElementsAre("JL0001", "NH0002"));
}

TEST_F(ListFilterTest, UnavailableShowsBothMarksOfNoPhoto) {
  EXPECT_THAT(shown({.photo = PhotoFilter::unavailable}), ElementsAre("BA0003", "ZZ0004"));
}

TEST_F(ListFilterTest, ThePrefixOfATimeShowsTheHourOrTenMinutes) {
  EXPECT_THAT(shown({.time = "09"}), ElementsAre("JL0001", "NH0002"));
  EXPECT_THAT(shown({.time = "09:3"}), ElementsAre("NH0002"));
  EXPECT_THAT(shown({.time = "9"}), IsEmpty());
}

TEST_F(ListFilterTest, EarlierThanShowsTimesUpToTheText) {
  EXPECT_THAT(shown({.timeComparison = TimeComparison::earlier, .time = "09:35:00"}),
              ElementsAre("JL0001", "NH0002", "QQ0005"));
  EXPECT_THAT(shown({.timeComparison = TimeComparison::earlier, .time = "09:35"}),
              ElementsAre("JL0001", "QQ0005"));
}

TEST_F(ListFilterTest, LaterThanShowsTimesFromTheTextOn) {
  EXPECT_THAT(shown({.timeComparison = TimeComparison::later, .time = "09:35:00"}),
              ElementsAre("NH0002", "BA0003", "ZZ0004"));
  EXPECT_THAT(shown({.timeComparison = TimeComparison::later, .time = "09:35:01"}),
              ElementsAre("BA0003", "ZZ0004"));
}

TEST_F(ListFilterTest, AnEmptyTimeShowsEveryRowWhateverTheComparison) {
  for (const TimeComparison comparison :
       {TimeComparison::earlier, TimeComparison::prefix, TimeComparison::later}) {
    EXPECT_EQ(shown({.timeComparison = comparison}).size(), 5U) << static_cast<int>(comparison);
  }
}

TEST_F(ListFilterTest, ATimeThatIsNoTimeIsComparedByCharacters) {
  const ListFilter filter{.time = "０９"};
  const ListRead read =
      readLines({"A1,O,R,D,E,Q,M,０９：３０：００", "A2,O,R,D,E,Q,M,１０：３０：００"}, filter);
  EXPECT_THAT(read.rows, ElementsAre("A1,O,R,D,E,Q,M,０９：３０：００"));
}

TEST_F(ListFilterTest, TheFlightFilterFindsItsTextAnywhereInTheFlight) {
  EXPECT_THAT(shown({.flight = "000"}).size(), 5U);
  EXPECT_THAT(shown({.flight = "L0"}), ElementsAre("JL0001"));
  EXPECT_THAT(shown({.flight = "jl"}), IsEmpty());
}

TEST_F(ListFilterTest, TheRegistrationFilterFindsItsTextAnywhereInTheRegistration) {
  EXPECT_THAT(shown({.registration = "JA"}), ElementsAre("JL0001", "NH0002"));
  EXPECT_THAT(shown({.registration = "-"}), ElementsAre("BA0003", "QQ0005"));
}

TEST_F(ListFilterTest, TheAirportFilterFindsADepartureOrADestination) {
  EXPECT_THAT(shown({.airport = "RJTT"}), ElementsAre("JL0001", "NH0002", "BA0003"));
  EXPECT_THAT(shown({.airport = "RJA"}), ElementsAre("NH0002", "ZZ0004"));
  // The two fields are two texts, not one.
  EXPECT_THAT(shown({.airport = "RJTTKLAX"}), IsEmpty());
}

TEST_F(ListFilterTest, TheEquipmentFilterFindsItsTextAsWritten) {
  EXPECT_THAT(shown({.equipment = "B7"}), ElementsAre("JL0001", "NH0002", "BA0003"));
  EXPECT_THAT(shown({.equipment = "b7"}), IsEmpty());
}

TEST_F(ListFilterTest, TheRemarksFilterTellsCapitalsFromSmallLetters) {
  EXPECT_THAT(shown({.remarks = "Daily"}), ElementsAre("JL0001"));
  EXPECT_THAT(shown({.remarks = "aily"}), ElementsAre("JL0001", "NH0002"));
}

TEST_F(ListFilterTest, TheRemarksFilterFindsJapaneseText) {
  EXPECT_THAT(shown({.remarks = "期"}), ElementsAre("BA0003"));
}

TEST_F(ListFilterTest, AByteOfAJapaneseCharacterIsNoLetter) {
  // The second byte of the character is the code of a backslash.
  EXPECT_THAT(shown({.remarks = "\\"}), IsEmpty());
  // The bytes 8E A6 of one character and 95 5C of the other hold no "E" either.
  EXPECT_THAT(shown({.remarks = "示"}), ElementsAre("ZZ0004"));
  const ListRead read =
      readLines({"A1,O,R,D,E,Q,ア,01:00:00", "A2,O,R,D,E,Q,A,01:00:00"}, {.remarks = "A"});
  EXPECT_THAT(read.rows, ElementsAre("A2,O,R,D,E,Q,A,01:00:00"));
}

TEST_F(ListFilterTest, LetterShowsExactlyTheFlightsWhoseAirlineIsMissing) {
  EXPECT_THAT(shown({.unknownAirlineOnly = true}), ElementsAre("BA0003", "ZZ0004", "QQ0005"));
}

TEST_F(ListFilterTest, LetterTakesTheFirstTwoCharactersOfTheTrimmedFlight) {
  const ListRead read =
      readLines({"  JL0001 ,O,R,D,E,Q,M,01:00:00", " XJL001,O,R,D,E,Q,M,01:00:00"},
                {.unknownAirlineOnly = true});
  EXPECT_THAT(read.rows, ElementsAre("XJL001,O,R,D,E,Q,M,01:00:00"));
}

TEST_F(ListFilterTest, LetterWantsTheWholeFirstFieldOfTheTable) {
  base_.writeData("letter.csv", {"JLX,JAL,Japan Airlines", "jl,JAL,Japan Airlines"});
  EXPECT_THAT(shown({.unknownAirlineOnly = true}),
              ElementsAre("JL0001", "NH0002", "BA0003", "ZZ0004", "QQ0005"));
}

TEST_F(ListFilterTest, LetterWithoutTheTableEndsTheReadWithItsErrorNumber) {
  std::filesystem::remove(base_.folders.data / "letter.csv");
  const ListRead read = readLines({"JL0001,O,R,D,E,Q,M,01:00:00"}, {.unknownAirlineOnly = true});
  ASSERT_TRUE(read.error.has_value());
  EXPECT_EQ(read.error->text(), "ERROR #53");
  EXPECT_TRUE(read.failedLookUp);
}

TEST_F(ListFilterTest, WithoutTheTableTheOtherFiltersStillWork) {
  std::filesystem::remove(base_.folders.data / "letter.csv");
  EXPECT_THAT(shown({.flight = "JL"}), ElementsAre("JL0001"));
}

TEST_F(ListFilterTest, ARowIsShownOnlyWhenEveryFilterPasses) {
  const ListFilter all{.photo = PhotoFilter::unavailable,
                       .timeComparison = TimeComparison::later,
                       .time = "10",
                       .flight = "0003",
                       .registration = "CIV",
                       .airport = "EGLL",
                       .equipment = "44",
                       .remarks = "定期",
                       .unknownAirlineOnly = true};
  EXPECT_THAT(shown(all), ElementsAre("BA0003"));
  const auto without = [&](auto change) {
    ListFilter filter = all;
    change(filter);
    return shown(filter);
  };
  EXPECT_THAT(without([](ListFilter& f) { f.photo = PhotoFilter::available; }), IsEmpty());
  EXPECT_THAT(without([](ListFilter& f) { f.timeComparison = TimeComparison::earlier; }),
              IsEmpty());
  EXPECT_THAT(without([](ListFilter& f) { f.time = "10:00:01"; }), IsEmpty());
  EXPECT_THAT(without([](ListFilter& f) { f.flight = "0004"; }), IsEmpty());
  EXPECT_THAT(without([](ListFilter& f) { f.registration = "JA"; }), IsEmpty());
  EXPECT_THAT(without([](ListFilter& f) { f.airport = "RJAA"; }), IsEmpty());
  EXPECT_THAT(without([](ListFilter& f) { f.equipment = "A388"; }), IsEmpty());
  EXPECT_THAT(without([](ListFilter& f) { f.remarks = "Daily"; }), IsEmpty());
  base_.writeData("letter.csv", {"BA,BAW,British Airways"});
  EXPECT_THAT(shown(all), IsEmpty());
}

TEST_F(ListFilterTest, FilteredRowsDoNotHideMalformedLines) {
  const ListRead read = readLines({"JL0001,O,R,D,E,Q,M,01:00:00", "bad,line"}, {.flight = "ZZ"});
  EXPECT_THAT(read.rows, IsEmpty());
  EXPECT_EQ(read.malformed.count, 1U);
}

}  // namespace
}  // namespace vel
