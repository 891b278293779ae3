// Several programs at once on the tables of one base folder.

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/file.h"
#include "tables/tables.h"
#include "tests/support/driven_rewrite.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using testing::ElementsAre;

constexpr int kEditsEach = 200;
constexpr std::chrono::milliseconds kBriefly{1};

/// Another process; its exit status says how it went.
class OtherProgram {
 public:
  explicit OtherProgram(const std::function<int()>& run) : id_(fork()) {
    if (id_ == 0) _exit(run());
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram() {
    if (id_ > 0) static_cast<void>(exitStatus());
  }

  int exitStatus() {
    int status = 0;
    const bool waited = id_ > 0 && waitpid(id_, &status, 0) == id_;
    id_ = -1;
    return waited && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t id_;
};

/// Takes a rewrite to its end, as one who presses Retry again and again.
RewriteOutcome patiently(ReferenceTableRewrite& rewrite) {
  while (true) {
    const RewriteOutcome outcome = rewrite.next();
    if (outcome == RewriteOutcome::busy || outcome == RewriteOutcome::held) {
      std::this_thread::sleep_for(kBriefly);
    } else if (outcome != RewriteOutcome::more) {
      return outcome;
    }
  }
}

std::string flightOf(int program, int edit) {
  return "P" + std::to_string(program) + "E" + std::to_string(edit);
}

TEST(TwoPrograms, HundredsOfRewritesAtOnceLoseNothingAndLookUpsNeverMissTheTable) {
  const test::TemporaryBase base;
  base.writeData("FLIGHT.csv", {"JL0012,RJTTKLAX,-"});
  const auto edits = [&base](int program) {
    for (int i = 0; i < kEditsEach; ++i) {
      ReferenceTableRewrite rewrite(base.folders, Encoding::codePage932(),
                                    flightEdit(flightOf(program, i), {"RJTT", "KLAX", "-"}));
      if (patiently(rewrite) != RewriteOutcome::done) return 1;
    }
    return 0;
  };
  OtherProgram first([&] { return edits(1); });
  OtherProgram second([&] { return edits(2); });
  OtherProgram reader([&] {
    const Tables tables(base.folders, Encoding::codePage932());
    for (std::string last; last != flightOf(1, kEditsEach - 1);) {
      const auto route = tables.flightRoute("JL0012");
      if (!route || !route->has_value()) return 1;
      const auto end = tables.flightRoute(flightOf(1, kEditsEach - 1));
      if (!end) return 1;
      if (end->has_value()) last = flightOf(1, kEditsEach - 1);
    }
    return 0;
  });
  EXPECT_EQ(first.exitStatus(), 0);
  EXPECT_EQ(second.exitStatus(), 0);
  EXPECT_EQ(reader.exitStatus(), 0);
  const Tables tables(base.folders, Encoding::codePage932());
  for (int program = 1; program <= 2; ++program) {
    for (int i = 0; i < kEditsEach; ++i) {
      EXPECT_TRUE(tables.flightRoute(flightOf(program, i)).value().has_value())
          << flightOf(program, i);
    }
  }
  EXPECT_THAT(listFolder(base.folders.data).value(), ElementsAre("FLIGHT.bak", "FLIGHT.csv"));
}

TEST(TwoPrograms, ARewriteWaitsAsForAHeldTableWhileAnotherOneRuns) {
  const test::TemporaryBase base;
  base.writeData("aircraft.csv", {"A,1"});
  base.writeData("FLIGHT.csv", {"A,RJTTKLAX,-"});
  const Encoding encoding = Encoding::codePage932();
  ReferenceTableRewrite first(base.folders, encoding, equipmentEdit("A", "2"));
  ASSERT_EQ(first.next(), RewriteOutcome::more);
  ASSERT_EQ(first.next(), RewriteOutcome::more);

  test::RecordingDesktop desktop;
  int asked = 0;
  desktop.onRetry = [&] {
    EXPECT_FALSE(fileExists(base.folders.data / "FLIGHT.$$$"));
    if (++asked == 3) {
      EXPECT_EQ(first.next(), RewriteOutcome::done);
    }
    return true;
  };
  EXPECT_EQ(test::drive(desktop, base.folders, encoding, flightEdit("B", {"RJTT", "KLAX", "-"})),
            test::DrivenRewrite::done);
  EXPECT_THAT(desktop.messages, ElementsAre(kTableHeld, kTableHeld, kTableHeld));
  EXPECT_EQ(base.data("aircraft.csv"), "A,2\r\n");
  EXPECT_EQ(base.data("FLIGHT.csv"), "A,RJTTKLAX,-\r\nB,RJTTKLAX,-\r\n");
}

TEST(TwoPrograms, CancelEndsTheSecondOneWithNothingWritten) {
  const test::TemporaryBase base;
  base.writeData("aircraft.csv", {"A,1"});
  const std::optional<FolderLock> other = FolderLock::take(base.folders.data);
  ASSERT_TRUE(other.has_value());
  test::RecordingDesktop desktop;
  EXPECT_EQ(test::drive(desktop, base.folders, Encoding::codePage932(), equipmentEdit("A", "2")),
            test::DrivenRewrite::programEnds);
  EXPECT_THAT(desktop.messages, ElementsAre(kTableHeld));
  EXPECT_EQ(desktop.exitStatus, 1);
  EXPECT_THAT(listFolder(base.folders.data).value(), ElementsAre("aircraft.csv"));
  EXPECT_EQ(base.data("aircraft.csv"), "A,1\r\n");
}

TEST(TwoPrograms, AProgramThatWasKilledLeavesNoLockBehind) {
  const test::TemporaryBase base;
  base.writeData("aircraft.csv", {"A,1"});
  OtherProgram killed([&] {
    ReferenceTableRewrite rewrite(base.folders, Encoding::codePage932(), equipmentEdit("A", "2"));
    if (rewrite.next() != RewriteOutcome::more || rewrite.next() != RewriteOutcome::more) return 1;
    _exit(7);
  });
  EXPECT_EQ(killed.exitStatus(), 7);
  EXPECT_TRUE(fileExists(base.folders.data / "aircraft.$$$"));
  ReferenceTableRewrite rewrite(base.folders, Encoding::codePage932(), equipmentEdit("A", "3"));
  EXPECT_EQ(patiently(rewrite), RewriteOutcome::done);
  EXPECT_EQ(base.data("aircraft.csv"), "A,3\r\n");
}

TEST(TwoPrograms, AStartBetweenTheRenamesOfAnotherProgramLeavesThemToIt) {
  const test::TemporaryBase base;
  test::writeBytes(base.folders.data / "aircraft.$$$", "new");
  test::writeBytes(base.folders.data / "aircraft.bak", "old");
  {
    const std::optional<FolderLock> other = FolderLock::take(base.folders.data);
    ASSERT_TRUE(other.has_value());
    recoverTables(base.folders);
    EXPECT_FALSE(fileExists(base.folders.data / "aircraft.csv"));
  }
  recoverTables(base.folders);
  EXPECT_EQ(base.data("aircraft.csv"), "new");
}

}  // namespace
}  // namespace vel
