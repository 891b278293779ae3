#include "exchange/import_rows.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/storable.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using testing::ElementsAre;

/// The rows of a text, their fields joined by "|"; the message of an error last.
std::vector<std::string> rowsOf(std::string_view text, const CsvDialect& dialect = {}) {
  const test::TemporaryFolder folder;
  test::writeBytes(folder / "file", text);
  CsvRows rows(std::move(ImportBytes::open(folder / "file", {})).value(), {}, dialect, {});
  std::vector<std::string> found;
  std::vector<std::string_view> fields;
  while (true) {
    const Result<bool> more = rows.next(fields);
    if (!more) found.push_back(more.error().text().substr(0, 30));
    if (!more || !*more) return found;
    std::string joined;
    for (const std::string_view field : fields) joined.append(field).append("|");
    joined.pop_back();
    found.push_back(joined);
  }
}

TEST(CsvRows, AFieldInQuotesHoldsSeparatorsLineEndsAndQuotes) {
  EXPECT_THAT(rowsOf("a,\"b,c\",\"d\r\ne\"\r\n\"say \"\"hi\"\"\",,\"\"\n"),
              ElementsAre("a|b,c|d\r\ne", "say \"hi\"||"));
}

TEST(CsvRows, RowsEndWithLfCrLfCrOrTheFile) {
  EXPECT_THAT(rowsOf("a,b\nc,d\r\ne,f\rg,h"), ElementsAre("a|b", "c|d", "e|f", "g|h"));
  EXPECT_THAT(rowsOf("\n\na\n\r\n"), ElementsAre("a"));
  EXPECT_THAT(rowsOf("a,\"b\""), ElementsAre("a|b"));
  EXPECT_THAT(rowsOf("a,b,"), ElementsAre("a|b|"));
  EXPECT_THAT(rowsOf(""), ElementsAre());
}

TEST(CsvRows, AQuoteWithinAFieldIsText) {
  EXPECT_THAT(rowsOf("5\" x,b\n"), ElementsAre("5\" x|b"));
  EXPECT_THAT(rowsOf("\"a,b\n", {.quote = '\0'}), ElementsAre("\"a|b"));
  EXPECT_THAT(rowsOf("'a,b';'it''s'\n", {.separator = ';', .quote = '\''}),
              ElementsAre("a,b|it's"));
}

TEST(CsvRows, BackslashesEscapeWhereTheFormatSaysSo) {
  EXPECT_THAT(rowsOf(R"("a \"b\" \\ \c",\N)", {.backslashEscapes = true}),
              ElementsAre(R"(a "b" \ \c|\N)"));
}

TEST(CsvRows, ALongFileComesInManyBlocks) {
  std::string text;
  for (int i = 0; i < 100'000; ++i)
    text += std::to_string(i) + ",\"x \"\"" + std::to_string(i) + "\"\n";
  const auto rows = rowsOf(text);
  ASSERT_EQ(rows.size(), 100'000U);
  for (const std::size_t i : {0U, 5'000U, 77'777U, 99'999U}) {
    EXPECT_EQ(rows[i], std::to_string(i) + "|x \"" + std::to_string(i));
  }
}

TEST(CsvRows, AFieldOfSeveralMegabytesIsReadWhole) {
  const std::string large(3'000'000, 'x');
  EXPECT_THAT(rowsOf("\"" + large + "\",b\n"), ElementsAre(large + "|b"));
}

TEST(Storable, WhatNoFieldHoldsIsReplaced) {
  const Encoding encoding = Encoding::codePage932();
  const auto stored = [&](std::string_view text) {
    bool changed = false;
    const auto made = storableField(encoding, text, changed);
    return made ? encoding.decode(*made) + (changed ? "*" : "") : std::string("none");
  };
  EXPECT_EQ(stored("plain text"), "plain text");
  EXPECT_EQ(stored("a,b \"c\"\n"), "a b 'c' *");
  EXPECT_EQ(stored("東京"), "東京");
  EXPECT_EQ(stored("S\xC3\xA3o Paulo \xC5\x81\xC3\xB3"
                   "d\xC5\xBA"),
            "Sao Paulo Lodz*");
  EXPECT_EQ(stored("\xE2\x80\x99\xE2\x80\x93"), "\xE2\x80\x99-*");
  EXPECT_EQ(stored("\xF0\x9F\x9B\xAB"), "none");
}

}  // namespace
}  // namespace vel
