// A wild user, while other programs change the files: no crash, no window that
// stands still, no file outside the base folder, no growth.

#include "tests/ui/monkey/monkey.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeDatabase>
#include <QPixmapCache>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"
#include "tests/ui/monkey/process_meter.h"
#include "tests/ui/monkey/restless_files.h"
#include "tests/ui/monkey/whole_program.h"

namespace vel::test {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

constexpr std::size_t kRounds = 10;
/// So many that nothing that the user does is left out.
constexpr std::size_t kUsualEvents = 3000;
constexpr std::chrono::milliseconds kLongestGap{1000};
/// What Qt keeps of the texts, fonts and icons that chance brought to the
/// screen differs from run to run.
constexpr std::size_t kSlack = 512 * 1024;

std::size_t fromEnvironment(const char* name, std::size_t usual) {
  const char* const text = std::getenv(name);
  return text == nullptr ? usual : std::strtoull(text, nullptr, 10);
}

/// The files below a folder. What Qt's own dialog for files remembers is not the
/// program's.
std::vector<std::string> filesBelow(const fs::path& folder) {
  std::vector<std::string> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file() && entry.path().filename() != "QtProject.conf") {
      files.push_back(entry.path().string());
    }
  }
  return files;
}

class WildUser : public testing::Test {
 protected:
  WildUser() {
    fs::create_directories(outside_);
    for (const char* name : {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
      qputenv(name, outside_.c_str());
    }
    workingFolder_ = fs::current_path();
    fs::current_path(outside_);
    makeStation(folders_);
    // Once its first use has opened it, Qt keeps its list of files' kinds open.
    static_cast<void>(QMimeDatabase().mimeTypeForName(QStringLiteral("text/plain")).isValid());
  }
  ~WildUser() override { fs::current_path(workingFolder_); }

  /// Starts the program as often as it ends, until the events are made.
  void playRound(Monkey& monkey, std::size_t events) {
    while (events > 0) {
      WholeProgram program(folders_);
      // Counts as an event, so that a program that cannot start ends the round.
      --events;
      ++starts_;
      if (!program.start()) continue;
      const std::size_t made = monkey.play(events, [&] { return !program.hasEnded(); });
      made_ += made;
      imports_ += program.imports();
      savedLists_ += program.savedLists();
      events -= made;
    }
  }

  TemporaryFolder folder_;
  fs::path outside_ = folder_ / "outside";
  Folders folders_ = Folders::of(folder_ / "station" / "vel");
  fs::path workingFolder_;
  std::size_t starts_ = 0;
  std::size_t made_ = 0;
  std::size_t imports_ = 0;
  std::size_t savedLists_ = 0;
};

TEST_F(WildUser, DoesNoHarm) {
  const std::size_t events = fromEnvironment("VEL_MONKEY_EVENTS", kUsualEvents);
  const std::uint64_t seed = fromEnvironment("VEL_MONKEY_SEED", 1);
  const std::set<std::string> before = [&] {
    const auto files = filesBelow(folder_.path());
    return std::set<std::string>(files.begin(), files.end());
  }();
  const std::set<fs::path> foldersBefore(fs::directory_iterator(folders_.base),
                                         fs::directory_iterator());
  Monkey monkey(seed);
  QStringList imports;
  for (const std::string& file : filesBelow(folders_.base / "imports")) {
    imports << QString::fromStdString(file);
  }
  monkey.setFilesToDrop(imports);
  const fs::path saved = folders_.base / "saved";
  std::vector<std::unique_ptr<Errand>> errands;
  errands.push_back(std::make_unique<ImportErrand>(imports));
  errands.push_back(std::make_unique<SaveErrand>(saved));
  monkey.setErrands(std::move(errands));
  std::size_t changes = 0;
  std::size_t bytesAtFirst = 0;
  std::size_t bytesAtLast = 0;
  std::size_t descriptorsAtFirst = 0;
  for (std::size_t round = 0; round < kRounds; ++round) {
    {
      const RestlessFiles files(folders_, seed + round);
      playRound(monkey, events / kRounds);
      changes += files.changes();
    }
    // Pictures that Qt keeps for later, and what was copied, are nobody's growth.
    QPixmapCache::clear();
    QGuiApplication::clipboard()->clear();
    bytesAtLast = allocatedBytes();
    std::printf("round %zu: %zu KB in use, %zu descriptors\n", round + 1, bytesAtLast / 1024,
                openDescriptors());
    std::fflush(stdout);
    // What a library sets up when it is first used is no growth.
    if (round == kRounds / 2) {
      bytesAtFirst = bytesAtLast;
      descriptorsAtFirst = openDescriptors();
    }
  }
  std::printf(
      "%zu events in %zu starts, %zu imports, %zu saved lists, %zu changes of files; "
      "longest gap %lld ms (%s); %zu KB in use halfway, %zu KB at the end\n",
      made_, starts_, imports_, savedLists_, changes,
      static_cast<long long>(monkey.longestGap().count()), monkey.longestWork().c_str(),
      bytesAtFirst / 1024, bytesAtLast / 1024);
  for (const auto& [deed, times] : monkey.deeds()) std::printf("%s %zu, ", deed.c_str(), times);
  for (const auto& errand : monkey.errands()) {
    std::printf("errand %s done %zu times, ", errand->name(), errand->done());
  }
  std::printf("\n");
  EXPECT_GT(made_, events / 2);
  EXPECT_GT(changes, 10U);
  if (events >= kUsualEvents) {
    for (const char* deed : {"click", "drag", "wheel", "key", "type", "resize", "drop", "leave"}) {
      EXPECT_TRUE(monkey.deeds().contains(deed)) << deed;
    }
    for (const auto& errand : monkey.errands()) EXPECT_GT(errand->done(), 0U) << errand->name();
    EXPECT_GT(imports_, 0U);
    EXPECT_GT(savedLists_, 0U);
  }
  EXPECT_LT(monkey.longestGap(), kLongestGap) << monkey.longestWork();
  EXPECT_LE(openDescriptors(), descriptorsAtFirst) << namesOfDescriptors();
  EXPECT_LT(bytesAtLast, bytesAtFirst + bytesAtFirst / 20 + kSlack);
  EXPECT_THAT(filesBelow(outside_), IsEmpty());
  for (const fs::directory_entry& entry : fs::directory_iterator(folders_.base)) {
    EXPECT_TRUE(foldersBefore.contains(entry.path())) << entry.path();
  }
  for (const std::string& file : filesBelow(folders_.logs)) {
    EXPECT_TRUE(before.contains(file)) << "the program writes no logs: " << file;
  }
}

}  // namespace
}  // namespace vel::test
