#include <filesystem>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "tables/tables.h"
#include "tests/support/system_files.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

// Look-ups whose tables may stay open see each of them as it is, as others do.
class ManyLookUps : public testing::Test {
 protected:
  void SetUp() override { base_.writeData("aircraft.csv", {"JA8089,B744", "JA701A,B772"}); }

  [[nodiscard]] std::filesystem::path table() const { return base_.folders.data / "aircraft.csv"; }
  [[nodiscard]] std::string equipment() const {
    return tables_.equipmentOfFirstLine("JA8089").value();
  }
  // As a rewrite does: another file takes the table's name.
  void replaceTable(std::string_view line) const {
    base_.writeData("aircraft.new", {line});
    ASSERT_TRUE(replaceFile(base_.folders.data / "aircraft.new", table()));
  }

  test::TemporaryBase base_;
  Tables tables_{base_.folders, Encoding::codePage932()};
};

TEST_F(ManyLookUps, EachReadsItsTableFromTheTop) {
  const Tables::ManyLookUps lookUps(tables_);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(tables_.equipmentOfFirstLine("JA701A").value(), "B772");
    EXPECT_EQ(equipment(), "B744");
    EXPECT_EQ(tables_.equipmentOfLastLine("JA999A").value(), "");
  }
}

TEST_F(ManyLookUps, AnotherFileInTheTablesPlaceIsSeen) {
  const Tables::ManyLookUps lookUps(tables_);
  EXPECT_EQ(equipment(), "B744");
  replaceTable("JA8089,B748");
  EXPECT_EQ(equipment(), "B748");
  replaceTable("JA8089,A388");
  EXPECT_EQ(equipment(), "A388");
}

TEST_F(ManyLookUps, AFileThatIsChangedInPlaceIsSeen) {
  const Tables::ManyLookUps lookUps(tables_);
  EXPECT_EQ(equipment(), "B744");
  base_.writeData("aircraft.csv", {"JA701A,B772", "JA8089,B748"});
  EXPECT_EQ(equipment(), "B748");
  base_.writeData("aircraft.csv", {});
  EXPECT_EQ(equipment(), "");
}

TEST_F(ManyLookUps, ATableThatIsGoneIsMissing) {
  const Tables::ManyLookUps lookUps(tables_);
  EXPECT_EQ(equipment(), "B744");
  ASSERT_TRUE(removeFile(table()));
  EXPECT_EQ(tables_.equipmentOfFirstLine("JA8089").error().text(), "ERROR #53");
  base_.writeData("aircraft.csv", {"JA8089,B748"});
  EXPECT_EQ(equipment(), "B748");
}

TEST_F(ManyLookUps, ATableThatIsRefusedSinceIsRefused) {
  const Tables::ManyLookUps lookUps(tables_);
  EXPECT_EQ(equipment(), "B744");
  {
    const test::RefusedFile refused(table(), test::RefusedFile::Refuses::opening);
    EXPECT_EQ(tables_.equipmentOfFirstLine("JA8089").error().text(), "ERROR #70");
  }
  EXPECT_EQ(equipment(), "B744");
}

TEST_F(ManyLookUps, ATableUnderANameOfOtherLetterCaseIsFoundEachTime) {
  test::giveName(table(), "AIRCRAFT.CSV");
  const Tables::ManyLookUps lookUps(tables_);
  EXPECT_EQ(equipment(), "B744");
  EXPECT_EQ(equipment(), "B744");
  replaceTable("JA8089,B748");
  EXPECT_EQ(equipment(), "B748");
}

TEST_F(ManyLookUps, ACopyOfTheTablesReadsForItself) {
  const Tables::ManyLookUps lookUps(tables_);
  EXPECT_EQ(equipment(), "B744");
  const Tables copy = tables_;
  EXPECT_EQ(copy.equipmentOfFirstLine("JA8089").value(), "B744");
  EXPECT_EQ(equipment(), "B744");
}

#if defined(__linux__)

// How often this program has the file open.
int openings(const std::filesystem::path& file) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (std::filesystem::read_symlink(entry, gone) == file) ++count;
  }
  return count;
}

TEST_F(ManyLookUps, ATableIsOpenOnceMeanwhileAndNotLonger) {
  const std::filesystem::path table = std::filesystem::canonical(this->table());
  {
    const Tables::ManyLookUps lookUps(tables_);
    EXPECT_EQ(equipment(), "B744");
    EXPECT_EQ(openings(table), 1);
    EXPECT_EQ(equipment(), "B744");
    EXPECT_EQ(openings(table), 1);
    {
      const Tables::ManyLookUps inner(tables_);
      EXPECT_EQ(equipment(), "B744");
    }
    EXPECT_EQ(openings(table), 1);
  }
  EXPECT_EQ(openings(table), 0);
  EXPECT_EQ(equipment(), "B744");
  EXPECT_EQ(openings(table), 0);
}

#endif

}  // namespace
}  // namespace vel
