#include "core/text.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vel {
namespace {

TEST(Text, LengthCountsCharactersNotBytes) {
  EXPECT_EQ(length(""), 0U);
  EXPECT_EQ(length("JL0012"), 6U);
  EXPECT_EQ(length("羽田空港HND"), 7U);
  EXPECT_EQ(length("ｱｲｳ"), 3U);
  EXPECT_EQ(length("é😀Ж"), 3U);
}

TEST(Text, AnIllFormedByteIsOneCharacter) {
  EXPECT_EQ(length("A\xFF\xFE"
                   "B"),
            4U);
  EXPECT_EQ(length("\xE7\xBE"), 2U);
  EXPECT_EQ(Mid("A\xFF"
                "B",
                3),
            "B");
}

TEST(Text, LeftGivesTheFirstCharactersOrAll) {
  EXPECT_EQ(Left("RJTTRJAA", 4), "RJTT");
  EXPECT_EQ(Left("東京国際HND", 4), "東京国際");
  EXPECT_EQ(Left("AB", 4), "AB");
  EXPECT_EQ(Left("AB", 0), "");
  EXPECT_EQ(Left("", 3), "");
}

TEST(Text, RightGivesTheLastCharactersOrAll) {
  EXPECT_EQ(Right("Tokyo Haneda HND", 3), "HND");
  EXPECT_EQ(Right("成田ＮＲＴ", 3), "ＮＲＴ");
  EXPECT_EQ(Right("AB", 4), "AB");
  EXPECT_EQ(Right("AB", 0), "");
}

TEST(Text, MidCountsFromOneAndEndsWithTheText) {
  EXPECT_EQ(Mid("RJTTRJAAX", 5), "RJAAX");
  EXPECT_EQ(Mid("RJTTRJAAX", 5, 4), "RJAA");
  EXPECT_EQ(Mid("東京国際", 3, 1), "国");
  EXPECT_EQ(Mid("ABC", 4), "");
  EXPECT_EQ(Mid("ABC", 400), "");
  EXPECT_EQ(Mid("ABC", 2, 400), "BC");
  EXPECT_EQ(Mid("ABC", 0), "");
}

TEST(Text, TrimTakesBlanksOnlyAndOnlyAtTheEnds) {
  EXPECT_EQ(Trim("  JL 0012 "), "JL 0012");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(Trim("\tA "), "\tA");
  EXPECT_EQ(Trim("　A　"), "　A　");
}

TEST(Text, LettersChangeCaseAlsoFullWidthAndAccented) {
  EXPECT_EQ(toLower("HaNeDa ＨＮＤ ÉÖ Ж Σ"), "haneda ｈｎｄ éö ж σ");
  EXPECT_EQ(toUpper("haneda ｈｎｄ éö ж"), "HANEDA ＨＮＤ ÉÖ Ж");
}

TEST(Text, WhatHasNoCaseStaysAsItIs) {
  EXPECT_EQ(toLower("羽田 ｱ ア 12-[]_ 😀"), "羽田 ｱ ア 12-[]_ 😀");
  EXPECT_EQ(toUpper("羽田 ｱ ア 12-[]_ 😀"), "羽田 ｱ ア 12-[]_ 😀");
  EXPECT_EQ(toLower("A\xFF"
                    "B"),
            "a\xFF"
            "b");
  EXPECT_EQ(toLower(std::string_view("A\0B", 3)), std::string_view("a\0b", 3));
}

TEST(Text, SplitGivesEveryPieceAlsoTheEmptyOnes) {
  using Pieces = std::vector<std::string_view>;
  EXPECT_EQ(split("a,b,,c", ','), (Pieces{"a", "b", "", "c"}));
  EXPECT_EQ(split("", ','), (Pieces{""}));
  EXPECT_EQ(split(",", ','), (Pieces{"", ""}));
  EXPECT_EQ(split("alone", ','), (Pieces{"alone"}));
}

TEST(Text, OnlyCommaAndDoubleQuoteAreIllegal) {
  EXPECT_TRUE(hasIllegalCharacter("B737,800"));
  EXPECT_TRUE(hasIllegalCharacter("say \"hi\""));
  EXPECT_FALSE(hasIllegalCharacter("B737-800 (ANA) ～'; ボーイング、全日空”"));
  EXPECT_FALSE(hasIllegalCharacter(""));
}

TEST(Text, IsAsciiLooksAtEveryByte) {
  EXPECT_TRUE(isAscii(""));
  EXPECT_TRUE(isAscii("0123456789abcdef \x7F"));
  for (std::size_t place = 0; place < 20; ++place) {
    std::string text(20, 'x');
    text[place] = '\x80';
    EXPECT_FALSE(isAscii(text)) << place;
  }
}

TEST(Characters, AreReadByTheStrictRules) {
  const auto code = [](std::string_view text) { return firstCharacter(text).code; };
  const auto size = [](std::string_view text) { return firstCharacter(text).size; };
  EXPECT_EQ(code("A"), U'A');
  EXPECT_EQ(code("é"), U'é');
  EXPECT_EQ(code("羽田"), U'羽');
  EXPECT_EQ(size("羽田"), 3U);
  EXPECT_EQ(code("😀"), U'😀');
  EXPECT_EQ(size("😀"), 4U);
  EXPECT_EQ(code(std::string_view("\0", 1)), U'\0');
  EXPECT_TRUE(firstCharacter("\uFFFD").wellFormed);
  for (const char* ill :
       {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80", "\xE7\xBE",
        "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
    const Character character = firstCharacter(ill);
    EXPECT_FALSE(character.wellFormed) << ill;
    EXPECT_EQ(character.size, 1U) << ill;
    EXPECT_EQ(character.code, U'\uFFFD') << ill;
  }
}

TEST(Characters, AreWrittenAsTheyAreRead) {
  for (const char32_t code : {U'A', U'\u007F', U'\u0080', U'\u07FF', U'\u0800', U'\uFFFF',
                              U'\U00010000', U'\U0010FFFF'}) {
    std::string text;
    appendCharacter(text, code);
    EXPECT_EQ(firstCharacter(text).code, code);
    EXPECT_EQ(firstCharacter(text).size, text.size());
  }
}

TEST(HexDigits, HaveTheirValuesInBothCases) {
  for (unsigned value = 0; value < 16; ++value) EXPECT_EQ(hexDigit(kHexDigits[value]), value);
  EXPECT_EQ(hexDigit('a'), 10U);
  EXPECT_EQ(hexDigit('f'), 15U);
  for (const char other : {'g', 'G', '/', ':', '@', '`', ' '}) {
    EXPECT_EQ(hexDigit(other), std::nullopt) << other;
  }
}

}  // namespace
}  // namespace vel
