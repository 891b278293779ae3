#include "history/query.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel {
namespace {

using std::chrono::local_days;
using namespace std::chrono_literals;

SearchText registration(const std::string& text, bool ignoreCase = false) {
  return {{.text = text, .meaning = SearchMeaning::registration, .ignoreCase = ignoreCase},
          Encoding::codePage932()};
}

SearchText anyText(const std::string& text, bool ignoreCase = false) {
  return {{.text = text, .meaning = SearchMeaning::anyText, .ignoreCase = ignoreCase},
          Encoding::codePage932()};
}

TEST(Query, TheHyphenOfARegistrationIsOptionalOnBothSides) {
  for (const char* typed : {"JA8089", "JA-8089"}) {
    const SearchText text = registration(typed);
    EXPECT_TRUE(text.isField("JA8089")) << typed;
    EXPECT_TRUE(text.isField("JA-8089")) << typed;
    EXPECT_TRUE(text.isField(" JA-8089 ")) << typed;
    EXPECT_FALSE(text.isField("JA8089A")) << typed;
    EXPECT_FALSE(text.isField("AJA8089")) << typed;
    EXPECT_FALSE(text.isField("JA808")) << typed;
    EXPECT_FALSE(text.isField("J-A-8089")) << typed;
    EXPECT_FALSE(text.isField("ja8089")) << typed;
    EXPECT_FALSE(text.isField("")) << typed;
  }
}

TEST(Query, WhereverTheHyphenStandsTheBytesThatAreScannedForFindIt) {
  const std::string plain = "JA8089";
  const SearchText text = registration(plain);
  for (std::size_t at = 0; at <= plain.size(); ++at) {
    std::string line = plain;
    if (at > 0 && at < plain.size()) line.insert(at, "-");
    bool found = false;
    for (const std::string& bytes : text.scanBytes()) {
      found = found || line.find(bytes) != std::string::npos;
    }
    EXPECT_TRUE(found) << line;
  }
}

TEST(Query, OnlyTheSwitchMakesCaseNotMatter) {
  EXPECT_TRUE(registration("ja-8089", true).isField("JA8089"));
  EXPECT_FALSE(anyText("Haneda").isIn("HANEDA"));
  EXPECT_TRUE(anyText("Haneda", true).isIn("xHANEDAx"));
  EXPECT_TRUE(anyText("ｈａｎ", true).isIn(test::cp932("ＨＡＮＥＤＡ")));
  EXPECT_FALSE(anyText("ｈａｎ").isIn(test::cp932("ＨＡＮＥＤＡ")));
}

TEST(Query, AByteOfAJapaneseCharacterIsNoLetter) {
  // The second byte of U+30A2 is an "A" in code page 932.
  const std::string bytes = test::cp932("ア");
  ASSERT_EQ(bytes.substr(1), "A");
  EXPECT_FALSE(anyText("A").isIn(bytes));
  EXPECT_TRUE(anyText("ア").isIn(test::cp932("羽田アジア")));
}

TEST(Query, ACharacterWithSeveralFormsIsFoundInEachOfThem) {
  // "∵" stands at 81 E6 and at 87 9A; the lines are found by the kanji beside it.
  const SearchText text = anyText("羽∵");
  EXPECT_TRUE(text.isIn(test::cp932("羽") + "\x81\xE6"));
  EXPECT_TRUE(text.isIn(test::cp932("羽") + "\x87\x9A"));
  EXPECT_THAT(text.scanBytes(), testing::ElementsAre(test::cp932("羽")));
  EXPECT_THAT(anyText("∵").scanBytes(), testing::IsEmpty());
}

TEST(Query, WhatFindsNothingIsSaid) {
  const Encoding encoding = Encoding::codePage932();
  HistoryQuery query;
  EXPECT_EQ(problemOf(query, encoding), QueryProblem::emptyText);
  query.text = "-";
  EXPECT_EQ(problemOf(query, encoding), QueryProblem::emptyText);
  query.text = " ";
  query.meaning = SearchMeaning::flight;
  EXPECT_EQ(problemOf(query, encoding), QueryProblem::emptyText);
  query.meaning = SearchMeaning::anyText;
  EXPECT_EQ(problemOf(query, encoding), QueryProblem::none);
  query.text = "é";
  EXPECT_EQ(problemOf(query, encoding), QueryProblem::notInEncoding);
  query.text = ",";
  EXPECT_EQ(problemOf(query, encoding), QueryProblem::none);
  query.days = {local_days{2026y / 11 / 20}, local_days{2026y / 11 / 19}};
  EXPECT_EQ(problemOf(query, encoding), QueryProblem::daysBackwards);
  query.days = {};
  query.lists = query.hfdl = query.rawLogs = false;
  EXPECT_EQ(problemOf(query, encoding), QueryProblem::noLogs);
  EXPECT_EQ(hintFor(QueryProblem::emptyText),
            "Type what to search for. 検索する文字を入力してください。");
  EXPECT_EQ(hintFor(QueryProblem::notInEncoding),
            "Nothing found: no log can hold this text. "
            "見つかりません。ログの文字コードにない文字が含まれています。");
  EXPECT_EQ(hintFor(QueryProblem::none), "");
}

TEST(Query, SevenDaysEndWithToday) {
  const DayRange range = lastDays(local_days{2026y / 11 / 20}, 7);
  EXPECT_TRUE(range.holds(local_days{2026y / 11 / 20}));
  EXPECT_TRUE(range.holds(local_days{2026y / 11 / 14}));
  EXPECT_FALSE(range.holds(local_days{2026y / 11 / 13}));
  EXPECT_FALSE(range.holds(local_days{2026y / 11 / 21}));
  EXPECT_FALSE(range.isAll());
  EXPECT_TRUE(DayRange{}.isAll());
}

}  // namespace
}  // namespace vel
