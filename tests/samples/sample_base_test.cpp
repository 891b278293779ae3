// What a newcomer sees first: the sample station's newest day.

#include <QProcess>
#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include <gmock/gmock.h>

#include "core/file.h"
#include "core/line_reader.h"
#include "core/text.h"
#include "tests/support/test_files.h"
#include "velweb/kml.h"
#include "web/raw_log.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

constexpr int kLongEnough = 120'000;

using Fields = std::vector<std::string>;

class SampleStation : public testing::Test {
 protected:
  void SetUp() override {
    QProcess maker;
    maker.start(QStringLiteral(VEL_SAMPLE_MAKER),
                {QStringLiteral("--today"), QStringLiteral("2026-11-20"), QStringLiteral("--days"),
                 QStringLiteral("3"), QString::fromStdString(toUtf8(base()))});
    ASSERT_TRUE(maker.waitForFinished(kLongEnough));
    ASSERT_EQ(maker.exitCode(), 0) << maker.readAllStandardError().toStdString();
    for (const Fields& record : records("logs/20261120_list.csv")) {
      if (record.size() == 8) list_.push_back(record);
    }
    // Behind the titles.
    ASSERT_GT(list_.size(), 100U);
    list_.erase(list_.begin());
    for (const Fields& record : records("data/FLIGHT.csv")) routes_.insert(record.front());
    for (const Fields& record : records("data/letter.csv")) airlines_.insert(record.front());
  }

  [[nodiscard]] fs::path base() const { return folder_.path() / "station"; }

  [[nodiscard]] std::vector<Fields> records(const std::string& name) const {
    const std::string text = Encoding::codePage932().decode(test::readBytes(base() / name));
    std::vector<Fields> all;
    for (const std::string_view line : split(text, '\n')) {
      Fields fields;
      for (const std::string_view field : split(Trim(line), ',')) fields.emplace_back(field);
      all.push_back(fields);
    }
    return all;
  }
  [[nodiscard]] bool hasPhoto(const std::string& registration) const {
    return fileExists(base() / "pics" / (registration + ".jpg"));
  }
  [[nodiscard]] bool hasPositions(const std::string& registration) const {
    const fs::path file = base() / "logs" / "EachLogs" / (registration + ".log");
    if (!fileExists(file)) return false;
    const std::string text = Encoding::codePage932().decode(test::readBytes(file));
    for (const std::string_view line : split(text, '\n')) {
      const auto message = parseRawLine(line);
      if (message && trackPointOf(*message)) return true;
    }
    return false;
  }
  [[nodiscard]] bool hasRoute(const Fields& line) const {
    return routes_.contains(std::string(Trim(line[0])));
  }
  [[nodiscard]] bool hasAirline(const Fields& line) const {
    return airlines_.contains(line[0].substr(0, 2));
  }

  test::TemporaryFolder folder_;
  std::vector<Fields> list_;
  std::set<std::string> routes_;
  std::set<std::string> airlines_;
};

TEST_F(SampleStation, ItsFirstLineShowsEverything) {
  const Fields& first = list_.front();
  EXPECT_TRUE(hasPhoto(first[2])) << first[2];
  EXPECT_TRUE(hasPositions(first[2])) << first[2];
  EXPECT_TRUE(hasRoute(first)) << first[0];
  EXPECT_TRUE(hasAirline(first)) << first[0];
  EXPECT_THAT(first[1], testing::AnyOf("O", "○"));
}

TEST_F(SampleStation, MostAircraftOfTheNewestDayHavePhotoPositionsRouteAndAirline) {
  std::map<std::string, bool> isComplete;
  for (const Fields& line : list_) {
    const std::string& registration = line[2];
    if (registration.empty() || isComplete[registration]) continue;
    isComplete[registration] =
        hasRoute(line) && hasAirline(line) && hasPhoto(registration) && hasPositions(registration);
  }
  const auto complete = static_cast<std::size_t>(std::count_if(
      isComplete.begin(), isComplete.end(), [](const auto& each) { return each.second; }));
  std::cout << complete << " of " << isComplete.size() << " aircraft\n";
  EXPECT_GT(complete * 10, isComplete.size() * 6);
  // Some have none: that is to be seen too.
  EXPECT_LT(complete, isComplete.size());
}

}  // namespace
}  // namespace vel
