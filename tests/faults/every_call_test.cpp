// Whatever becomes of any one system call, a table, the settings and the
// exported track are the old or the new ones in full, at the latest after the
// next start.

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "core/file.h"
#include "core/program_files.h"
#include "core/settings.h"
#include "tables/rewrite.h"
#include "tables/tables.h"
#include "tests/faults/every_fault.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using test::Fault;
using test::readBytes;
using test::TracedRun;
using test::writeBytes;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kOldBackup = "the table before the last rewrite\r\n";

/// What the next start of the program does with what it finds.
void startAgain(const Folders& folders) {
  removeLeftOvers(folders);
  recoverTables(folders);
}

/// Takes a rewrite to its end, as a user who does not try again. 0 where it is
/// done.
int rewriteOnce(const Folders& folders, const Encoding& encoding, const TableEdit& edit) {
  ReferenceTableRewrite rewrite(folders, encoding, edit);
  RewriteOutcome outcome = RewriteOutcome::more;
  while (outcome == RewriteOutcome::more) outcome = rewrite.next();
  return static_cast<int>(outcome) - static_cast<int>(RewriteOutcome::done);
}

std::string sixDigits(std::size_t number) {
  const std::string digits = std::to_string(number);
  return std::string(6 - digits.size(), '0') + digits;
}

/// The behind of a record of a table, in all the fields that are kept.
std::string fieldsOf(Table table, const std::string& type) {
  switch (table) {
    case Table::aircraft:
      return "," + type;
    case Table::flight:
      return ",RJTTKLAX," + type;
    case Table::airport:
      return "," + type + " HND";
    case Table::letter:
      return ",JAL," + type;
    case Table::icao24:
      break;
  }
  return ",JAL,JL,JA8089," + type;
}

TableEdit editOf(Table table, std::size_t record, const std::string& type) {
  const std::string key = "K" + sixDigits(record);
  return {.table = table, .key = key, .newRecord = key + fieldsOf(table, type)};
}

/// A table of so many lines, one of them perhaps edited or added.
std::string tableOf(Table table, std::size_t lines, std::size_t edited, const std::string& type) {
  const bool isEdited = !type.empty();
  std::string bytes;
  for (std::size_t i = 0; i < std::max(lines, isEdited ? edited + 1 : 0); ++i) {
    const bool isThis = isEdited && i == edited;
    bytes += "K" + sixDigits(i) + fieldsOf(table, isThis ? type : "B7" + std::to_string(i % 90));
    bytes += "\r\n";
  }
  return bytes;
}

class EveryCallOfARewrite : public testing::TestWithParam<std::tuple<Table, std::size_t>> {
 protected:
  void SetUp() override {
    old_ = tableOf(table_, lines_, edited_, "");
    new_ = tableOf(table_, lines_, edited_, "NEW1");
  }

  void prepare() {
    for (const fs::directory_entry& entry : fs::directory_iterator(data_)) fs::remove(entry.path());
    for (const Table each : kTables) {
      writeBytes(data_ / (tableName(each) + ".csv"), each == table_ ? old_ : kOthers);
    }
    writeBytes(data_ / (name_ + ".bak"), kOldBackup);
  }

  void check(const TracedRun& run, Fault fault) {
    const bool leftOver = fileExists(data_ / (name_ + ".$$$"));
    startAgain(base_.folders);
    const std::string table = readBytes(data_ / (name_ + ".csv"));
    const bool isNew = table == new_;
    EXPECT_TRUE(isNew || table == old_) << table.size() << " bytes of another table";
    // A short transfer costs nothing, and success is success.
    const bool succeeds = fault == Fault::none || fault == Fault::shortCount;
    if (run.exitStatus == 0 || succeeds) {
      EXPECT_EQ(run.exitStatus, 0);
      EXPECT_TRUE(isNew);
      EXPECT_FALSE(leftOver);
    }
    const fs::path backup = data_ / (name_ + ".bak");
    if (isNew) {
      EXPECT_EQ(readBytes(backup), old_);
    } else if (fileExists(backup)) {
      EXPECT_EQ(readBytes(backup), kOldBackup);
    }
    const std::vector<std::string> files = listFolder(data_).value();
    for (const std::string& file : files) {
      const bool isOwn = file.starts_with(name_ + ".");
      if (!isOwn) {
        EXPECT_EQ(readBytes(data_ / file), kOthers) << file;
      }
    }
    EXPECT_LE(files.size(), kTables.size() + 2);
    goesOn(isNew);
  }

  /// Whatever was left, the next edit works.
  void goesOn(bool isNew) const {
    const std::size_t added = std::max(lines_, edited_ + 1) + 1;
    const TableEdit edit = editOf(table_, added, "NEXT");
    EXPECT_EQ(rewriteOnce(base_.folders, encoding_, edit), 0);
    EXPECT_EQ(readBytes(data_ / (name_ + ".csv")), (isNew ? new_ : old_) + edit.newRecord + "\r\n");
  }

  static constexpr const char* kOthers = "A,B,C,D,E\r\n";

  test::TemporaryBase base_;
  Encoding encoding_ = Encoding::codePage932();
  Table table_ = std::get<0>(GetParam());
  std::size_t lines_ = std::get<1>(GetParam());
  std::size_t edited_ = lines_ / 2;
  std::string name_ = tableName(table_);
  fs::path data_ = base_.folders.data;
  std::string old_;
  std::string new_;
};

TEST_P(EveryCallOfARewrite, LeavesTheOldTableOrTheNewOneInFull) {
  const TableEdit edit = editOf(table_, edited_, "NEW1");
  const std::string name = name_ + ", " + std::to_string(lines_) + " lines";
  const test::Tally tally =
      test::tryEveryFault(name,
                          {.prepare = [&] { prepare(); },
                           .work = [&] { return rewriteOnce(base_.folders, encoding_, edit); },
                           .check = [&](const TracedRun& run, Fault fault) { check(run, fault); }},
                          lines_ < 100'000 ? test::Faults::all : test::Faults::sample);
  EXPECT_GT(tally.calls, 20U);
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Table, std::size_t>>& info) {
  return tableName(std::get<0>(info.param)) + "_" + std::to_string(std::get<1>(info.param));
}

INSTANTIATE_TEST_SUITE_P(Tables, EveryCallOfARewrite,
                         testing::Combine(testing::ValuesIn(kTables),
                                          testing::Values(0U, 1U, 1000U, 100'000U)),
                         nameOf);

class EveryCall : public testing::Test {
 protected:
  test::TemporaryBase base_;
  Encoding encoding_ = Encoding::codePage932();
  test::RecordingDesktop desktop_;
};

TEST_F(EveryCall, OfARecoveryLeavesItDoneOrStillToBeDone) {
  const fs::path data = base_.folders.data;
  test::tryEveryFault("recovery at the start",
                      {.prepare =
                           [&] {
                             fs::remove(data / "FLIGHT.csv");
                             writeBytes(data / "FLIGHT.$$$", "new\r\n");
                             writeBytes(data / "FLIGHT.bak", "old\r\n");
                           },
                       .work =
                           [&] {
                             recoverTables(base_.folders);
                             return 0;
                           },
                       .check =
                           [&](const TracedRun&, Fault) {
                             startAgain(base_.folders);
                             EXPECT_EQ(readBytes(data / "FLIGHT.csv"), "new\r\n");
                             EXPECT_EQ(readBytes(data / "FLIGHT.bak"), "old\r\n");
                             EXPECT_THAT(listFolder(data).value(),
                                         ElementsAre("FLIGHT.bak", "FLIGHT.csv"));
                           }});
}

TEST_F(EveryCall, OfSavingLeavesTheOldSettingsOrTheNewOnesInFull) {
  const fs::path file = settingsFile(base_.folders);
  Settings settings;
  settings.env_regDefName0 = "新しい";
  settings.env_Form1_Width = 12345;
  ASSERT_TRUE(SaveEnv(file, encoding_, settings).ok());
  const std::string after = readBytes(file);
  for (const bool isFirst : {false, true}) {
    const std::string before = isFirst ? "" : "\"env_Config\",1\r\n";
    test::tryEveryFault(isFirst ? "settings saved for the first time" : "settings",
                        {.prepare =
                             [&] {
                               fs::remove(file);
                               if (!isFirst) writeBytes(file, before);
                             },
                         .work = [&] { return SaveEnv(file, encoding_, settings).ok() ? 0 : 1; },
                         .check =
                             [&](const TracedRun& run, Fault fault) {
                               if (!run.killed) {
                                 EXPECT_FALSE(fileExists(file.string() + ".new"));
                               }
                               startAgain(base_.folders);
                               const std::string left = fileExists(file) ? readBytes(file) : "";
                               EXPECT_THAT(left, AnyOf(before, after));
                               if (run.exitStatus == 0 || fault == Fault::shortCount) {
                                 EXPECT_EQ(left, after);
                               }
                               EXPECT_LE(listFolder(base_.folders.program).value().size(), 1U);
                             }});
  }
}

TEST_F(EveryCall, OfAStartAndAnEndKeepsWhatTheSettingsHeld) {
  const fs::path file = settingsFile(base_.folders);
  Settings settings;
  settings.env_regDefUrl0 = "https://photos.example/?q=";
  settings.env_FltDefName0 = "検索";
  settings.env_regSchCmb = 3;
  settings.env_Form3_Left = 150;
  settings.env_keepCsrPos = 1;
  ASSERT_TRUE(SaveEnv(file, encoding_, settings).ok());
  const std::string before = readBytes(file);
  test::tryEveryFault(
      "settings read and saved",
      {.prepare = [&] { writeBytes(file, before); },
       .work =
           [&] {
             Settings loaded;
             const DefaultSearches defaults{"https://default.example/", "/?F="};
             static_cast<void>(LoadEnv(desktop_, file, encoding_, defaults, loaded));
             static_cast<void>(SaveEnv(file, encoding_, loaded));
             return 0;
           },
       .check =
           [&](const TracedRun&, Fault) {
             startAgain(base_.folders);
             EXPECT_EQ(readBytes(file), before);
             EXPECT_THAT(listFolder(base_.folders.program).value(), ElementsAre("vel.env"));
           }});
}

TEST_F(EveryCall, OfAnExportLeavesTheOldTrackOrTheNewOneInFull) {
  const fs::path file = kmlFile(base_.folders);
  const std::string piece(100'000, 'k');
  std::string after;
  for (int i = 0; i < 12; ++i) after += piece;
  test::tryEveryFault("exported track",
                      {.prepare = [&] { writeBytes(file, "old"); },
                       .work =
                           [&] {
                             Result<WholeFile> track = WholeFile::create(file, kKmlSuffix);
                             if (!track) return 1;
                             for (int i = 0; i < 12; ++i) {
                               if (!track->write(piece)) return 1;
                             }
                             return track->finish() ? 0 : 1;
                           },
                       .check =
                           [&](const TracedRun& run, Fault fault) {
                             startAgain(base_.folders);
                             const std::string left = readBytes(file);
                             EXPECT_TRUE(left == "old" || left == after) << left.size() << " bytes";
                             if (run.exitStatus == 0 || fault == Fault::shortCount) {
                               EXPECT_TRUE(left == after);
                             }
                             EXPECT_THAT(listFolder(base_.folders.program).value(),
                                         ElementsAre("temp.kml"));
                           }});
}

// ---- what the tests above rest on

TEST(Traced, ACallOfWhichNothingIsKnownIsReported) {
  const TracedRun run = test::runTraced([] {
    int ends[2];
    return ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends);
  });
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_FALSE(run.unknownCalls.empty());
}

TEST(Traced, WhatGoesThroughAPipeTouchesNoFile) {
  const TracedRun run = test::runTraced([] {
    int ends[2];
    char byte = 'a';
    if (::pipe2(ends, 0) != 0 || ::write(ends[1], &byte, 1) != 1) return 1;
    if (::read(ends[0], &byte, 1) != 1 || ::close(ends[0]) != 0) return 1;
    // The number is free for a file again.
    const int file = ::open("/dev/null", O_RDONLY);
    const bool isTheSame = file == ends[0];
    if (::close(file) != 0 || ::close(ends[1]) != 0) return 1;
    return isTheSame ? 0 : 2;
  });
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_THAT(run.unknownCalls, IsEmpty());
  EXPECT_THAT(run.fileCalls, ElementsAre("openat", "close"));
}

TEST(Traced, EveryKindOfFaultIsFelt) {
  const test::TemporaryFolder folder;
  const fs::path file = folder / "file";
  writeBytes(file, "old");
  const auto work = [&] { return writeWholeFile(file, ".new", "text") ? 0 : 1; };
  const TracedRun whole = test::runTraced(work);
  EXPECT_EQ(whole.exitStatus, 0);
  const auto write = std::find(whole.fileCalls.begin(), whole.fileCalls.end(), "write");
  ASSERT_NE(write, whole.fileCalls.end());
  const auto at = static_cast<std::size_t>(write - whole.fileCalls.begin());
  EXPECT_EQ(test::runTraced(work, {at, Fault::refused, ENOSPC}).exitStatus, 1);
  EXPECT_EQ(test::runTraced(work, {at, Fault::refused, EINTR}).exitStatus, 0);
  const TracedRun cut = test::runTraced(work, {at, Fault::shortCount});
  EXPECT_EQ(std::count(cut.fileCalls.begin(), cut.fileCalls.end(), "write"), 2);
  EXPECT_EQ(readBytes(file), "text");
  EXPECT_TRUE(test::runTraced(work, {at, Fault::killBefore}).killed);
  EXPECT_EQ(readBytes(file.string() + ".new"), "");
  EXPECT_TRUE(test::runTraced(work, {at, Fault::killAfter}).killed);
  EXPECT_EQ(readBytes(file.string() + ".new"), "text");
}

}  // namespace
}  // namespace vel
