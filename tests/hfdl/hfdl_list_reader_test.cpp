#include "hfdl/hfdl_list_reader.h"

#include <chrono>

#include <gtest/gtest.h>

#include "hfdl/hfdl_row.h"
#include "tests/support/test_files.h"

namespace vel::test {
namespace {

using std::chrono::steady_clock;

class HfdlListReaderTest : public ::testing::Test {
 protected:
  HfdlListReaderTest() : tables_(base_.folders, encoding_), photos_(base_.folders.pics) {
    base_.writeData("ICAO24.csv", {"86D324,JAL,JL,JA732J,B773"});
    base_.writeData("FLIGHT.csv", {"JL0123,RJTTKJFK,-"});
    base_.writeLog("list.log", {
                                   "[3]------------------------[2026/11/17 00:01:24]",
                                   " DOWN LINK",
                                   "  GS NAME         = Agana, Guam",
                                   "   ICAO24 ADDRESS = 86D324",
                                   "   REGISTRATION   = JA732J",
                                   "   FLIGHT ID      = JL0123",
                                   "  ..............................",
                                   "   ICAO24 ADDRESS = 700001",
                                   "   REGISTRATION   = G-CIVA",
                                   "   FLIGHT ID      = BA0007",
                                   "  ..............................",
                               });
  }

  HfdlListReader reader() {
    return {InputFile::open(base_.folders.logs / "list.log").value(), encoding_, tables_, photos_};
  }

  // Steps as short as they can be, until so many rows were read or all.
  static void readTo(std::size_t count, HfdlListReader& reader, RowStore& rows) {
    while (rows.size() < count) {
      const Result<bool> more = reader.step(steady_clock::now(), rows);
      if (!more || !*more) return;
    }
  }

  TemporaryBase base_;
  Encoding encoding_ = Encoding::codePage932();
  Tables tables_;
  FolderIndex photos_;
  RowStore rows_{kHfdlSeparator};
};

// Rows begin with column 1.
constexpr std::size_t inRow(std::size_t column) { return column - 1; }

TEST_F(HfdlListReaderTest, APhotoThatComesWhileTheLogIsReadIsMarked) {
  HfdlListReader reading = reader();
  readTo(1, reading, rows_);
  writeBytes(base_.folders.pics / "JA732J.jpg", "");
  writeBytes(base_.folders.pics / "g-civa.JPG", "");
  readTo(2, reading, rows_);
  ASSERT_EQ(rows_.size(), 2U);
  EXPECT_EQ(rows_.field(0, inRow(kHfdlPhoto)), "x");
  EXPECT_EQ(rows_.field(1, inRow(kHfdlPhoto)), "o");
}

TEST_F(HfdlListReaderTest, AnEditedTableHoldsForTheRecordsThatFollow) {
  HfdlListReader reading = reader();
  readTo(1, reading, rows_);
  base_.writeData("FLIGHT.csv", {"JL0123,RJAAKLAX,-", "BA0007,EGLLRJTT,-"});
  readTo(2, reading, rows_);
  ASSERT_EQ(rows_.size(), 2U);
  EXPECT_EQ(rows_.field(0, inRow(kHfdlOrigin)), "RJTT");
  EXPECT_EQ(rows_.field(1, inRow(kHfdlOrigin)), "EGLL");
}

TEST_F(HfdlListReaderTest, AMissingTableIsAFailedLookUpAndKeepsTheRowsSoFar) {
  HfdlListReader reading = reader();
  readTo(1, reading, rows_);
  EXPECT_FALSE(reading.failedLookUp());
  ASSERT_TRUE(removeFile(base_.folders.data / "ICAO24.csv").ok());
  Result<bool> more = true;
  while (more && *more) more = reading.step(steady_clock::now(), rows_);
  ASSERT_FALSE(more.ok());
  EXPECT_EQ(more.error().text(), "Not found data\\ICAO24.csv");
  EXPECT_TRUE(reading.failedLookUp());
  EXPECT_EQ(rows_.size(), 1U);
}

}  // namespace
}  // namespace vel::test
