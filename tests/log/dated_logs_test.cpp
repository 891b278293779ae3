#include "log/dated_logs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(DatedLogs, OffersEveryLogOfTheDecoderInTheOrderOfTheirNames) {
  const TemporaryBase base;
  for (const char* name : {"202611160000_HFDL_FMT.log", "202611150000_HFDL_FMT.log",
                           "20261115_list.csv", "199911150000_HFDL_FMT.log", "20_HFDL_FMT.log",
                           "202611170000_HFDL_FMT.log.bak", "readme.txt"}) {
    writeBytes(base.folders.logs / name, "");
  }
  EXPECT_THAT(
      datedLogs(base.folders.logs, "_HFDL_FMT.log"),
      ElementsAre("202611150000_HFDL_FMT.log", "202611160000_HFDL_FMT.log", "20_HFDL_FMT.log"));
  EXPECT_THAT(datedLogs(base.folders.logs, "_list.csv"), ElementsAre("20261115_list.csv"));
}

TEST(DatedLogs, AreFoundWhateverTheirLetterCase) {
  const TemporaryBase base;
  writeBytes(base.folders.logs / "202611150000_hfdl_fmt.LOG", "");
  writeBytes(base.folders.logs / "20261115_LIST.CSV", "");
  EXPECT_THAT(datedLogs(base.folders.logs, "_HFDL_FMT.log"),
              ElementsAre("202611150000_hfdl_fmt.LOG"));
  EXPECT_THAT(datedLogs(base.folders.logs, "_list.csv"), ElementsAre("20261115_LIST.CSV"));
}

TEST(DatedLogs, FolderOfALogsNameIsNoLog) {
  const TemporaryBase base;
  std::filesystem::create_directory(base.folders.logs / "20261115_list.csv");
  EXPECT_THAT(datedLogs(base.folders.logs, "_list.csv"), IsEmpty());
}

TEST(DatedLogs, MissingFolderOffersNothing) {
  const TemporaryFolder folder;
  EXPECT_THAT(datedLogs(folder / "logs", "_list.csv"), IsEmpty());
}

TEST(ChooseLog, TakesTheNewestWhenNothingWasShownBefore) {
  EXPECT_EQ(chooseLog({"20090314_list.csv", "20090315_list.csv"}, ""), 1);
  EXPECT_EQ(chooseLog({"20090315_list.csv", "20090314_list.csv"}, ""), 0);
}

TEST(ChooseLog, KeepsTheLogThatWasShown) {
  EXPECT_EQ(chooseLog({"20090313_list.csv", "20090314_list.csv", "20090315_list.csv"},
                      "20090314_list.csv"),
            1);
}

TEST(ChooseLog, TakesNothingWhenTheShownLogIsGoneOrNoneIsThere) {
  EXPECT_EQ(chooseLog({"20090314_list.csv"}, "20090313_list.csv"), -1);
  EXPECT_EQ(chooseLog({}, ""), -1);
}

}  // namespace
}  // namespace vel::test
