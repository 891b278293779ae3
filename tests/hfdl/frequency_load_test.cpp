#include "hfdl/frequency_load.h"

#include <cstdio>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel::test {
namespace {

using std::chrono::local_days;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

constexpr local_days kStart{2026y / 11 / 14};

class FrequencyLoadTest : public ::testing::Test {
 protected:
  void writeLog(const std::string& name, const std::string& station) {
    base_.writeLog(name, {"[3]------------------------[2026/11/17 00:00:01]",
                          "   FREQUENCIES    = [ 2998 ] (" + station + ")"});
  }

  // Loads, and gives the progress text after each file that is read.
  std::vector<std::string> load() {
    std::vector<std::string> progress;
    FrequencyLoad load(base_.folders, tables_, kStart);
    while (load.nextFile()) {
      progress.push_back(load.progressText());
      while (load.readPiece()) {
      }
    }
    progress.push_back(load.progressText());
    messages_ = load.messages();
    if (!load.overflowText().empty()) messages_.insert(messages_.begin(), load.overflowText());
    return progress;
  }

  std::vector<std::string> stations() const {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < tables_.stationCount(); ++i)
      names.push_back(tables_.stationName(i));
    return names;
  }

  TemporaryBase base_;
  FrequencyTables tables_{Encoding::codePage932()};
  std::vector<std::string> messages_;
};

TEST_F(FrequencyLoadTest, ChartCoversTheLastSevenDaysIncludingToday) {
  EXPECT_EQ(chartStart(local_days(2026y / 11 / 20) + 23h + 59min), kStart);
  EXPECT_EQ(chartStart(local_days(2026y / 11 / 20)), kStart);
}

TEST_F(FrequencyLoadTest, FilesOutsideTheDatesOnlyAddADotToTheProgress) {
  writeLog("202611110000_HFDL_FMT.log", "too early");
  writeLog("202611120000_HFDL_FMT.log", "lower bound");
  writeLog("202611130000_HFDL_FMT.log", "A");
  writeLog("202611140000_HFDL_FMT.log", "B");
  writeLog("202611200000_HFDL_FMT.log", "C");
  writeLog("202611210000_HFDL_FMT.log", "upper bound");
  writeLog("209901010000_HFDL_FMT.log", "too late");
  writeLog("20261114_list.csv", "no log");
  EXPECT_THAT(load(),
              ElementsAre("Loading ..o", "Loading ..oo", "Loading ..ooo", "Loading ..ooo.."));
  EXPECT_THAT(stations(), ElementsAre("A", "B", "C"));
  EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(FrequencyLoadTest, NamesInAnyLetterCaseAreDatedAlike) {
  writeLog("202611120000_hfdl_fmt.log", "lower bound");
  writeLog("202611140000_hfdl_fmt.LOG", "B");
  writeLog("202611210000_Hfdl_Fmt.log", "upper bound");
  EXPECT_THAT(load(), ElementsAre("Loading .o", "Loading .o."));
  EXPECT_THAT(stations(), ElementsAre("B"));
}

TEST_F(FrequencyLoadTest, EmptyOrMissingLogsFolderLoadsNothingAndSaysNothing) {
  EXPECT_THAT(load(), ElementsAre("Loading "));
  std::filesystem::remove_all(base_.folders.logs);
  EXPECT_THAT(load(), ElementsAre("Loading "));
  EXPECT_EQ(tables_.stationCount(), 0U);
  EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(FrequencyLoadTest, LaterLoadBeginsWithEmptyTables) {
  writeLog("202611140000_HFDL_FMT.log", "B");
  load();
  writeLog("202611140000_HFDL_FMT.log", "C");
  load();
  EXPECT_THAT(stations(), ElementsAre("C"));
}

TEST_F(FrequencyLoadTest, LogThatVanishesIsToldOnceAndTheOthersAreRead) {
  writeLog("202611140000_HFDL_FMT.log", "A");
  writeLog("202611150000_HFDL_FMT.log", "B");
  writeLog("202611160000_HFDL_FMT.log", "C");
  FrequencyLoad load(base_.folders, tables_, kStart);
  std::filesystem::remove(base_.folders.logs / "202611140000_HFDL_FMT.log");
  std::filesystem::remove(base_.folders.logs / "202611150000_HFDL_FMT.log");
  while (load.nextFile()) {
    while (load.readPiece()) {
    }
  }
  EXPECT_EQ(load.progressText(), "Loading ooo");
  EXPECT_THAT(stations(), ElementsAre("C"));
  EXPECT_THAT(load.messages(), ElementsAre("ERROR #53"));
}

TEST_F(FrequencyLoadTest, LogThatVanishesWhileItIsReadIsReadToItsEnd) {
  writeLog("202611140000_HFDL_FMT.log", "A");
  FrequencyLoad load(base_.folders, tables_, kStart);
  ASSERT_TRUE(load.nextFile());
  std::filesystem::remove(base_.folders.logs / "202611140000_HFDL_FMT.log");
  while (load.readPiece()) {
  }
  EXPECT_FALSE(load.nextFile());
  EXPECT_THAT(stations(), ElementsAre("A"));
  EXPECT_THAT(load.messages(), IsEmpty());
}

TEST_F(FrequencyLoadTest, OverflowTellsTheLargestNumberOfTimes) {
  std::string bytes;
  for (int i = 0; i < 10003; ++i) {
    char lines[128];
    std::snprintf(lines, sizeof lines,
                  "[3]------------------------[2026/11/17 %02d:%02d:%02d]\r\n"
                  "   FREQUENCIES    = [ 2998 ] (Shannon)\r\n",
                  i / 3600, i / 60 % 60, i % 60);
    bytes += lines;
  }
  writeBytes(base_.folders.logs / "202611170000_HFDL_FMT.log", bytes);
  load();
  EXPECT_THAT(messages_, ElementsAre("データ量が多く一部のデータを処理できませんでした。（10003件）"
                                     "サポートまでお問い合わせください。"));
}

TEST_F(FrequencyLoadTest, StationsAndFrequenciesWithoutAPlaceAreToldInOneMessage) {
  std::string lines = "[3]------------------------[2026/11/17 00:00:00]\r\n";
  for (int s = 1; s <= 32; ++s) {
    lines += "   FREQUENCIES    = [ 2998 ] (Station " + std::to_string(s) + ")\r\n";
  }
  for (int f = 1; f <= 12; ++f) {
    lines += "   FREQUENCIES    = [ " + std::to_string(f) + " ] (Station 1)\r\n";
  }
  writeBytes(base_.folders.logs / "202611170000_HFDL_FMT.log", lines);
  load();
  EXPECT_THAT(messages_, ElementsAre("1 station and 2 frequencies are not shown. "
                                     "1局と2周波数は表示されません。"));
}

TEST(ExcessMessage, NamesWhatIsLeftOut) {
  EXPECT_EQ(excessMessage(0, 0), "");
  EXPECT_EQ(excessMessage(1, 0), "1 station is not shown. 1局は表示されません。");
  EXPECT_EQ(excessMessage(0, 1), "1 frequency is not shown. 1周波数は表示されません。");
  EXPECT_EQ(excessMessage(0, 3), "3 frequencies are not shown. 3周波数は表示されません。");
}

TEST(Excess, CountsEachNameOnceAndStopsAtTenThousand) {
  Excess excess;
  for (int again = 0; again < 2; ++again) {
    for (int i = 0; i < 500; ++i) excess.add(std::to_string(i));
  }
  EXPECT_EQ(excess.count(), 500U);
  for (int i = 0; i < 20000; ++i) excess.add(std::to_string(i));
  EXPECT_EQ(excess.count(), 10000U);
}

TEST(ProgressDrawing, PrintsTheTextInNavyAt50) {
  const Drawing drawing = progressDrawing("Loading .o", 700, 400);
  ASSERT_EQ(drawing.shapes.size(), 1U);
  const auto& text = std::get<Text>(drawing.shapes[0]);
  EXPECT_EQ(text.text, "Loading .o");
  EXPECT_EQ(text.x, 50);
  EXPECT_EQ(text.y, 50);
  EXPECT_EQ(text.colour, (Colour{0, 0, 128}));
}

}  // namespace
}  // namespace vel::test
