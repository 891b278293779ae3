#include "app/installed_files.h"

#include <filesystem>

#include <gmock/gmock.h>

#include "tests/support/test_files.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

class InstalledFiles : public testing::Test {
 protected:
  void SetUp() override { fs::create_directories(programs()); }
  fs::path put(const fs::path& file) {
    fs::create_directories((root_.path() / file).parent_path());
    test::writeBytes(root_.path() / file, "x");
    return root_.path() / file;
  }
  [[nodiscard]] fs::path programs() const { return root_.path() / "bin"; }

  test::TemporaryFolder root_;
};

TEST_F(InstalledFiles, ThePageOfTheLanguageIsFoundWhereASystemInstallsIt) {
  const fs::path english = put("share/vel/help/guide/acars.html");
  const fs::path japanese = put("share/vel/help/guide/ja/acars.html");
  EXPECT_EQ(guidePage(programs(), "acars", "ja"), japanese);
  EXPECT_EQ(guidePage(programs(), "acars", "en"), english);
}

TEST_F(InstalledFiles, APageThatALanguageLacksIsTheEnglishOne) {
  const fs::path english = put("share/vel/help/guide/tour.html");
  put("share/vel/help/guide/ja/acars.html");
  EXPECT_EQ(guidePage(programs(), "tour", "ja"), english);
  EXPECT_EQ(guidePage(programs(), "tour", "de"), english);
}

TEST_F(InstalledFiles, ThePageBesideTheProgramGoesFirst) {
  const fs::path beside = put("bin/help/guide/acars.html");
  put("share/vel/help/guide/acars.html");
  EXPECT_EQ(guidePage(programs(), "acars", "en"), beside);
}

TEST_F(InstalledFiles, APageThatNobodyConvertedIsShownAsItWasWritten) {
  const fs::path written = put("share/vel/help/guide/acars.md");
  EXPECT_EQ(guidePage(programs(), "acars", "en"), written);
}

TEST_F(InstalledFiles, NothingIsFoundWhereNothingIsInstalled) {
  EXPECT_EQ(guidePage(programs(), "acars", "ja"), std::nullopt);
  EXPECT_EQ(sampleMaker(programs()), std::nullopt);
}

#ifndef _WIN32
TEST_F(InstalledFiles, TheSampleMakerIsFoundAmongTheHelpersAndWhereItWasBuilt) {
  const fs::path built = put("samples/vel-sample-base");
  EXPECT_EQ(sampleMaker(programs()), built);
  const fs::path installed = put("libexec/vel/vel-sample-base");
  EXPECT_EQ(sampleMaker(programs()), installed);
}
#endif

}  // namespace
}  // namespace vel
