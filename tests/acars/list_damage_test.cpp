#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include "tests/acars/read_list.h"

namespace vel {
namespace {

using test::ListLogTest;
using test::ListRead;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::string_view kGoodLine = "A9,O,R,D,E,Q,M,01:00:00\r\n";

TEST_F(ListLogTest, AHundredMegabytesWithoutALineEndAreOneMalformedLine) {
  {
    std::ofstream log(base_.folders.logs / "20260101_list.csv", std::ios::binary);
    log << "long,line";
    const std::string block(1 << 20, 'x');
    for (int i = 0; i < 100; ++i) log << block;
    log << "\r\n" << kGoodLine;
  }
  const ListRead read = readLog({});
  EXPECT_THAT(read.rows, ElementsAre("A9,O,R,D,E,Q,M,01:00:00"));
  EXPECT_EQ(read.malformed.count, 1U);
  EXPECT_EQ(read.malformed.lineNumbers, "1");
  // What is shown of it still fits on a screen.
  EXPECT_TRUE(read.malformed.example.starts_with("long,linexxx"));
  EXPECT_LT(read.malformed.example.size(), 1100U);
}

TEST_F(ListLogTest, ALongLineOfEightFieldsIsNoRecord) {
  std::string log = "A1,O,R,D,E,Q,";
  log.append(std::size_t{2} << 20, 'y');
  log += ",01:00:00\r\n";
  log += kGoodLine;
  const ListRead read = readBytesAsLog(log);
  EXPECT_THAT(read.rows, ElementsAre("A9,O,R,D,E,Q,M,01:00:00"));
  EXPECT_EQ(read.malformed.count, 1U);
}

TEST_F(ListLogTest, ZeroBytesInARowStayInTheRow) {
  const std::string row("A1,O,R\0X,D,E,Q,M,01:00:00", 25);
  const ListRead read = readBytesAsLog(row + "\r\n");
  EXPECT_THAT(read.rows, ElementsAre(row));
}

TEST_F(ListLogTest, ZeroBytesInAMalformedLineDoNotCutTheReport) {
  const ListRead read = readBytesAsLog(std::string("bad\0,line\r\n", 11));
  EXPECT_EQ(read.malformed.report(),
            "Found 1 lines of incorrect data.  不正な行が 1行 ありました。\r\n\r\n"
            "ex.: bad ,line\r\n\r\n"
            "Error line:1");
}

TEST_F(ListLogTest, ARowWithBytesThatAreNoTextIsStillARow) {
  const ListRead read = readBytesAsLog("A1,O,R,D,E,Q,\xFF\x81,01:00:00\r\n");
  ASSERT_THAT(read.rows, SizeIs(1));
  EXPECT_EQ(read.malformed.count, 0U);
  EXPECT_TRUE(read.rows[0].starts_with("A1,O,R,D,E,Q,"));
  EXPECT_TRUE(read.rows[0].ends_with(",01:00:00")) << read.rows[0];
}

TEST_F(ListLogTest, ABrokenCharacterDoesNotSwallowTheCommaBehindIt) {
  // 0x81 begins a two-byte character; a comma never ends one.
  const ListRead read = readBytesAsLog("A1,O,R\x81,D,E,Q,M,01:00:00\r\n", {.airport = "D"});
  EXPECT_THAT(read.rows, SizeIs(1));
}

TEST_F(ListLogTest, AFilterFindsItsTextBesideBrokenBytes) {
  const ListRead read = readBytesAsLog(
      "A1,O,R,D,E,Q,\xFFnote\x81,01:00:00\r\n" + std::string("A2,O,R,D,E,Q,\xFF,01:00:00\r\n"),
      {.remarks = "note"});
  ASSERT_THAT(read.rows, SizeIs(1));
  EXPECT_TRUE(read.rows[0].starts_with("A1,"));
}

TEST_F(ListLogTest, AFileOfAnotherKindIsReportedInAMessageOfBoundedSize) {
  std::string bytes;
  unsigned value = 1;
  for (int i = 0; i < 4000000; ++i) {
    value = value * 1664525U + 1013904223U;
    bytes += static_cast<char>(value >> 24U);
  }
  const ListRead read = readBytesAsLog(bytes);
  EXPECT_GT(read.malformed.count, 1000U);
  EXPECT_LT(read.malformed.report().size(), 8000U);
}

TEST_F(ListLogTest, ALogThatShrinksWhileItIsReadEndsTheReadThere) {
  std::string log;
  for (int i = 0; i < 50000; ++i) log += kGoodLine;
  const auto path = base_.folders.logs / "20260101_list.csv";
  test::writeBytes(path, log);
  const Encoding encoding = Encoding::codePage932();
  const Tables tables(base_.folders, encoding);
  Result<InputFile> file = InputFile::open(path);
  ASSERT_TRUE(file.ok());
  ListLogReader reader(*std::move(file), encoding, {}, tables);
  RowStore rows(ListLogReader::kSeparator);
  const Result<bool> first = reader.step({}, rows);
  ASSERT_TRUE(first.ok() && *first);
  std::filesystem::resize_file(path, 10);
  Result<bool> more = true;
  while (more && *more) more = reader.step({}, rows);
  EXPECT_TRUE(more.ok());
  EXPECT_GT(rows.size(), 0U);
  EXPECT_LT(rows.size(), 50000U);
}

TEST_F(ListLogTest, RowsCostLittleMemoryBesideTheirText) {
  std::string log;
  for (int i = 0; i < 100000; ++i) log += kGoodLine;
  test::writeBytes(base_.folders.logs / "20260101_list.csv", log);
  const Encoding encoding = Encoding::codePage932();
  const Tables tables(base_.folders, encoding);
  Result<InputFile> file = InputFile::open(base_.folders.logs / "20260101_list.csv");
  ASSERT_TRUE(file.ok());
  ListLogReader reader(*std::move(file), encoding, {}, tables);
  RowStore rows(ListLogReader::kSeparator);
  Result<bool> more = true;
  while (more && *more) more = reader.step({}, rows);
  ASSERT_EQ(rows.size(), 100000U);
  EXPECT_LT(rows.overhead(), rows.size() * 64);
}

}  // namespace
}  // namespace vel
