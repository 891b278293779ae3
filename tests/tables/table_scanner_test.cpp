#include "tables/table_scanner.h"

#include <cstddef>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/file.h"
#include "tables/line_blocks.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Anchor = TableScanner::Anchor;
using Next = TableScanner::Next;

class TableScannerTest : public testing::Test {
 protected:
  std::vector<std::string> lines(std::string_view content, std::string_view bytes, Anchor anchor) {
    const auto file = folder_ / "table.csv";
    test::writeBytes(file, content);
    std::vector<std::string> found;
    const Status status =
        TableScanner::forEachLine(file, bytes, anchor, [&](std::string_view line) {
          found.emplace_back(line);
          return Next::more;
        });
    EXPECT_TRUE(status.ok());
    return found;
  }

  test::TemporaryFolder folder_;
};

std::vector<std::string> linesOneByOne(std::string_view content, std::string_view bytes,
                                       Anchor anchor) {
  std::vector<std::string> found;
  while (!content.empty()) {
    const std::string_view line = content.substr(0, content.find_first_of("\r\n"));
    content.remove_prefix(line.size());
    content.remove_prefix(content.starts_with("\r\n") ? 2 : content.empty() ? 0 : 1);
    const bool wanted = anchor == Anchor::lineStart ? line.starts_with(bytes)
                                                    : line.find(bytes) != std::string_view::npos;
    if (wanted) found.emplace_back(line);
  }
  return found;
}

TEST_F(TableScannerTest, FindsTheFirstAndTheLastLineAlsoWithoutALineEnd) {
  EXPECT_THAT(lines("JA1,a\r\nJA2,b\r\nJA1,c", "JA1", Anchor::lineStart),
              ElementsAre("JA1,a", "JA1,c"));
}

TEST_F(TableScannerTest, LineFeedAloneEndsALineToo) {
  EXPECT_THAT(lines("JA1,a\nJA2,b\r\nJA1,c\n", "JA1", Anchor::lineStart),
              ElementsAre("JA1,a", "JA1,c"));
}

TEST_F(TableScannerTest, BytesWithinALineAreNoLineStart) {
  EXPECT_THAT(lines("x,JA1\r\n JA1,a\r\nJA1,b\r\n", "JA1", Anchor::lineStart),
              ElementsAre("JA1,b"));
}

TEST_F(TableScannerTest, ALineWithTheBytesTwiceIsVisitedOnce) {
  EXPECT_THAT(lines("HND HND\r\nNRT\r\nxHND\r\n", "HND", Anchor::anywhere),
              ElementsAre("HND HND", "xHND"));
}

TEST_F(TableScannerTest, OneByteIsFoundAnywhereAndAtTheLineStart) {
  EXPECT_THAT(lines("a,b\r\nb,a\r\nc\r\n", "b", Anchor::anywhere), ElementsAre("a,b", "b,a"));
  EXPECT_THAT(lines("a,b\r\nb,a\r\nc\r\n", "b", Anchor::lineStart), ElementsAre("b,a"));
}

TEST_F(TableScannerTest, NoBytesVisitEveryLineBlankOnesIncluded) {
  EXPECT_THAT(lines("a\r\n\r\n\nb", "", Anchor::anywhere), ElementsAre("a", "", "", "b"));
  EXPECT_THAT(lines("a\r\n\r\n\nb", "", Anchor::lineStart), ElementsAre("a", "", "", "b"));
}

TEST_F(TableScannerTest, AnEmptyFileHasNoLines) {
  EXPECT_THAT(lines("", "", Anchor::anywhere), IsEmpty());
  EXPECT_THAT(lines("", "JA1", Anchor::lineStart), IsEmpty());
}

TEST_F(TableScannerTest, NulBytesAreOrdinaryBytes) {
  using namespace std::string_literals;
  EXPECT_THAT(lines("\0JA1,a\r\nJA1,\0b\r\n\0\0\r\n"s, "JA1", Anchor::lineStart),
              ElementsAre("JA1,\0b"s));
  EXPECT_THAT(lines("x\0y\r\nxy\r\n"s, "\0y"s, Anchor::anywhere), ElementsAre("x\0y"s));
}

TEST_F(TableScannerTest, BytesWithALineEndAmongThemAreInNoLine) {
  EXPECT_THAT(lines("a\r\nb\r\n", "a\r", Anchor::anywhere), IsEmpty());
  EXPECT_THAT(lines("a\nb\n", "a\nb", Anchor::anywhere), IsEmpty());
}

TEST_F(TableScannerTest, StopsAtOnceWhenTheCallerHasEnough) {
  const auto file = folder_ / "table.csv";
  test::writeBytes(file, "JA1,a\r\nJA1,b\r\n");
  int visits = 0;
  const Status status =
      TableScanner::forEachLine(file, "JA1", Anchor::lineStart, [&](std::string_view) {
        ++visits;
        return Next::stop;
      });
  EXPECT_TRUE(status.ok());
  EXPECT_EQ(visits, 1);
}

TEST_F(TableScannerTest, ALineAcrossTheBorderOfTwoReadsIsFoundWhole) {
  for (const std::size_t border : {LineBlocks::kBlock, 2 * LineBlocks::kBlock}) {
    for (const std::string lineEnd : {"\r\n", "\n", "\r"}) {
      std::string front;
      while (front.size() < border - 100) front += "JA0000,B738 of nobody" + lineEnd;
      for (std::size_t shift = 0; shift < 40; ++shift) {
        std::string content = front;
        content += std::string(border - 30 + shift - content.size(), 'x') + lineEnd;
        content += "JA8089,B744" + lineEnd + "JA0001,B77W" + lineEnd;
        EXPECT_THAT(lines(content, "JA8089", Anchor::lineStart), ElementsAre("JA8089,B744"))
            << shift;
        EXPECT_THAT(lines(content, "B744", Anchor::anywhere), ElementsAre("JA8089,B744")) << shift;
      }
    }
  }
}

TEST_F(TableScannerTest, AFileThatIsCutShortWhileItIsReadEndsEarly) {
  const auto file = folder_ / "table.csv";
  std::string content = "JA8089,first\r\n";
  while (content.size() < 4 * LineBlocks::kBlock) content += "JA0000,B738 of nobody\r\n";
  test::writeBytes(file, content + "JA8089,last\r\n");
  std::vector<std::string> found;
  const Status status =
      TableScanner::forEachLine(file, "JA8089", Anchor::lineStart, [&](std::string_view line) {
        found.emplace_back(line);
        std::filesystem::resize_file(file, 100);
        return Next::more;
      });
  EXPECT_TRUE(status.ok());
  EXPECT_THAT(found, ElementsAre("JA8089,first"));
}

TEST_F(TableScannerTest, FindsWhatASearchLineByLineFinds) {
  std::mt19937 random(20261114);
  constexpr std::string_view kAlphabet("AB,\r\n\0\x83 A", 9);
  const auto upTo = [&](std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random);
  };
  for (int round = 0; round < 60; ++round) {
    std::string content(upTo(200000), 'A');
    for (char& c : content) c = kAlphabet[upTo(kAlphabet.size() - 1)];
    std::string bytes(1 + upTo(5), 'A');
    for (char& c : bytes) c = upTo(1) == 0 ? 'A' : 'B';
    for (const Anchor anchor : {Anchor::lineStart, Anchor::anywhere}) {
      EXPECT_EQ(lines(content, bytes, anchor), linesOneByOne(content, bytes, anchor))
          << "round " << round << ", bytes " << bytes;
    }
  }
}

TEST_F(TableScannerTest, ALineOfAMegabyteIsHandedOutWhole) {
  const std::string longLine = "JA8089," + std::string(std::size_t{1} << 20, 'x');
  EXPECT_THAT(lines("JA1,a\r\n" + longLine + "\r\nJA2,b\r\n", "JA8089", Anchor::lineStart),
              ElementsAre(longLine));
}

TEST_F(TableScannerTest, AnEndlessLineIsPassedOverAndTheNextOneIsFound) {
  const std::string endless(LineBlocks::kLongestLine + 1000, 'x');
  EXPECT_THAT(lines("JA1,a\r\nJA8089," + endless + "\r\nJA8089,B744\r\nJA1,b\r\n", "JA8089",
                    Anchor::lineStart),
              ElementsAre("JA8089,B744"));
  EXPECT_THAT(lines("JA8089," + endless, "JA8089", Anchor::lineStart), IsEmpty());
}

TEST_F(TableScannerTest, AMissingFileIsNumber53AndAMissingFolderNumber76) {
  const auto visit = [](std::string_view) { return Next::more; };
  const Status noFile =
      TableScanner::forEachLine(folder_ / "none.csv", "", Anchor::anywhere, visit);
  ASSERT_FALSE(noFile.ok());
  EXPECT_EQ(noFile.error().text(), "ERROR #53");
  const Status noFolder =
      TableScanner::forEachLine(folder_ / "none" / "none.csv", "", Anchor::anywhere, visit);
  ASSERT_FALSE(noFolder.ok());
  EXPECT_EQ(noFolder.error().text(), "ERROR #76");
}

}  // namespace
}  // namespace vel
