#include "web/raw_log.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel {
namespace {

constexpr const char* kPrefix = "2026/11/20 01:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>";

std::string message(std::string_view rest) { return kPrefix + std::string(rest); }

class RawLogViewer : public testing::Test {
 protected:
  /// Reads a raw log of these UTF-8 lines, stored in code page 932.
  RawLog read(std::initializer_list<std::string_view> lines) {
    return readBytes(test::cp932Lines(lines));
  }
  RawLog readBytes(std::string_view bytes) {
    test::writeBytes(folder_ / "JA8089.log", bytes);
    RawLog log;
    EXPECT_TRUE(readAll(folder_ / "JA8089.log", log).ok());
    return log;
  }
  /// Runs the whole job, with steps as short as can be.
  static Status readAll(const std::filesystem::path& file, RawLog& log) {
    RawLogRead job(file, Encoding::codePage932(), log);
    while (true) {
      const Result<JobProgress> progress = job.step(Job::Clock::now());
      if (!progress) return progress.error();
      if (*progress == JobProgress::done) return {};
    }
  }
  /// What is displayed of one line alone.
  std::string shown(std::string_view line) { return read({line}).displayText; }

  test::TemporaryFolder folder_;
};

TEST_F(RawLogViewer, AMessageIsShownAsSeparatorSummaryAndBody) {
  const RawLog log =
      read({"HDR>+*<SYN><SYN><SOH>2.JA8089<NAK>H13<STX>M01AJL0012POS<ETX><CRC><DEL>"});
  EXPECT_EQ(log.displayText,
            "---------------------------[HDR]\r\n"
            "JL0012 (JA8089)    [H1:3:M01A] MODE:2   \r\n"
            "POS\r\n"
            "\r\n");
  EXPECT_EQ(log.rawText,
            "HDR>+*<SYN><SYN><SOH>2.JA8089<NAK>H13<STX>M01AJL0012POS<ETX><CRC><DEL>\r\n");
  EXPECT_EQ(shownText(log), log.displayText);
}

TEST_F(RawLogViewer, TheDecodersOwnLinesAreShown) {
  EXPECT_EQ(
      shown(message("2.JA212P<NAK>200<STX>M00AQS2697POSN23457W159037,,211733,360,OTT<ETX><CRC>"
                    "<DEL>")),
      "---------------------------[2026/11/20 01:00:11 131.450MHz <PRE]\r\n"
      "QS2697 (JA212P)    [20:0:M00A] MODE:2   \r\n"
      "POSN23457W159037,,211733,360,OTT\r\n\r\n");
}

TEST_F(RawLogViewer, AMultiBlockPartIsCutAtEtb) {
  EXPECT_EQ(shown(message("2.2022..<NAK>H11<STX>M01AFX5067PART ONE<ETB><CRC><DEL>")),
            "---------------------------[2026/11/20 01:00:11 131.450MHz <PRE]\r\n"
            "FX5067 (2022..)    [H1:1:M01A] MODE:2   \r\n"
            "PART ONE\r\n\r\n");
}

TEST_F(RawLogViewer, EtxDecidesWhereBothEndMarksOccur) {
  EXPECT_EQ(shown("H>+*<SYN><SYN><SOH>2.JA8089<NAK>H13<STX>M01AJL0012A<ETB>B<ETX>C"),
            "---------------------------[H]\r\n"
            "JL0012 (JA8089)    [H1:3:M01A] MODE:2   \r\n"
            "A<ETB>B\r\n\r\n");
}

TEST_F(RawLogViewer, LineBreaksOfABodyAreRestoredAndOtherTokensStay) {
  EXPECT_EQ(shown("H>+*<SYN><SYN><SOH>2.JA8089<NAK>H13<STX>M01AJL0012A<CR><VF><CR><VF>B<LF>C<CR>D"
                  "<CR><VF><ETX>"),
            "---------------------------[H]\r\n"
            "JL0012 (JA8089)    [H1:3:M01A] MODE:2   \r\n"
            "A\r\n\r\nB<LF>C<CR>D\r\n\r\n\r\n");
}

TEST_F(RawLogViewer, AnEmptyBodyIsLeftOutButItsLineStaysInTheRawText) {
  const std::string empty = message("2.JA212P<NAK>Q01<STX>M00AQS2697<ETX><CRC><DEL>");
  const std::string shorter = message("2.JA212P<NAK>Q01<STX>M00A<ETX><CRC><DEL>");
  const RawLog log = read({empty, shorter});
  EXPECT_EQ(log.displayText, "");
  EXPECT_EQ(log.rawText, empty + "\r\n" + shorter + "\r\n");
  EXPECT_EQ(log.lines, 2u);
}

TEST_F(RawLogViewer, ALineWithoutTheMarkerAddsNothingToTheDisplay) {
  const RawLog log = read({"a line in another form", "", "M01AJL0012<STX>POS<ETX>"});
  EXPECT_EQ(log.displayText, "");
  EXPECT_EQ(log.rawText, "a line in another form\r\n\r\nM01AJL0012<STX>POS<ETX>\r\n");
}

TEST_F(RawLogViewer, AFileWithoutRawMessagesGivesTheNote) {
  EXPECT_EQ(
      shownText(read({"[MSG] JA8089 POS"})),
      "現在RAW形式のログファイルにのみ対応しています。RAW形式のファイルをMSG形式に変換して表示し"
      "ています。");
  EXPECT_EQ(shownText(readBytes("")), shownText(read({"x"})));
}

TEST_F(RawLogViewer, AMalformedLineIsSkippedInTheDisplayAndKeptInTheRawText) {
  const std::initializer_list<std::string_view> lines = {
      "H>+*<SYN><SYN><SOH>2.JA8089<NAK>H13M01AJL0012POS<ETX>",            // no <STX>
      "H>+*<SYN><SYN><SOH>2.JA8089<NAK>H13<STX>M01AJL0012POS",            // no end mark
      "H>+*<SYN><SYN><SOH>2.JA8089<NAK>H13<ETX>M01AJL0012<STX>POS",       // ends before it starts
      "H>+*<SYN><SYN><SOH>2.JA8089<ETX><NAK>H13<STX>M01AJL0012POS<ETX>",  // first end mark counts
      "H>+*<",
      ">+*<>+*<>+*<>+*<",
      "H>+*<SYN><SYN><SOH>2.JA8089<NAK>H13<STX>M01AJL0012GOOD<ETX>",
  };
  const RawLog log = read(lines);
  EXPECT_EQ(log.displayText,
            "---------------------------[H]\r\nJL0012 (JA8089)    [H1:3:M01A] MODE:2   \r\n"
            "GOOD\r\n\r\n");
  EXPECT_EQ(log.rawText, test::cp932Lines(lines));
}

TEST_F(RawLogViewer, TwentyThousandLinesShowTheFirstTenThousandAndOne) {
  std::string bytes;
  for (int i = 1; i <= 20'000; ++i) {
    bytes +=
        "H" + std::to_string(i) + ">+*<SYN><SYN><SOH>2.JA8089<NAK>H13<STX>M01AJL0012X<ETX>\r\n";
  }
  const RawLog log = readBytes(bytes);
  EXPECT_EQ(log.lines, 10'001u);
  EXPECT_EQ(log.cut, RawLogCut::lines);
  EXPECT_EQ(cutText(log), "First 10,001 lines only 先頭10,001行のみ");
  EXPECT_EQ(log.rawText, bytes.substr(0, bytes.find("H10002>")));
  EXPECT_NE(log.displayText.find("[H10001]"), std::string::npos);
  EXPECT_EQ(log.displayText.find("[H10002]"), std::string::npos);
}

TEST_F(RawLogViewer, TenThousandAndOneLinesAreTheWholeFile) {
  std::string bytes;
  for (int i = 0; i < 10'001; ++i) bytes += "x\r\n";
  const RawLog log = readBytes(bytes);
  EXPECT_EQ(log.rawText, bytes);
  EXPECT_EQ(log.cut, RawLogCut::none);
  EXPECT_EQ(cutText(log), "");
}

TEST_F(RawLogViewer, PositionsAreCharactersNotBytes) {
  EXPECT_EQ(
      shown("受信>+*<SYN><SYN><SOH>2.羽田空港機体<NAK>H13<STX>番号第一便名六文字です本文<ETX>"),
      "---------------------------[受信]\r\n"
      "便名六文字で (羽田空港機体)    [H1:3:番号第一] MODE:2   \r\n"
      "す本文\r\n\r\n");
}

TEST_F(RawLogViewer, BytesThatAreNoTextStayInTheRawText) {
  const std::string line = "H>+*<SYN><SYN><SOH>2.JA8089<NAK>H13<STX>M01AJL0012A\x81\xFF" +
                           std::string(1, '\0') + "B<ETX>";
  const RawLog log = readBytes(line + "\r\n");
  EXPECT_EQ(log.rawText, line + "\r\n");
  EXPECT_NE(log.displayText.find("A\xEF\xBF\xBD"), std::string::npos);
}

TEST_F(RawLogViewer, LineFeedsAloneEndLinesAndTheRawTextHasCrLf) {
  EXPECT_EQ(readBytes("one\ntwo").rawText, "one\r\ntwo\r\n");
}

TEST_F(RawLogViewer, ARawTextStaysWithinWhatTheConversionTakes) {
  const std::string line(std::size_t{1} << 20, '~');
  std::string bytes;
  for (int i = 0; i < 30; ++i) bytes += line + "\r\n";
  const RawLog log = readBytes(bytes);
  EXPECT_LE(log.rawText.size(), kRawTextLimit);
  EXPECT_EQ(log.lines, 19u);
  EXPECT_EQ(log.cut, RawLogCut::size);
  EXPECT_EQ(cutText(log), "First 20 MiB only (19 lines) 先頭20 MiBのみ(19行)");
}

TEST_F(RawLogViewer, AMillionLineBreaksAreReadInShortSteps) {
  std::string body;
  for (int i = 0; i < 100'000; ++i) body += "<CR><VF>";
  std::string bytes;
  for (int i = 0; i < 20; ++i)
    bytes += message("2.JA8089<NAK>H13<STX>M01AJL0012" + body + "END<ETX>\r\n");
  test::writeBytes(folder_ / "JA8089.log", bytes);
  RawLog log;
  RawLogRead job(folder_ / "JA8089.log", Encoding::codePage932(), log);
  int steps = 1;
  for (; *job.step(Job::Clock::now()) == JobProgress::more; ++steps)
    EXPECT_LE(log.lines, static_cast<std::size_t>(steps));
  EXPECT_GE(steps, 20);
  EXPECT_EQ(std::count(log.displayText.begin(), log.displayText.end(), '\n'), 20 * (100'000 + 4));
}

TEST_F(RawLogViewer, AMissingFileIsAnError) {
  RawLog log;
  log.rawText = "of another file";
  const Status status = readAll(folder_ / "none.log", log);
  ASSERT_FALSE(status.ok());
  EXPECT_EQ(status.error().text(), "ERROR #53");
  EXPECT_EQ(log.rawText, "");
  EXPECT_STREQ(kNoRawLog, "Not found log file.");
}

}  // namespace
}  // namespace vel
