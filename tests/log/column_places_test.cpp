#include "log/column_places.h"

#include <gmock/gmock.h>

#include "core/file.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

class Columns : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path file() const { return folder_ / "columns.ini"; }
  void write(std::string_view bytes) const { test::writeBytes(file(), bytes); }

  test::TemporaryFolder folder_;
};

const ColumnPlaces kPlaces{{2, 0, 1}, {40, 50, 60}};

TEST_F(Columns, ComeBackAsTheyWereSaved) {
  EXPECT_EQ(loadColumns(file(), "Form1", 3), std::nullopt);
  ASSERT_TRUE(saveColumns(file(), "Form1", kPlaces).ok());
  EXPECT_EQ(loadColumns(file(), "Form1", 3), kPlaces);
  EXPECT_EQ(test::readBytes(file()), "[Form1]\norder=2,0,1\nwidths=40,50,60\n");
}

TEST_F(Columns, OfOneListLeaveThoseOfAnotherAlone) {
  const ColumnPlaces other{{1, 0}, {7, 8}};
  ASSERT_TRUE(saveColumns(file(), "Form2", other).ok());
  ASSERT_TRUE(saveColumns(file(), "Form1", kPlaces).ok());
  ASSERT_TRUE(saveColumns(file(), "Form1", std::nullopt).ok());
  EXPECT_EQ(loadColumns(file(), "Form1", 3), std::nullopt);
  EXPECT_EQ(loadColumns(file(), "Form2", 2), other);
}

TEST_F(Columns, ThatNobodyChangedMakeNoFile) {
  ASSERT_TRUE(saveColumns(file(), "Form1", std::nullopt).ok());
  EXPECT_FALSE(fileExists(file()));
}

TEST_F(Columns, EditedByHandAreReadWithBlanksAndCarriageReturns) {
  write("\r\n [Form1] \r\n order = 2, 0, 1\r\nwidths=40 ,50,60\r\n");
  EXPECT_EQ(loadColumns(file(), "Form1", 3), kPlaces);
}

TEST_F(Columns, ThatCannotBeAreNone) {
  for (const char* bytes : {
           "[Form1]\norder=2,0,1\n",                            // no widths
           "[Form1]\norder=2,0,0\nwidths=40,50,60\n",           // one twice
           "[Form1]\norder=3,0,1\nwidths=40,50,60\n",           // one that is not there
           "[Form1]\norder=-1,0,1\nwidths=40,50,60\n",          //
           "[Form1]\norder=2,0,1\nwidths=40,0,60\n",            // nothing to see
           "[Form1]\norder=2,0,1\nwidths=40,99999999999,60\n",  //
           "[Form1]\norder=2,0,1\nwidths=40,50\n",              // of another version
           "[Form1]\norder=2,0,1,3\nwidths=40,50,60,70\n",      //
           "[Form1]\norder=x,0,1\nwidths=40,50,60\n",           //
           "order=2,0,1\nwidths=40,50,60\n",                    // of no list
           "[Form1\norder=2,0,1\nwidths=40,50,60\n",            //
       }) {
    write(bytes);
    EXPECT_EQ(loadColumns(file(), "Form1", 3), std::nullopt) << bytes;
  }
}

}  // namespace
}  // namespace vel
