#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <zlib.h>

#include "core/file.h"

namespace vel::test {

/// The bytes as one gzip member.
inline std::string gzipped(std::string_view bytes) {
  z_stream stream{};
  constexpr int kGzipOnly = 16;
  EXPECT_EQ(
      deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, kGzipOnly + MAX_WBITS, 8, Z_DEFAULT_STRATEGY),
      Z_OK);
  std::string packed(deflateBound(&stream, static_cast<uLong>(bytes.size())) + 64, '\0');
  std::string copy(bytes);
  stream.next_in = reinterpret_cast<Bytef*>(copy.data());
  stream.avail_in = static_cast<uInt>(copy.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  packed.resize(packed.size() - stream.avail_out);
  deflateEnd(&stream);
  return packed;
}

/// An open database of a test.
class TestDatabase {
 public:
  explicit TestDatabase(const std::filesystem::path& file) {
    EXPECT_EQ(sqlite3_open(toUtf8(file).c_str(), &handle_), SQLITE_OK);
  }
  TestDatabase(const TestDatabase&) = delete;
  TestDatabase& operator=(const TestDatabase&) = delete;
  ~TestDatabase() { sqlite3_close(handle_); }

  void run(const std::string& sql) {
    EXPECT_EQ(sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(handle_);
  }

 private:
  sqlite3* handle_ = nullptr;
};

/// A BaseStation database with those rows of its columns ModeS, Registration,
/// ICAOTypeCode and OperatorFlagCode: "('3482D8','EC-OLF','B789','WHL')".
inline void writeBaseStation(const std::filesystem::path& file, const std::string& rows) {
  TestDatabase database(file);
  database.run(
      "CREATE TABLE Aircraft (AircraftID INTEGER PRIMARY KEY, ModeS VARCHAR(6) NOT NULL UNIQUE, "
      "Registration VARCHAR(20), ICAOTypeCode VARCHAR(10), Type VARCHAR(40), "
      "OperatorFlagCode VARCHAR(20))");
  database.run(
      "INSERT INTO Aircraft (ModeS, Registration, ICAOTypeCode, OperatorFlagCode) VALUES " + rows);
}

}  // namespace vel::test
