#include "acars/short_lines.h"

#include <algorithm>
#include <random>

#include <gmock/gmock.h>

#include "tests/acars/read_list.h"

namespace vel {
namespace {

using test::ListLogTest;
using test::ListRead;

TEST(ShortLines, TellWhereTheirBytesStand) {
  std::string text = "a,b,\xE4J\r\n,,J\nJ";
  text.append(kShortLineReach, 'x');
  ShortLine lines[4];
  ASSERT_EQ(shortLines(text, 'J', lines), 2U);
  EXPECT_EQ(lines[0].at, 0U);
  EXPECT_EQ(lines[0].length, 6U);
  EXPECT_EQ(lines[0].next, 8U);
  EXPECT_EQ(lines[0].commas, 0b001010U);
  EXPECT_EQ(lines[0].notAscii, 0b010000U);
  EXPECT_EQ(lines[0].probe, 0b100000U);
  EXPECT_EQ(lines[1].at, 8U);
  EXPECT_EQ(lines[1].length, 3U);
  EXPECT_EQ(lines[1].next, 12U);
  EXPECT_EQ(lines[1].commas, 0b011U);
  EXPECT_EQ(lines[1].probe, 0b100U);
}

TEST(ShortLines, EndWithinSixtyFourBytes) {
  const std::string rest(kShortLineReach, 'x');
  ShortLine lines[2];
  EXPECT_EQ(shortLines(std::string(63, 'a') + '\n' + rest, ',', lines), 1U);
  EXPECT_EQ(lines[0].length, 63U);
  EXPECT_EQ(shortLines(std::string(64, 'a') + '\n' + rest, ',', lines), 0U);
}

TEST(ShortLines, AreNotReadBeyondTheText) {
  ShortLine lines[2];
  EXPECT_EQ(shortLines("", ',', lines), 0U);
  EXPECT_EQ(shortLines("a\n" + std::string(kShortLineReach - 3, 'x'), ',', lines), 0U);
  EXPECT_EQ(shortLines("a\n" + std::string(kShortLineReach - 2, 'x'), ',', lines), 1U);
}

// Reads a log in the plainest way that its rules can be written.
class PlainReading : public ListLogTest {
 protected:
  // The row of a line (UTF-8), nothing where it is not shown.
  static std::optional<std::string> rowOf(const std::string& line, const ListFilter& filter) {
    std::vector<std::string> fields;
    for (const std::string_view field : split(line, ',')) fields.emplace_back(field);
    if (fields.size() != 8 || fields[0] == "Flight No.") return std::nullopt;
    const auto holds = [&](std::size_t field, const std::string& text) {
      return fields[field].find(text) != std::string::npos;
    };
    const bool shown = holds(0, filter.flight) && holds(2, filter.registration) &&
                       (holds(3, filter.airport) || holds(4, filter.airport)) &&
                       holds(5, filter.equipment) && holds(6, filter.remarks);
    if (!shown) return std::nullopt;
    fields[0] = std::string(Trim(fields[0]));
    const std::size_t size = length(fields[7]);
    if (size < 8) fields[7].insert(0, 8 - size, '0');
    std::string row = fields[0];
    for (std::size_t i = 1; i < fields.size(); ++i) row += ',' + fields[i];
    return row;
  }
};

TEST_F(PlainReading, GivesTheSameForLinesOfAllForms) {
  std::mt19937 random(11);
  const std::vector<std::string> pieces = {
      "",        "J",        "JL",         " JL0012 ",
      "JA8089",  "RJTT",     "KLAX",       "9",
      "9:05:00", "09:05:00", "定期便",     "ソ表",
      "ｱ",       " ",        "Flight No.", "ABCDEFGHIJKLMNOPQRSTUV",
      "x\r",     "時刻",     "109:05:000"};
  std::vector<std::string> lines;
  for (int i = 0; i < 6000; ++i) {
    std::string line;
    const std::size_t fields = random() % 10 < 8 ? 8 : random() % 12;
    for (std::size_t field = 0; field < fields; ++field) {
      if (field > 0) line += ',';
      line += pieces[random() % pieces.size()];
    }
    // A carriage return before the line end belongs to it.
    while (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
  std::string text;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    text += lines[i] + (i % 3 == 0 ? "\n" : "\r\n");
  }
  const std::string bytes = test::cp932(text);
  const ListFilter filters[] = {{},
                                {.flight = "J"},
                                {.flight = "JL0", .remarks = "定期"},
                                {.registration = "ソ"},
                                {.registration = "A8"},
                                {.airport = "TT"},
                                {.airport = "LAX", .equipment = "9"},
                                {.equipment = ","},
                                {.equipment = "表"},
                                {.remarks = "R"}};
  for (const ListFilter& filter : filters) {
    std::vector<std::string> expected;
    std::string numbers;
    std::size_t number = 0;
    for (const std::string& line : lines) {
      if (const auto row = rowOf(line, filter)) expected.push_back(*row);
    }
    std::size_t malformed = 0;
    for (const std::string& line : lines) {
      ++number;
      const auto commas = std::count(line.begin(), line.end(), ',');
      const bool header = line.starts_with("Flight No.") && (line.size() == 10 || line[10] == ',');
      malformed += !header && commas != 7 && commas > 0 ? 1U : 0U;
      if (!header && commas != 7 && numbers.size() < 500) numbers += std::to_string(number) + ',';
    }
    const ListRead read = readBytesAsLog(bytes, filter);
    EXPECT_EQ(read.rows, expected);
    EXPECT_EQ(read.malformed.count, malformed);
    EXPECT_TRUE(read.malformed.lineNumbers.starts_with(numbers));
  }
}

}  // namespace
}  // namespace vel
