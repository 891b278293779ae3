#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "acars/list_log.h"
#include "tests/support/test_files.h"

namespace vel::test {

/// What a read of one list log gave.
struct ListRead {
  std::vector<std::string> rows;  ///< fields 1 to 8 joined by commas, as UTF-8
  MalformedLines malformed;
  std::optional<Error> error;
  bool failedLookUp = false;
  std::size_t bytesOfRows = 0;
};

/// A base folder with a letter.csv, and reads of list logs in it.
class ListLogTest : public testing::Test {
 protected:
  static constexpr const char* kHeaderLine =
      "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time";

  void SetUp() override {
    base_.writeData("letter.csv", {"JL,JAL,Japan Airlines", "NH,ANA,All Nippon Airways"});
  }

  /// Reads a log of these bytes.
  ListRead readBytesAsLog(std::string_view bytes, const ListFilter& filter = {}) {
    writeBytes(base_.folders.logs / "20260101_list.csv", bytes);
    return readLog(filter);
  }

  /// Reads a log of these lines, in code page 932 with CR LF ends.
  ListRead readLines(std::initializer_list<std::string_view> lines, const ListFilter& filter = {}) {
    return readBytesAsLog(cp932Lines(lines), filter);
  }

  ListRead readLog(const ListFilter& filter) {
    const Encoding encoding = Encoding::codePage932();
    const Tables tables(base_.folders, encoding);
    Result<InputFile> file = InputFile::open(base_.folders.logs / "20260101_list.csv");
    ListRead read;
    EXPECT_TRUE(file.ok());
    if (!file) return read;
    ListLogReader reader(*std::move(file), encoding, filter, tables);
    RowStore rows(ListLogReader::kSeparator);
    while (true) {
      // A deadline that has passed makes every step a short one.
      const Result<bool> more = reader.step(std::chrono::steady_clock::time_point(), rows);
      if (!more) read.error = more.error();
      if (!more || !*more) break;
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
      read.rows.push_back(encoding.decode(rows.row(i)));
      read.bytesOfRows += rows.row(i).size();
    }
    read.malformed = reader.malformed();
    read.failedLookUp = reader.failedLookUp();
    return read;
  }

  TemporaryBase base_;
};

}  // namespace vel::test
