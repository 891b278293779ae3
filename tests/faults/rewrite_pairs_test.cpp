// Two processes rewrite the same table in the same moment, or one imports into
// it, hundreds of times: neither loses a line of the other's, or any other.

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/file.h"
#include "exchange/import_command.h"
#include "tables/rewrite.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

constexpr int kPairs = 60;  // of each table
constexpr int kOtherLines = 200;

/// As many as the table keeps, so that lines are carried as they are.
std::size_t keptFields(Table table) {
  if (table == Table::icao24) return 5;
  return table == Table::flight || table == Table::letter ? 3 : 2;
}

std::string recordOf(const std::string& key) { return key + ",RJTTKLAX,x,y,z"; }

/// The part of a record that the table keeps.
std::string keptOf(Table table, const std::string& record) {
  std::size_t end = 0;
  for (std::size_t i = 0; i < keptFields(table) && end != std::string::npos; ++i) {
    end = record.find(',', i == 0 ? 0 : end + 1);
  }
  return record.substr(0, end);
}

std::multiset<std::string> linesOf(const std::filesystem::path& file) {
  std::multiset<std::string> lines;
  const std::string bytes = test::readBytes(file);
  for (const std::string_view line : split(bytes, '\n')) {
    if (!line.empty()) lines.emplace(line.substr(0, line.size() - 1));
  }
  return lines;
}

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

/// Imports until no other program is in the way any more.
int importPatiently(const Folders& folders, const std::filesystem::path& file, Table table) {
  const ImportCommand command{file, {.table = table, .all = true}, false};
  std::FILE* const words = std::fopen("/dev/null", "w");
  // That each waits a while for the other is a part of it.
  constexpr int kTries = 20;
  int status = 1;
  for (int i = 0; i < kTries && status != 0; ++i) {
    status = runImport(folders, command, words, words);
  }
  static_cast<void>(std::fclose(words));
  return status;
}

/// Starts a process that waits at the gate, then does its work.
pid_t startAtGate(const std::array<int, 2>& gate, const std::function<int()>& work) {
  const pid_t id = fork();
  if (id != 0) return id;
  close(gate[1]);
  char byte = 0;
  // The gate opens for all when its other end is closed.
  while (read(gate[0], &byte, 1) > 0) {
  }
  _exit(work());
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
  const auto kept = [](const std::string& record) { return keptOf(GetParam(), record); };
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
      processes[static_cast<std::size_t>(i)] = startAtGate(gate, [&] {
        return rewritePatiently(base.folders,
                                {.table = GetParam(), .key = key, .newRecord = record});
      });
    }
    close(gate[0]);
    close(gate[1]);
    for (const pid_t process : processes) ASSERT_EQ(exitStatusOf(process), 0);
  }
  EXPECT_EQ(linesOf(file), expected);
  EXPECT_FALSE(fileExists(base.folders.data / (tableName(GetParam()) + ".$$$")));
}

/// A record that the shape of its table's own files is known by.
std::string importedOf(Table table, int number) {
  const std::string digits = std::to_string(100'000 + number);
  switch (table) {
    case Table::aircraft:
      return "JA" + digits + ",B773";
    case Table::flight:
      return "NH" + digits + ",RJTTKLAX,-";
    case Table::airport:
      return std::string("RJ") + static_cast<char>('A' + number / 26 % 26) +
             static_cast<char>('A' + number % 26) + ",Somewhere XXX";
    case Table::letter:
      return std::string(1, static_cast<char>('A' + number / 26 % 26)) +
             static_cast<char>('A' + number % 26) + ",ABC,An airline";
    case Table::icao24:
      break;
  }
  return digits + ",ABC,AB,JA" + digits + ",B773";
}

TEST_P(RewritePairs, AnImportAndAnEditKeepEachOthersRecords) {
  const test::TemporaryBase base;
  const auto file = base.folders.data / (tableName(GetParam()) + ".csv");
  std::multiset<std::string> expected;
  std::string bytes;
  for (int i = 0; i < kOtherLines; ++i) {
    const std::string line = keptOf(GetParam(), recordOf("K" + std::to_string(i)));
    expected.insert(line);
    bytes += line + "\r\n";
  }
  test::writeBytes(file, bytes);
  for (int pair = 0; pair < kPairs; ++pair) {
    // Each adds a record of its own, and both one of the same key: whoever is
    // second, the import leaves the edit's, and the edit takes the import's place.
    const std::string own = importedOf(GetParam(), 2 * pair);
    const std::string shared = importedOf(GetParam(), 2 * pair + 1);
    const std::string key = shared.substr(0, shared.find(','));
    const std::string edited = keptOf(GetParam(), recordOf(key));
    const auto importFile = base.folders.pics / "import.csv";
    test::writeBytes(importFile, own + "\r\n" + shared + "\r\n");
    expected.insert(own);
    std::array<int, 2> gate{};
    ASSERT_EQ(pipe(gate.data()), 0);
    const pid_t importing =
        startAtGate(gate, [&] { return importPatiently(base.folders, importFile, GetParam()); });
    const pid_t editing = startAtGate(gate, [&] {
      return rewritePatiently(base.folders, {.table = GetParam(), .key = key, .newRecord = edited});
    });
    close(gate[0]);
    close(gate[1]);
    ASSERT_EQ(exitStatusOf(importing), 0);
    ASSERT_EQ(exitStatusOf(editing), 0);
    expected.insert(edited);
    ASSERT_TRUE(linesOf(file).contains(edited)) << edited;
  }
  EXPECT_EQ(linesOf(file), expected);
  EXPECT_FALSE(fileExists(base.folders.data / (tableName(GetParam()) + ".$$$")));
}

INSTANTIATE_TEST_SUITE_P(Tables, RewritePairs, testing::ValuesIn(kTables), nameOf);

}  // namespace
}  // namespace vel
