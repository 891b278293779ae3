// Two processes rewrite the same table in the same moment, hundreds of times:
// neither loses a line of the other's, or any other.

#include <array>
#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/file.h"
#include "tables/rewrite.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

constexpr int kPairs = 60;  // of each table
constexpr int kOtherLines = 200;

/// As many as the table keeps, so that lines are carried as they are.
std::size_t fieldsOf(Table table) {
  if (table == Table::icao24) return 5;
  return table == Table::flight || table == Table::letter ? 3 : 2;
}

std::string recordOf(const std::string& key) { return key + ",RJTTKLAX,x,y,z"; }

int rewritePatiently(const Folders& folders, const TableEdit& edit) {
  ReferenceTableRewrite rewrite(folders, Encoding::codePage932(), edit);
  while (true) {
    const RewriteOutcome outcome = rewrite.next();
    if (outcome == RewriteOutcome::done) return 0;
    if (outcome == RewriteOutcome::busy || outcome == RewriteOutcome::held) {
      std::this_thread::sleep_for(std::chrono::microseconds(100));
    } else if (outcome != RewriteOutcome::more) {
      return 1;
    }
  }
}

/// Starts a process that waits at the gate, then rewrites.
pid_t startAtGate(const std::array<int, 2>& gate, const Folders& folders, const TableEdit& edit) {
  const pid_t id = fork();
  if (id != 0) return id;
  close(gate[1]);
  char byte = 0;
  // The gate opens for all when its other end is closed.
  while (read(gate[0], &byte, 1) > 0) {
  }
  _exit(rewritePatiently(folders, edit));
}

int exitStatusOf(pid_t id) {
  int status = 0;
  return waitpid(id, &status, 0) == id && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string nameOf(const testing::TestParamInfo<Table>& info) { return tableName(info.param); }

class RewritePairs : public testing::TestWithParam<Table> {};

TEST_P(RewritePairs, BothEditsAndEveryOtherLineAreThere) {
  const test::TemporaryBase base;
  const auto file = base.folders.data / (tableName(GetParam()) + ".csv");
  std::multiset<std::string> expected;
  std::string bytes;
  const std::size_t fields = fieldsOf(GetParam());
  const auto kept = [&](const std::string& record) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < fields && end != std::string::npos; ++i) {
      end = record.find(',', i == 0 ? 0 : end + 1);
    }
    return record.substr(0, end);
  };
  for (int i = 0; i < kOtherLines; ++i) {
    const std::string line = kept(recordOf("K" + std::to_string(i)));
    expected.insert(line);
    bytes += line + "\r\n";
  }
  test::writeBytes(file, bytes);
  for (int pair = 0; pair < kPairs; ++pair) {
    std::array<int, 2> gate{};
    ASSERT_EQ(pipe(gate.data()), 0);
    std::array<pid_t, 2> processes{};
    for (int i = 0; i < 2; ++i) {
      const std::string key = "P" + std::to_string(pair) + "E" + std::to_string(i);
      const std::string record = kept(recordOf(key));
      expected.insert(record);
      processes[static_cast<std::size_t>(i)] =
          startAtGate(gate, base.folders, {.table = GetParam(), .key = key, .newRecord = record});
    }
    close(gate[0]);
    close(gate[1]);
    for (const pid_t process : processes) ASSERT_EQ(exitStatusOf(process), 0);
  }
  std::multiset<std::string> lines;
  const std::string after = test::readBytes(file);
  for (const std::string_view line : split(after, '\n')) {
    if (!line.empty()) lines.emplace(line.substr(0, line.size() - 1));
  }
  EXPECT_EQ(lines, expected);
  EXPECT_FALSE(fileExists(base.folders.data / (tableName(GetParam()) + ".$$$")));
}

INSTANTIATE_TEST_SUITE_P(Tables, RewritePairs, testing::ValuesIn(kTables), nameOf);

}  // namespace
}  // namespace vel
