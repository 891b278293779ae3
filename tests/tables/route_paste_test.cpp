#include "tables/route_paste.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string entry(int number) {
  const std::string letter(1, static_cast<char>('A' + number));
  std::string text = "From (City (HN" + letter;
  text += ")) to (Town (LA" + letter;
  text += "))\r\n";
  return text;
}

std::string entries(int count) {
  std::string text = "Search result\r\n";
  for (int i = 0; i < count; ++i) text += entry(i);
  return text;
}

TEST(RoutePaste, ATextWithoutEntriesGivesNoPairs) {
  EXPECT_THAT(routePairs(""), IsEmpty());
  EXPECT_THAT(routePairs(entries(0)), IsEmpty());
}

TEST(RoutePaste, OneEntryGivesOnePair) {
  EXPECT_THAT(routePairs("NH106 From (Tokyo Haneda (HND)) to (Los Angeles (LAX)) daily"),
              ElementsAre("HND>LAX"));
}

TEST(RoutePaste, ElevenEntriesGiveElevenPairsInTheirOrder) {
  const auto pairs = routePairs(entries(11));
  ASSERT_EQ(pairs.size(), 11U);
  EXPECT_EQ(pairs.front(), "HNA>LAA");
  EXPECT_EQ(pairs.back(), "HNK>LAK");
}

TEST(RoutePaste, TheTwelfthEntryIsLeftOut) {
  const auto pairs = routePairs(entries(12));
  ASSERT_EQ(pairs.size(), 11U);
  EXPECT_EQ(pairs.back(), "HNK>LAK");
}

TEST(RoutePaste, TheTwoPartsMayStandOnTwoLines) {
  EXPECT_THAT(routePairs("From (Tokyo (HND))\nto (Los Angeles (LAX))\n"), ElementsAre("HND>LAX"));
}

TEST(RoutePaste, EveryKindOfLineBreakSeparates) {
  EXPECT_THAT(routePairs("From (a (HND)) to (b (LAX))\rFrom (a (NRT)) to (b (SFO))\n"
                         "From (a (KIX)) to (b (HNL))"),
              ElementsAre("HND>LAX", "NRT>SFO", "KIX>HNL"));
}

TEST(RoutePaste, SeveralEntriesOnOneLineAreAllFound) {
  EXPECT_THAT(routePairs("From (a (HND)) to (b (LAX)), From (c (NRT)) to (d (SFO))"),
              ElementsAre("HND>LAX", "NRT>SFO"));
}

TEST(RoutePaste, TheCodeMayStandBesideOthersInTheBrackets) {
  EXPECT_THAT(routePairs("From (Tokyo (RJTT / HND)) to (Los Angeles (LAX / KLAX))"),
              ElementsAre("HND>LAX"));
  EXPECT_THAT(routePairs("From (Tokyo (HND-RJTT)) to (Los Angeles (KLAX, LAX))"),
              ElementsAre("HND>LAX"));
}

TEST(RoutePaste, AWordOfThreeCapitalsInTheNameIsNotTheCode) {
  EXPECT_THAT(routePairs("From (JFK Intl NYC USA (LGA)) to (Paris CDG (ORY))"),
              ElementsAre("LGA>ORY"));
}

TEST(RoutePaste, ACodeBesideTheInnerBracketsCounts) {
  EXPECT_THAT(routePairs("From (HND (Tokyo)) to (LAX (Los Angeles))"), ElementsAre("HND>LAX"));
}

TEST(RoutePaste, ACityThatEndsInToIsNoDestination) {
  EXPECT_THAT(routePairs("From (Toronto (YYZ)) to (Kyoto (UKY))"), ElementsAre("YYZ>UKY"));
}

TEST(RoutePaste, JapaneseNamesDoNoHarm) {
  EXPECT_THAT(routePairs("From (東京 羽田 (HND)) to (ロサンゼルス (LAX))"), ElementsAre("HND>LAX"));
}

TEST(RoutePaste, APartThatIsCutShortMakesNoPair) {
  EXPECT_THAT(routePairs("From (Tokyo (HND) to (Los Angeles (LAX))"), IsEmpty());
  EXPECT_THAT(routePairs("From (Tokyo (HND)) to (Los Angeles (LAX)"), IsEmpty());
  EXPECT_THAT(routePairs("From (Tokyo (HND\n)) to (Los Angeles (LAX))"), IsEmpty());
  EXPECT_THAT(routePairs("From ("), IsEmpty());
  EXPECT_THAT(routePairs("From (to (From ("), IsEmpty());
}

TEST(RoutePaste, APartWithoutACodeMakesNoPair) {
  EXPECT_THAT(routePairs("From (Tokyo (hnd)) to (Los Angeles (LAX))"), IsEmpty());
  EXPECT_THAT(routePairs("From (Tokyo (HND)) to (Los Angeles (KLAX))"), IsEmpty());
  EXPECT_THAT(routePairs("From ()) to ())"), IsEmpty());
}

TEST(RoutePaste, ADestinationWithoutADepartureIsLeftOut) {
  EXPECT_THAT(routePairs("to (Los Angeles (LAX))\nFrom (a (HND)) to (b (SFO))\nto (c (OAK))"),
              ElementsAre("HND>SFO"));
}

TEST(RoutePaste, ANewDepartureReplacesOneWithoutADestination) {
  EXPECT_THAT(routePairs("From (a (HND))\nFrom (b (NRT)) to (c (SFO))"), ElementsAre("NRT>SFO"));
}

TEST(RoutePaste, BrokenEntriesDoNotUseUpTheEleven) {
  std::string text;
  for (int i = 0; i < 20; ++i) text += "From (broken to (Nowhere (XXX))\r\n";
  EXPECT_EQ(routePairs(text + entries(11)).size(), 11U);
}

TEST(RoutePaste, AMegabyteOfBracketsIsReadInAMoment) {
  std::string text;
  while (text.size() < (std::size_t{1} << 20)) text += "From (to (";
  EXPECT_THAT(routePairs(text), IsEmpty());
}

}  // namespace
}  // namespace vel
