// Whatever becomes of any one system call of an import or of a list that is
// saved: each table is the old or the new one in full, the file that is imported
// stays as it is, and a list is there whole or not at all.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/file.h"
#include "exchange/import_command.h"
#include "exchange/list_saving.h"
#include "tables/table_files.h"
#include "tests/exchange/import_files.h"
#include "tests/faults/every_fault.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using test::Fault;
using test::readBytes;
using test::TracedRun;
using test::writeBytes;
using testing::Each;
using testing::ElementsAre;

constexpr const char* kOldBackup = "the table before the last rewrite\r\n";

/// A file that is imported, the tables before, and the tables after.
struct Case {
  const char* name;
  std::string file;  ///< its bytes
  std::vector<Table> filled;
  std::string before[2];  ///< of each filled table
  std::string after[2];
  bool all = true;         ///< also what no log names
  bool isMissing = false;  ///< there is no table before
};

class EveryCallOfAnImport : public testing::Test {
 protected:
  EveryCallOfAnImport() {
    // What a stream does once is done before any call is counted.
    std::fputs("first use", words_.get());
    writeBytes(base_.folders.logs / "20260102_list.csv",
               "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time\r\n"
               "NH0105,X,JA731A,RJTT,PHNL,B773,-,8:00:00\r\n");
  }

  [[nodiscard]] fs::path tableFile(Table table, const char* extension = ".csv") const {
    return data_ / (tableName(table) + extension);
  }

  void prepare(const Case& each) const {
    for (const fs::directory_entry& entry : fs::directory_iterator(data_)) fs::remove(entry.path());
    for (const Table table : kTables) writeBytes(tableFile(table), kOthers);
    for (std::size_t i = 0; i < each.filled.size(); ++i) {
      fs::remove(tableFile(each.filled[i]));
      if (!each.isMissing) writeBytes(tableFile(each.filled[i]), each.before[i]);
      writeBytes(tableFile(each.filled[i], ".bak"), kOldBackup);
    }
    writeBytes(file_, each.file);
  }

  int import(bool all) const {
    return runImport(base_.folders, {file_, {.all = all}, false}, words_.get(), words_.get());
  }

  /// Whether the tables are the new ones in full.
  std::vector<bool> look(const Case& each) const {
    std::vector<bool> isNew;
    for (std::size_t i = 0; i < each.filled.size(); ++i) {
      SCOPED_TRACE(tableName(each.filled[i]));
      const fs::path file = tableFile(each.filled[i]);
      const bool mayBeMissing = each.isMissing && !fileExists(file);
      const std::string table = mayBeMissing ? "" : readBytes(file);
      isNew.push_back(table == each.after[i]);
      EXPECT_TRUE(isNew.back() || table == each.before[i]) << "another table:\n" << table;
      const fs::path backup = tableFile(each.filled[i], ".bak");
      if (isNew.back()) {
        EXPECT_EQ(readBytes(backup), each.before[i]);
      } else if (fileExists(backup)) {
        EXPECT_EQ(readBytes(backup), kOldBackup);
      }
    }
    return isNew;
  }

  void check(const Case& each, const TracedRun& run, Fault fault) const {
    recoverTables(base_.folders);
    const std::vector<bool> isNew = look(each);
    const bool succeeds = fault == Fault::none || fault == Fault::shortCount;
    if (succeeds) {
      EXPECT_EQ(run.exitStatus, 0);
    }
    if (run.exitStatus == 0 && each.all) {
      EXPECT_THAT(isNew, Each(true));
    }
    for (const Table table : kTables) {
      if (std::find(each.filled.begin(), each.filled.end(), table) != each.filled.end()) continue;
      EXPECT_EQ(readBytes(tableFile(table)), kOthers) << tableName(table);
    }
    EXPECT_LE(listFolder(data_).value().size(), kTables.size() + 2 * each.filled.size());
    EXPECT_EQ(readBytes(file_), each.file);
    EXPECT_EQ(listFolder(base_.folders.pics).value().size(), 1U);
    // Whatever was left, the same import can be made again.
    EXPECT_EQ(import(each.all), 0);
    for (std::size_t i = 0; i < each.filled.size(); ++i) {
      EXPECT_EQ(readBytes(tableFile(each.filled[i])), each.after[i]);
    }
  }

  void tryAll(const Case& each) {
    const test::Tally tally = test::tryEveryFault(
        std::string("import, ") + each.name,
        {.prepare = [&] { prepare(each); },
         .work = [&] { return import(each.all); },
         .check = [&](const TracedRun& run, Fault fault) { check(each, run, fault); }},
        test::Faults::many);
    EXPECT_GT(tally.calls, 40U);
  }

  static constexpr const char* kOthers = "A,B,C,D,E\r\n";

  test::TemporaryBase base_;
  // Held open, so that no traced process has to look for it.
  Encoding encoding_ = Encoding::codePage932();
  fs::path data_ = base_.folders.data;
  fs::path file_ = base_.folders.pics / "file";

 private:
  struct Closer {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
  };
  std::unique_ptr<std::FILE, Closer> words_{std::fopen("/dev/null", "w")};
};

TEST_F(EveryCallOfAnImport, OfATableLeavesItOldOrNewInFull) {
  const std::vector<Case> cases = {
      {"aircraft.csv",
       "JA1,B773\r\nJA2,A320\r\n",
       {Table::aircraft},
       {"JA1,B789\r\nJA9,B738\r\n"},
       {"JA1,B789\r\nJA9,B738\r\nJA2,A320\r\n"}},
      {"FLIGHT.csv",
       "NH0105,RJTTPHNL,-\r\nNH0106,PHNLRJTT,-\r\n",
       {Table::flight},
       {"BA0117,EGLLKJFK,x\r\n"},
       {"BA0117,EGLLKJFK,x\r\nNH0105,RJTTPHNL,-\r\nNH0106,PHNLRJTT,-\r\n"}},
      {"airport.csv",
       "RJTT,Tokyo HND\r\n",
       {Table::airport},
       {"KLAX,Los Angeles LAX\r\n"},
       {"KLAX,Los Angeles LAX\r\nRJTT,Tokyo HND\r\n"}},
      {"letter.csv",
       "NH,ANA,All Nippon\r\n",
       {Table::letter},
       {"JL,JAL,Japan\r\n"},
       {"JL,JAL,Japan\r\nNH,ANA,All Nippon\r\n"}},
      {"ICAO24.csv",
       "3482D8,WHL,WH,EC-OLF,B789\r\n",
       {Table::icao24},
       {"86D108,JAL,JL,JA1,B772\r\n"},
       {"86D108,JAL,JL,JA1,B772\r\n3482D8,WHL,WH,EC-OLF,B789\r\n"}},
  };
  for (const Case& each : cases) tryAll(each);
}

TEST_F(EveryCallOfAnImport, OfATableThatWasMissingLeavesNothingElseInItsPlace) {
  tryAll({.name = "a table that was missing",
          .file = "RJTT,Tokyo HND\r\n",
          .filled = {Table::airport},
          .before = {},
          .after = {"RJTT,Tokyo HND\r\n"},
          .isMissing = true});
}

TEST_F(EveryCallOfAnImport, OfTwoTablesLeavesEachOldOrNewInFull) {
  const std::string packed =
      test::gzipped("004002;Z-WPA;B732;00;BOEING;;;\n3482d8;EC-OLF;B789;00;BOEING;;;\n");
  test::writeBaseStation(base_.folders.pics / "database",
                         "('004002','Z-WPA','B732',NULL), ('3482D8','EC-OLF','B789',NULL)");
  const std::string database = readBytes(base_.folders.pics / "database");
  fs::remove(base_.folders.pics / "database");
  for (const bool isDatabase : {false, true}) {
    tryAll({.name = isDatabase ? "a database, two tables" : "a gzip, two tables",
            .file = isDatabase ? database : packed,
            .filled = {Table::aircraft, Table::icao24},
            .before = {"JA1,B789\r\n", "86D108,JAL,JL,JA1,B772,x\r\n"},
            .after = {"JA1,B789\r\nZ-WPA,B732\r\nEC-OLF,B789\r\n",
                      "86D108,JAL,JL,JA1,B772,x\r\n004002,,,Z-WPA,B732\r\n"
                      "3482D8,,,EC-OLF,B789\r\n"}});
  }
}

TEST_F(EveryCallOfAnImport, OfWhatTheLogsNameLeavesTheTableOldOrNewInFull) {
  tryAll({.name = "what the logs name",
          .file = "Code,Name,ICAO,IATA,Location,CountryISO2\nKJFK,Kennedy,KJFK,JFK,New York,US\n"
                  "RJTT,Haneda,RJTT,HND,Tokyo,JP\n",
          .filled = {Table::airport},
          .before = {"KLAX,Los Angeles LAX\r\n"},
          .after = {"KLAX,Los Angeles LAX\r\nRJTT,Tokyo Haneda HND\r\n"},
          .all = false});
}

class EveryCallOfASavedList : public testing::TestWithParam<ListFormat> {};

TEST_P(EveryCallOfASavedList, LeavesTheOldListOrTheNewOneInFull) {
  const test::TemporaryFolder folder;
  const Encoding encoding = Encoding::codePage932();
  const fs::path file = folder / "list";
  ShownList list;
  list.title = "20260102_list";
  list.columns = {"Flight", "Remarks"};
  list.rows = 3000;
  list.cells = [](std::size_t row) {
    return std::vector<std::string>{"NH" + std::to_string(row), std::string(40, 'x') + ",=<b>"};
  };
  const auto save = [&] {
    ListSaving saving(file, GetParam(), encoding, list);
    while (true) {
      const Result<JobProgress> progress = saving.step(Job::Clock::now());
      if (!progress) return 1;
      if (*progress == JobProgress::done) return 0;
    }
  };
  std::string whole = listHead(GetParam(), encoding, list);
  for (std::size_t row = 0; row < list.rows; ++row) {
    whole += listRow(GetParam(), encoding, list.cells(row));
  }
  whole += listEnd(GetParam());
  ASSERT_GT(whole.size(), 150'000U);
  const char* const kNames[] = {"list as CSV", "list as CSV of the station", "list as HTML"};
  for (const bool isFirst : {false, true}) {
    const std::string name = kNames[static_cast<int>(GetParam())];
    const test::Tally tally = test::tryEveryFault(
        isFirst ? name + ", a new file" : name,
        {.prepare =
             [&] {
               fs::remove(file);
               if (!isFirst) writeBytes(file, "old");
             },
         .work = save,
         .check =
             [&](const TracedRun& run, Fault fault) {
               const std::string left = fileExists(file) ? readBytes(file) : "";
               EXPECT_TRUE(left == (isFirst ? "" : "old") || left == whole) << left.size();
               if (run.exitStatus == 0 || fault == Fault::shortCount) {
                 EXPECT_TRUE(left == whole);
               }
               if (!run.killed) {
                 EXPECT_LE(listFolder(folder.path()).value().size(), 1U);
               }
               EXPECT_EQ(save(), 0);
               EXPECT_TRUE(readBytes(file) == whole);
               EXPECT_THAT(listFolder(folder.path()).value(), ElementsAre("list"));
             }});
    EXPECT_GT(tally.calls, 10U);
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, EveryCallOfASavedList,
                         testing::Values(ListFormat::spreadsheet, ListFormat::station,
                                         ListFormat::html));

}  // namespace
}  // namespace vel
