#include "history/log_blocks.h"

#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel {
namespace {

constexpr const char* kHeaderLine = "[2]------------------------[2026/11/14 00:01:18]\r\n";

struct Read {
  std::string text;
  std::size_t blocks = 0;
  bool linesAreWhole = true;
  bool offsetsFit = true;
};

Read readAll(LogBlocks& blocks) {
  Read read;
  while (true) {
    const Result<std::string_view> block = blocks.next();
    EXPECT_TRUE(block.ok());
    if (!block || (block->empty() && blocks.isAtEnd())) return read;
    if (block->empty()) continue;
    ++read.blocks;
    read.offsetsFit = read.offsetsFit && blocks.offset() == read.text.size();
    read.linesAreWhole = read.linesAreWhole && block->data()[-1] == '\n' && block->back() == '\n';
    read.text += *block;
  }
}

TEST(LogBlocks, HandOutEveryByteOnceInWholeLines) {
  const test::TemporaryFolder folder;
  std::string text;
  for (int i = 0; i < 60'000; ++i) text += "line " + std::to_string(i) + "\r\n";
  test::writeBytes(folder / "log", text);
  LogBlocks blocks;
  ASSERT_TRUE(blocks.open(folder / "log", LogBlocks::Cut::lines));
  const Read read = readAll(blocks);
  EXPECT_EQ(read.text, text);
  EXPECT_GT(read.blocks, 1U);
  EXPECT_TRUE(read.linesAreWhole);
  EXPECT_TRUE(read.offsetsFit);
  EXPECT_EQ(blocks.change(), LogBlocks::Change::none);
}

TEST(LogBlocks, AMessageIsNeverCut) {
  const test::TemporaryFolder folder;
  std::string text;
  for (int i = 0; i < 9'000; ++i) {
    text += kHeaderLine;
    for (int line = 0; line < 3; ++line) text += "   ICAO24 ADDRESS = 3482D8\r\n";
  }
  test::writeBytes(folder / "log", text);
  LogBlocks blocks;
  ASSERT_TRUE(blocks.open(folder / "log", LogBlocks::Cut::messages));
  std::string all;
  std::size_t count = 0;
  while (true) {
    const Result<std::string_view> block = blocks.next();
    ASSERT_TRUE(block.ok());
    if (block->empty() && blocks.isAtEnd()) break;
    if (block->empty()) continue;
    EXPECT_TRUE(block->starts_with("[2]----"));
    all += *block;
    ++count;
  }
  EXPECT_EQ(all, text);
  EXPECT_GT(count, 1U);
}

TEST(LogBlocks, ALineThatIsTooLongIsLeftOut) {
  const test::TemporaryFolder folder;
  const std::string giant(3 * LogBlocks::kLongestPiece, 'x');
  test::writeBytes(folder / "log", "before\n" + giant + "\nbehind\n");
  LogBlocks blocks;
  ASSERT_TRUE(blocks.open(folder / "log", LogBlocks::Cut::lines));
  std::string all;
  std::uint64_t last = 0;
  while (true) {
    const Result<std::string_view> block = blocks.next();
    ASSERT_TRUE(block.ok());
    if (block->empty() && blocks.isAtEnd()) break;
    if (block->empty()) continue;
    last = blocks.offset() + block->size();
    all += *block;
  }
  EXPECT_EQ(all, "before\nbehind\n");
  EXPECT_EQ(last, giant.size() + 15);
}

TEST(LogBlocks, AByteOrderMarkIsNoText) {
  const test::TemporaryFolder folder;
  test::writeBytes(folder / "log",
                   "\xEF\xBB\xBF"
                   "a\n");
  LogBlocks blocks;
  ASSERT_TRUE(blocks.open(folder / "log", LogBlocks::Cut::lines));
  const Result<std::string_view> block = blocks.next();
  ASSERT_TRUE(block.ok());
  EXPECT_EQ(*block, "a\n");
  EXPECT_EQ(blocks.offset(), 3U);
}

TEST(LogBlocks, ALineWithoutEndIsPassedOverInManyCalls) {
  const test::TemporaryFolder folder;
  test::writeBytes(folder / "log",
                   "before\n" + std::string(std::size_t{50} << 20, '\0') + "\nbehind\n");
  LogBlocks blocks;
  ASSERT_TRUE(blocks.open(folder / "log", LogBlocks::Cut::lines));
  std::string all;
  int emptyOnes = 0;
  while (true) {
    const Result<std::string_view> block = blocks.next();
    ASSERT_TRUE(block.ok());
    if (block->empty() && blocks.isAtEnd()) break;
    if (block->empty()) ++emptyOnes;
    all += *block;
  }
  EXPECT_EQ(all, "before\nbehind\n");
  EXPECT_GT(emptyOnes, 100);
}

TEST(LogBlocks, WhatIsWrittenMeanwhileIsNotReadButNoticed) {
  const test::TemporaryFolder folder;
  test::writeBytes(folder / "log", "a\nb\n");
  LogBlocks blocks;
  ASSERT_TRUE(blocks.open(folder / "log", LogBlocks::Cut::lines));
  std::ofstream(folder / "log", std::ios::binary | std::ios::app) << "c\n";
  EXPECT_EQ(readAll(blocks).text, "a\nb\n");
  EXPECT_EQ(blocks.change(), LogBlocks::Change::grew);
}

TEST(LogBlocks, ALogThatBecomesShorterEndsThere) {
  const test::TemporaryFolder folder;
  test::writeBytes(folder / "log", "a\nb\n");
  LogBlocks blocks;
  ASSERT_TRUE(blocks.open(folder / "log", LogBlocks::Cut::lines));
  std::filesystem::resize_file(folder / "log", 2);
  EXPECT_EQ(readAll(blocks).text, "a\n");
  EXPECT_EQ(blocks.change(), LogBlocks::Change::shrank);
}

TEST(LogBlocks, AFileThatIsGoneOrAFolderGivesItsNumber) {
  const test::TemporaryFolder folder;
  LogBlocks blocks;
  const Status gone = blocks.open(folder / "log", LogBlocks::Cut::lines);
  ASSERT_FALSE(gone.ok());
  EXPECT_EQ(gone.error().number, ErrorNumber::fileNotFound);
  EXPECT_FALSE(blocks.open(folder.path(), LogBlocks::Cut::lines).ok());
}

}  // namespace
}  // namespace vel
