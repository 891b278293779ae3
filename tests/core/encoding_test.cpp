#include <string>

#include <gtest/gtest.h>

#include "core/text.h"

namespace vel {
namespace {

struct Pair {
  std::string_view text;
  std::string_view bytes;
};

// Characters that converters disagree about, with their bytes in code page 932.
constexpr Pair kPairs[] = {
    {"JL0012,B737", "JL0012,B737"},
    {"ＡＢＣ", "\x82\x60\x82\x61\x82\x62"},
    {"～", "\x81\x60"},
    {"∥", "\x81\x61"},
    {"－", "\x81\x7C"},
    {"￠￡￢", "\x81\x91\x81\x92\x81\xCA"},
    {"①⑳", "\x87\x40\x87\x53"},
    {"Ⅳ㈱㌔", "\x87\x57\x87\x8A\x87\x60"},
    {"髙﨑", "\xFB\xFC\xFA\xB1"},
    {"ｱｲｳﾞ｡", "\xB1\xB2\xB3\xDE\xA1"},
    {"表ソ能ポ", "\x95\x5C\x83\x5C\x94\x5C\x83\x7C"},
    {"羽田空港HND", "\x89\x48\x93\x63\x8B\xF3\x8D\x60HND"},
    {"　", "\x81\x40"},
};

TEST(Encoding, CodePage932HoldsJapaneseByteForByte) {
  const Encoding encoding = Encoding::codePage932();
  for (const Pair& pair : kPairs) {
    EXPECT_EQ(encoding.encode(pair.text), std::string(pair.bytes)) << pair.text;
    EXPECT_EQ(encoding.decode(pair.bytes), pair.text) << pair.text;
  }
}

TEST(Encoding, EveryTwoByteCharacterOfCodePage932ComesBackAsTheSameText) {
  const Encoding encoding = Encoding::codePage932();
  int characters = 0;
  for (int lead = 0x81; lead <= 0xFC; ++lead) {
    if (lead >= 0xA0 && lead < 0xE0) continue;
    for (int trail = 0x40; trail <= 0xFC; ++trail) {
      const std::string bytes = {static_cast<char>(lead), static_cast<char>(trail)};
      const std::string text = encoding.decode(bytes);
      if (length(text) != 1) continue;
      ++characters;
      const auto back = encoding.encode(text);
      ASSERT_TRUE(back.has_value()) << std::hex << lead << ' ' << trail;
      // Some marks stand at two places; the text is the same from both.
      EXPECT_EQ(encoding.decode(*back), text) << std::hex << lead << ' ' << trail;
    }
  }
  // 6,879 of JIS X 0208, 83 + 374 of NEC, 388 of IBM, 1,880 for the user's own.
  EXPECT_EQ(characters, 6879 + 83 + 374 + 388 + 1880);
}

TEST(Encoding, BytesThatAreNoCharacterBecomeOneReplacementEach) {
  const Encoding encoding = Encoding::codePage932();
  EXPECT_EQ(encoding.decode("A\x85\x01"
                            "B"),
            "A\uFFFD\x01"
            "B");
  EXPECT_EQ(encoding.decode("\x85\x80"), "\uFFFD\uFFFD");
  EXPECT_EQ(encoding.decode("JL\x81"), "JL\uFFFD");
  EXPECT_EQ(encoding.decode("\x81 羽"), "\uFFFD " + encoding.decode("羽"));
  EXPECT_EQ(encoding.decode("\x82\x60\x85\x40|\x82\x61"), "Ａ\uFFFD@|Ｂ");
  EXPECT_EQ(encoding.decode(std::string_view("\x85\0\x82\x60", 4)),
            std::string_view("\uFFFD\0Ａ", 7));
}

TEST(Encoding, TheBytesThatCodePage932LeavesUndefinedAreThoseOfWindows) {
  const Encoding encoding = Encoding::codePage932();
  const Pair pairs[] = {
      {"\u0080", "\x80"},          {"\uF8F0", "\xA0"},
      {"\uF8F1", "\xFD"},          {"\uF8F2", "\xFE"},
      {"\uF8F3", "\xFF"},          {"A\uF8F3羽\u0080田\uF8F0", "A\xFF\x89\x48\x80\x93\x63\xA0"},
      {"\uF8F3\uF8F2", "\xFF\xFE"}};
  for (const Pair& pair : pairs) {
    EXPECT_EQ(encoding.decode(pair.bytes), pair.text);
    EXPECT_EQ(encoding.encode(pair.text), std::string(pair.bytes));
  }
  // As the second byte of a character they are that character's.
  EXPECT_EQ(encoding.decode("\x83\x80\x88\xA0"), "ム唖");
  EXPECT_EQ(encoding.decode("\x81\xFD"), "\uFFFD\uF8F1");
}

TEST(Encoding, AByteOfATwoByteCharacterIsNoAsciiLetter) {
  const Encoding encoding = Encoding::codePage932();
  // The second byte of this full-width mark is an ASCII 'a'.
  EXPECT_EQ(encoding.decode("\x83\x61").find('a'), std::string::npos);
}

TEST(Encoding, ATextThatCannotBeHeldIsNotReplacedByASimilarOne) {
  const Encoding encoding = Encoding::codePage932();
  for (const std::string_view text : {"😀", "é", "Zürich", "한국", "¥", "‾", "\u00A0", "a\uFFFD"}) {
    EXPECT_EQ(encoding.encode(text), std::nullopt) << text;
  }
  EXPECT_EQ(encoding.encode("A\xFF"), std::nullopt);
}

TEST(Encoding, MarksThatOtherInputMethodsTypeAreHeldAsTheirTwins) {
  const Encoding encoding = Encoding::codePage932();
  EXPECT_EQ(encoding.encode("10〜20"),
            "10\x81\x60"
            "20");
  EXPECT_EQ(encoding.encode("‖−¢£¬"), "\x81\x61\x81\x7C\x81\x91\x81\x92\x81\xCA");
  EXPECT_EQ(encoding.encode("〜😀"), std::nullopt);
}

TEST(Encoding, Utf8IsAccepted) {
  const Result<Encoding> encoding = Encoding::named("UTF-8");
  ASSERT_TRUE(encoding.ok());
  EXPECT_EQ(encoding->encode("羽田 é 😀"), "羽田 é 😀");
  EXPECT_EQ(encoding->decode("羽田 é 😀"), "羽田 é 😀");
  EXPECT_EQ(encoding->decode("A\xFF\xE7\xBE"
                             "B"),
            "A\uFFFD\uFFFD\uFFFDB");
  EXPECT_EQ(encoding->encode("〜¢"), "〜¢");
  EXPECT_FALSE(encoding->isCodePage932());
}

TEST(Encoding, WhatIsNoCharacterOfUtf8IsNoneThoughTheSystemsConverterTakesIt) {
  for (const char* name : {"UTF-8", "utf8"}) {
    const Result<Encoding> encoding = Encoding::named(name);
    ASSERT_TRUE(encoding.ok());
    EXPECT_EQ(encoding->decode("\xFA\x90\x90\x90\x90"), "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(encoding->decode("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(encoding->decode("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(encoding->decode("\xC0\x80"), "\uFFFD\uFFFD");
    EXPECT_EQ(encoding->encode("\xFA\x90\x90\x90\x90"), std::nullopt);
  }
}

TEST(Encoding, Windows1252IsAccepted) {
  const Result<Encoding> encoding = Encoding::named("windows-1252");
  ASSERT_TRUE(encoding.ok());
  EXPECT_EQ(encoding->encode("Zürich €¢"), "Z\xFCrich \x80\xA2");
  EXPECT_EQ(encoding->decode("Z\xFCrich \x80"), "Zürich €");
  EXPECT_EQ(encoding->decode("\x81 \x8D"), "\uFFFD \uFFFD");
  EXPECT_EQ(encoding->encode("羽田"), std::nullopt);
  EXPECT_EQ(encoding->encode("Łódź"), std::nullopt);
}

TEST(Encoding, EveryUsualNameOfCodePage932MeansTheSame) {
  for (const char* name : {"CP932", "cp932", "Shift_JIS", "shift-jis", "SJIS", "windows-31j"}) {
    const Result<Encoding> encoding = Encoding::named(name);
    ASSERT_TRUE(encoding.ok()) << name;
    EXPECT_EQ(encoding->encode("①～"), "\x87\x40\x81\x60") << name;
    EXPECT_EQ(encoding->name(), name);
    EXPECT_TRUE(encoding->isCodePage932()) << name;
  }
}

TEST(Encoding, OneWhoseCommaIsNotOneAsciiByteIsRefused) {
  for (const char* name : {"UTF-16", "UTF-16LE", "UTF-32", "UTF-7", "ISO-2022-JP", "CP037"}) {
    const Result<Encoding> encoding = Encoding::named(name);
    ASSERT_FALSE(encoding.ok()) << name;
    EXPECT_EQ(encoding.error().number, ErrorNumber::typeMismatch) << name;
  }
}

TEST(Encoding, OneThatNobodyKnowsIsRefused) {
  for (const char* name : {"", "nonsense", "CP", "CP99999", "CP932//TRANSLIT", "UTF-8//IGNORE"}) {
    EXPECT_FALSE(Encoding::named(name).ok()) << name;
  }
}

}  // namespace
}  // namespace vel
