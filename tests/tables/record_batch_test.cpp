#include "tables/record_batch.h"

#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tables/rewrite.h"
#include "tests/support/driven_rewrite.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using testing::ElementsAre;

TEST(RecordBatch, EachKeyIsThereOnce) {
  RecordBatch batch(Table::aircraft);
  EXPECT_TRUE(batch.add("JA1,A320"));
  EXPECT_FALSE(batch.add("JA1,B738"));
  EXPECT_FALSE(batch.add(",B738"));
  EXPECT_FALSE(batch.add("JA2,B\n738"));
  EXPECT_FALSE(batch.add("JA2,\"B738\""));
  for (int i = 0; i < 5000; ++i) EXPECT_TRUE(batch.add("K" + std::to_string(i) + ",x"));
  EXPECT_EQ(batch.size(), 5001U);
  EXPECT_EQ(batch.record(*batch.find("JA1")), "JA1,A320");
  EXPECT_EQ(batch.record(*batch.find("K4999")), "K4999,x");
  EXPECT_FALSE(batch.find("K5000"));
  batch.replace(0, "JA1,A321");
  EXPECT_EQ(batch.record(*batch.find("JA1")), "JA1,A321");
  batch.setIncluded(0, false);
  EXPECT_EQ(batch.includedCount(), 5000U);
}

class BatchRewriteTest : public testing::Test {
 protected:
  std::shared_ptr<RecordBatch> batchOf(Table table, std::initializer_list<const char*> records) {
    auto batch = std::make_shared<RecordBatch>(table);
    for (const char* each : records) EXPECT_TRUE(batch->add(each));
    return batch;
  }
  test::DrivenRewrite write(std::shared_ptr<const RecordBatch> batch) {
    ReferenceTableRewrite rewrite(base_.folders, Encoding::codePage932(), std::move(batch));
    test::EventTurns turns;
    return test::drive(desktop_, rewrite, turns);
  }

  test::TemporaryBase base_;
  test::RecordingDesktop desktop_;
};

TEST_F(BatchRewriteTest, ExistingKeysAreReplacedInPlaceAndNewOnesComeLast) {
  base_.writeData("FLIGHT.csv", {"NH0001,AAAABBBB,-", "NH0002,AAAABBBB,-,more", "NH0003,AAAABBBB,-",
                                 "NH0001,CCCCDDDD,-"});
  const auto batch = batchOf(Table::flight, {"NH0009,EEEEFFFF,-", "NH0001,EEEEFFFF,-",
                                             "NH0003,EEEEFFFF,-", "NH0008,EEEEFFFF,-"});
  batch->setIncluded(2, false);
  EXPECT_EQ(write(batch), test::DrivenRewrite::done);
  EXPECT_EQ(base_.data("FLIGHT.csv"),
            "NH0001,EEEEFFFF,-\r\nNH0002,AAAABBBB,-\r\nNH0003,AAAABBBB,-\r\n"
            "NH0009,EEEEFFFF,-\r\nNH0008,EEEEFFFF,-\r\n");
  EXPECT_EQ(base_.data("FLIGHT.bak"),
            "NH0001,AAAABBBB,-\r\nNH0002,AAAABBBB,-,more\r\nNH0003,AAAABBBB,-\r\n"
            "NH0001,CCCCDDDD,-\r\n");
}

TEST_F(BatchRewriteTest, ARecordThatIsOnlyAddedLeavesTheLinesOfItsKeyAsTheyAre) {
  base_.writeData("airport.csv", {"RJTT,somebody was faster", "KLAX,Los Angeles", "RJTT,twice"});
  const auto batch = batchOf(Table::airport, {"RJTT,Tokyo HND", "KLAX,LAX", "RJAA,Narita NRT"});
  batch->setOnlyAdded(0);
  batch->setOnlyAdded(2);
  EXPECT_EQ(write(batch), test::DrivenRewrite::done);
  EXPECT_EQ(base_.data("airport.csv"),
            "RJTT,somebody was faster\r\nKLAX,LAX\r\nRJTT,twice\r\nRJAA,Narita NRT\r\n");
}

TEST_F(BatchRewriteTest, AnIncompleteLineStopsItAsItStopsAnEdit) {
  base_.writeData("FLIGHT.csv", {"NH0001,AAAABBBB,-", "NH0002,AAAABBBB"});
  EXPECT_EQ(write(batchOf(Table::flight, {"NH0009,EEEEFFFF,-"})), test::DrivenRewrite::programEnds);
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #9\n\nFLIGHT.csv, line 2"));
  EXPECT_EQ(base_.data("FLIGHT.csv"), "NH0001,AAAABBBB,-\r\nNH0002,AAAABBBB\r\n");
}

TEST_F(BatchRewriteTest, LinesOfLetterCsvKeepTheirFourthField) {
  base_.writeData("letter.csv", {"AA,AAL,American,Company", "BB,BBB,three fields", "CC,CCC,x,y,z"});
  EXPECT_EQ(write(batchOf(Table::letter, {"DD,DDD,new"})), test::DrivenRewrite::done);
  EXPECT_EQ(base_.data("letter.csv"),
            "AA,AAL,American,Company\r\nBB,BBB,three fields\r\nCC,CCC,x,y\r\nDD,DDD,new\r\n");
}

}  // namespace
}  // namespace vel
