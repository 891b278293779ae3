#include "core/line_reader.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/heap_meter.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::TemporaryFolder;
using test::writeBytes;
using testing::ElementsAre;
using testing::IsEmpty;

// As the reader's own, so that the tests meet the edges of its blocks.
constexpr std::size_t kBlock = std::size_t{1} << 17;

class LineReaderTest : public testing::Test {
 protected:
  LineReader reader(std::string_view bytes, std::size_t longest = LineReader::kLongestLine,
                    LoneCr loneCr = LoneCr::isText) {
    writeBytes(folder_ / "list.csv", bytes);
    return LineReader(InputFile::open(folder_ / "list.csv").value(), longest, loneCr);
  }
  LineReader crReader(std::string_view bytes, std::size_t longest = LineReader::kLongestLine) {
    return reader(bytes, longest, LoneCr::endsLine);
  }

  static std::vector<std::string> allOf(LineReader reader) {
    std::vector<std::string> lines;
    while (true) {
      const auto line = reader.next();
      EXPECT_TRUE(line.ok());
      if (!line || !*line) return lines;
      lines.emplace_back(**line);
    }
  }

  TemporaryFolder folder_;
};

TEST_F(LineReaderTest, LinesEndWithLfOrCrLf) {
  EXPECT_THAT(allOf(reader("one\r\ntwo\nthree\r\n")), ElementsAre("one", "two", "three"));
}

TEST_F(LineReaderTest, TheLastLineMayEndWithTheFile) {
  EXPECT_THAT(allOf(reader("one\r\ntwo")), ElementsAre("one", "two"));
  EXPECT_THAT(allOf(reader("one\r\ntwo\r")), ElementsAre("one", "two"));
}

TEST_F(LineReaderTest, BlankLinesAreLinesAndAnEmptyFileHasNone) {
  EXPECT_THAT(allOf(reader("\r\n\n\r\nend\n\n")), ElementsAre("", "", "", "end", ""));
  EXPECT_THAT(allOf(reader("")), IsEmpty());
}

TEST_F(LineReaderTest, ALoneCrEndsALineWhereThatIsAskedFor) {
  EXPECT_THAT(allOf(crReader("a\rb\r\nc\nd\r\re")), ElementsAre("a", "b", "c", "d", "", "e"));
  EXPECT_THAT(allOf(crReader("a\r")), ElementsAre("a"));
  EXPECT_THAT(allOf(crReader("\r")), ElementsAre(""));
}

TEST_F(LineReaderTest, ALoneCrCountsAtTheEdgesOfTheBlocksToo) {
  for (std::size_t size = kBlock - 3; size <= kBlock + 1; ++size) {
    const std::string line(size, 'x');
    EXPECT_THAT(allOf(crReader(line + "\rb\r\nc\r")), ElementsAre(line, "b", "c")) << size;
    EXPECT_THAT(allOf(crReader(line + "\r\nb\rc")), ElementsAre(line, "b", "c")) << size;
    const auto cut = allOf(crReader(line + "\rb", 100));
    EXPECT_THAT(cut, ElementsAre(std::string(100, 'x'), "b")) << size;
  }
}

TEST_F(LineReaderTest, AByteOrderMarkIsSkippedAndCounted) {
  LineReader lines = reader("\xEF\xBB\xBF羽田\r\n\xEF\xBB\xBFz\r\n");
  EXPECT_EQ(**lines.next(), "羽田");
  EXPECT_EQ(lines.bytesRead(), 3U + 6U + 2U);
  EXPECT_EQ(**lines.next(), "\xEF\xBB\xBFz");
  EXPECT_THAT(allOf(reader("\xEF\xBB\xBF")), IsEmpty());
  EXPECT_THAT(allOf(reader("\xEF\xBB")), ElementsAre("\xEF\xBB"));
}

TEST_F(LineReaderTest, ACrWithinALineStays) {
  EXPECT_THAT(allOf(reader("a\rb\r\r\n")), ElementsAre("a\rb\r"));
}

TEST_F(LineReaderTest, NulBytesAreBytesLikeAnyOther) {
  const std::string bytes("a\0b\r\n\0\r\n\0\0end", 13);
  EXPECT_THAT(allOf(reader(bytes)),
              ElementsAre(std::string("a\0b", 3), std::string("\0", 1), std::string("\0\0end", 5)));
}

TEST_F(LineReaderTest, TheEndStaysTheEnd) {
  LineReader lines = reader("one\n");
  EXPECT_EQ(lines.next().value(), "one");
  EXPECT_EQ(lines.next().value(), std::nullopt);
  EXPECT_EQ(lines.next().value(), std::nullopt);
  EXPECT_EQ(lines.bytesRead(), 4U);
}

TEST_F(LineReaderTest, LinesAcrossTheEdgesOfBlocksComeWhole) {
  for (std::size_t length = kBlock - 3; length <= kBlock + 3; ++length) {
    const std::string first(length, 'x');
    EXPECT_THAT(allOf(reader(first + "\r\nnext\r\n")), ElementsAre(first, "next")) << length;
    EXPECT_THAT(allOf(reader(first + "\nnext")), ElementsAre(first, "next")) << length;
  }
}

TEST_F(LineReaderTest, ManyLinesOfManyLengthsComeInOrder) {
  std::string bytes;
  std::vector<std::string> expected;
  for (std::size_t i = 0; i < 20000; ++i) {
    expected.push_back(std::to_string(i) + std::string(i % 97, 'x'));
    bytes += expected.back() + (i % 3 == 0 ? "\n" : "\r\n");
  }
  ASSERT_GT(bytes.size(), 5 * kBlock);
  EXPECT_EQ(allOf(reader(bytes)), expected);
}

TEST_F(LineReaderTest, BytesReadCountsLineEnds) {
  LineReader lines = reader("one\r\ntwo\nlast");
  std::vector<std::size_t> counts;
  while (lines.next().value()) counts.push_back(lines.bytesRead());
  EXPECT_THAT(counts, ElementsAre(5U, 9U, 13U));
}

TEST_F(LineReaderTest, ALongerLineIsCutAndTheNextOneComesWhole) {
  LineReader lines = reader("12345\r\n123456\r\n1234567890\nok\r\n1234567", 5);
  EXPECT_EQ(lines.next().value(), "12345");
  EXPECT_FALSE(lines.wasCut());
  EXPECT_EQ(lines.next().value(), "12345");
  EXPECT_TRUE(lines.wasCut());
  EXPECT_EQ(lines.next().value(), "12345");
  EXPECT_TRUE(lines.wasCut());
  EXPECT_EQ(lines.next().value(), "ok");
  EXPECT_FALSE(lines.wasCut());
  EXPECT_EQ(lines.next().value(), "12345");
  EXPECT_TRUE(lines.wasCut());
  EXPECT_EQ(lines.next().value(), std::nullopt);
  EXPECT_FALSE(lines.wasCut());
}

TEST_F(LineReaderTest, ALineOfJustTheLimitIsWholeWhereverTheBlocksEnd) {
  const std::string longest(kBlock, 'x');
  for (const char* end : {"\n", "\r\n", "", "\r"}) {
    LineReader lines = reader(longest + end, kBlock);
    EXPECT_EQ(lines.next().value(), longest);
    EXPECT_FALSE(lines.wasCut());
    EXPECT_EQ(lines.next().value(), std::nullopt);
  }
  LineReader lines = reader(longest + "y\nnext", kBlock);
  EXPECT_EQ(lines.next().value(), longest);
  EXPECT_TRUE(lines.wasCut());
  EXPECT_EQ(lines.next().value(), "next");
}

class HundredMegabytes : public LineReaderTest {
 protected:
  void write(std::string_view before, std::string_view after) {
    Result<OutputFile> file = OutputFile::create(folder_ / "list.csv");
    ASSERT_TRUE(file.ok());
    ASSERT_TRUE(file->write(before).ok());
    const std::string piece(1'000'000, 'x');
    for (int i = 0; i < 100; ++i) ASSERT_TRUE(file->write(piece).ok());
    ASSERT_TRUE(file->write(after).ok());
    ASSERT_TRUE(file->finish().ok());
  }

  // A block of up to two of the longest lines, and its half while it grows.
  static constexpr std::size_t kBound = 4 * LineReader::kLongestLine;
};

TEST_F(HundredMegabytes, WithoutALineEndTakeNoMoreMemoryThanALine) {
  write("", "");
  const std::size_t before = test::heapInUse();
  test::resetHeapPeak();
  LineReader lines(InputFile::open(folder_ / "list.csv").value());
  EXPECT_EQ(lines.next().value()->size(), LineReader::kLongestLine);
  EXPECT_TRUE(lines.wasCut());
  EXPECT_EQ(lines.next().value(), std::nullopt);
  EXPECT_EQ(lines.bytesRead(), 100'000'000U);
  EXPECT_LT(test::heapPeak() - before, kBound);
}

TEST_F(HundredMegabytes, InOneLineDoNotHideTheLinesAroundIt) {
  write("first\r\n", "\r\nlast\r\n");
  const std::size_t before = test::heapInUse();
  test::resetHeapPeak();
  LineReader lines(InputFile::open(folder_ / "list.csv").value());
  EXPECT_EQ(lines.next().value(), "first");
  EXPECT_EQ(lines.next().value()->size(), LineReader::kLongestLine);
  EXPECT_TRUE(lines.wasCut());
  EXPECT_EQ(lines.next().value(), "last");
  EXPECT_FALSE(lines.wasCut());
  EXPECT_EQ(lines.next().value(), std::nullopt);
  EXPECT_LT(test::heapPeak() - before, kBound);
}

TEST_F(LineReaderTest, AFileThatShrinksWhileItIsReadEndsEarly) {
  LineReader lines = reader(std::string(3 * kBlock, '\n'));
  EXPECT_EQ(lines.next().value(), "");
  writeBytes(folder_ / "list.csv", "");
  std::size_t more = 0;
  while (lines.next().value()) ++more;
  EXPECT_LT(more, kBlock);
}

TEST_F(LineReaderTest, AFileThatGrowsWhileItIsReadIsReadToItsNewEnd) {
  std::string bytes(2 * kBlock, '\n');
  LineReader lines = reader(bytes);
  EXPECT_EQ(lines.next().value(), "");
  writeBytes(folder_ / "list.csv", bytes + "new\r\n");
  std::string last;
  while (const auto line = lines.next().value()) last = *line;
  EXPECT_EQ(last, "new");
}

}  // namespace
}  // namespace vel
