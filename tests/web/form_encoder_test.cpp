#include "web/form_encoder.h"

#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel {
namespace {

TEST(FormEncoder, NothingGivesNothing) { EXPECT_EQ(encodeForm(""), ""); }

TEST(FormEncoder, ABlankBecomesAPlus) { EXPECT_EQ(encodeForm("a b"), "a+b"); }

TEST(FormEncoder, DigitsLettersAndFiveSignsStay) {
  const std::string text = "0123456789@ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz*-._";
  EXPECT_EQ(encodeForm(text), text);
}

TEST(FormEncoder, EveryOtherByteBecomesTwoCapitalDigits) {
  EXPECT_EQ(encodeForm("~"), "%7E");
  EXPECT_EQ(encodeForm("\r\n"), "%0D%0A");
  EXPECT_EQ(encodeForm("+&=%<>"), "%2B%26%3D%25%3C%3E");
  EXPECT_EQ(encodeForm("[`{/:"), "%5B%60%7B%2F%3A");
  EXPECT_EQ(encodeForm(std::string_view("\0\x7F\x80\xA0\xF0\xFF", 6)), "%00%7F%80%A0%F0%FF");
}

TEST(FormEncoder, ADoubleByteCharacterBecomesTwoCodesEvenWithALetterAsItsTrail) {
  EXPECT_EQ(encodeForm("\x83\x41"), "%83%41");
  EXPECT_EQ(encodeForm(test::cp932("ア")), "%83%41");
  EXPECT_EQ(encodeForm("\x9F\x20"), "%9F%20") << "also a blank";
  EXPECT_EQ(encodeForm("\xE0\x40\xEF\x7E"), "%E0%40%EF%7E");
  EXPECT_EQ(encodeForm(test::cp932("羽田 HND")), "%89%48%93%63+HND");
}

TEST(FormEncoder, AHalfWidthKatakanaByteBecomesOneCode) {
  EXPECT_EQ(encodeForm("\xA1\xB1\xDF"), "%A1%B1%DF");
  EXPECT_EQ(encodeForm("\xB1\x41"), "%B1A");
}

TEST(FormEncoder, BytesBeyondTheLeadRangesStandAlone) {
  EXPECT_EQ(encodeForm("\x80\x41\xA0\x41\xF0\x41"), "%80A%A0A%F0A");
}

TEST(FormEncoder, ATrailBelowSixteenReplacesOneDigitOfTheCodeBeforeIt) {
  EXPECT_EQ(encodeForm("\x82\x0A"), "%82%A2");
  EXPECT_EQ(encodeForm(std::string_view("\x9F\x00", 2)), "%9F%0F");
  EXPECT_EQ(encodeForm("\x82\x0D\x0A"), "%82%D2%0A");
  EXPECT_EQ(encodeForm("\x82\x10"), "%82%10");
}

TEST(FormEncoder, WhereATextIsCutIntoPiecesMakesNoDifference) {
  const std::string text = "a b\x83\x41\x82\x0A\xB1~\r\n\x9F";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    FormEncoder encoder;
    std::string encoded;
    encoder.add(text.substr(0, cut), encoded);
    encoder.add(text.substr(cut), encoded);
    EXPECT_EQ(encoded, "a+b%83%41%82%A2%B1%7E%0D%0A%9F") << cut;
  }
}

TEST(FormEncoder, ALeadByteAtTheEndStandsAlone) { EXPECT_EQ(encodeForm("a\x82"), "a%82"); }

TEST(FormEncoder, EveryByteGivesAtMostThreeCharacters) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  const std::string encoded = encodeForm(bytes + bytes.substr(7));
  EXPECT_LE(encoded.size(), 3 * (2 * bytes.size() - 7));
  for (const char c : encoded) EXPECT_TRUE(c > ' ' && c < '\x7F');
}

}  // namespace
}  // namespace vel
