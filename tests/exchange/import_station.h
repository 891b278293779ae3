#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "exchange/import_command.h"
#include "tests/support/test_files.h"

namespace vel::test {

/// A station with five empty tables, one log of each decoder, and files that are
/// imported into it.
class ImportStation : public testing::Test {
 protected:
  ImportStation() {
    for (const char* table :
         {"aircraft.csv", "FLIGHT.csv", "airport.csv", "letter.csv", "ICAO24.csv"}) {
      base_.writeData(table, {});
    }
    base_.writeLog("20260102_list.csv",
                   {"Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time",
                    "NH0105,X,JA731A,RJTT,PHNL,B773,-,8:00:00",
                    "BA0117,X,GXLEA,EGLL,JFK,A388,-,8:10:00", "short,line"});
    base_.writeLog(
        "202601020000_HFDL_FMT.log",
        {"[2]------------------------[2026/01/02 00:04:19]", "   ICAO24 ADDRESS = 3482D8",
         "   REGISTRATION   = EC-OLF", "   FLIGHT ID      = WH5744"});
  }

  [[nodiscard]] std::filesystem::path file(std::string_view name) const {
    return base_.folders.pics / name;
  }
  void writeFile(std::string_view name, std::string_view bytes) const {
    writeBytes(file(name), bytes);
  }

  /// Imports a file as the command does; what it prints is in `out` and `errors`.
  int import(std::string_view name, const ImportWish& wish = {}, bool dryRun = false) {
    std::FILE* const outFile = std::tmpfile();
    std::FILE* const errorFile = std::tmpfile();
    const int status = runImport(base_.folders, {file(name), wish, dryRun}, outFile, errorFile);
    out_ = textOf(outFile);
    errors_ = textOf(errorFile);
    return status;
  }

  /// "" or the message with which a file is refused.
  std::string refusal(std::string_view name, const ImportLimits& limits = {},
                      std::optional<Table> only = {}) {
    ImportPlanning planning(base_.folders, encoding_, file(name), {.table = only, .all = true},
                            limits);
    while (true) {
      const Result<JobProgress> progress = planning.step(Job::Clock::now());
      if (!progress) return progress.error().text();
      if (*progress == JobProgress::done) return {};
    }
  }

  /// The five tables one after another, to see that none has changed.
  [[nodiscard]] std::string allTables() const {
    std::string all;
    for (const char* table :
         {"aircraft.csv", "FLIGHT.csv", "airport.csv", "letter.csv", "ICAO24.csv"}) {
      all += readBytes(base_.folders.data / table) + '|';
    }
    return all;
  }

  TemporaryBase base_;
  Encoding encoding_ = Encoding::codePage932();
  std::string out_;
  std::string errors_;

 private:
  static std::string textOf(std::FILE* file) {
    std::string text;
    std::rewind(file);
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
    std::fclose(file);
    return text;
  }
};

}  // namespace vel::test
