#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "core/folders.h"

namespace vel::bench {

/// The text of a printf format, up to 255 bytes.
template <typename... Values>
std::string formatted(const char* form, Values... values) {
  char text[256];
  std::snprintf(text, sizeof text, form, values...);
  return text;
}

/// Ends the program when the file cannot be written.
inline void writeFile(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  file.close();
  if (!file) {
    std::fprintf(stderr, "cannot write %s\n", path.string().c_str());
    std::exit(1);
  }
}

/// A busy day of HFDL, the same every time: a log of 10,000 sub-records, and an
/// ICAO24 and a flight table of 20,000 lines each, in which nine of ten stand.
class HfdlDayFiles {
 public:
  static constexpr int kTableLines = 20000;
  static constexpr int kSubRecords = 10000;
  static constexpr int kSubRecordsOfPart = 100;

  /// Writes the files; the folders are there.
  explicit HfdlDayFiles(const Folders& folders) {
    writeTables(folders);
    writeLog(folders);
  }

  [[nodiscard]] const std::filesystem::path& log() const { return log_; }

  /// The same log in files of kSubRecordsOfPart each. No browser lists them.
  [[nodiscard]] const std::vector<std::filesystem::path>& parts() const { return parts_; }

  /// Bytes that each record's look-ups have to pass: to the end of the line
  /// that is found, or all.
  [[nodiscard]] const std::vector<std::size_t>& addressBytes() const { return addressBytes_; }
  [[nodiscard]] const std::vector<std::size_t>& flightBytes() const { return flightBytes_; }

 private:
  void writeTables(const Folders& folders) {
    std::string addresses;
    std::string flights;
    for (int i = 0; i < kTableLines; ++i) {
      addresses += formatted("%06X,AAL,AA,N%05d,B77W\r\n", addressOf(i), i);
      addressEnds_.push_back(addresses.size());
      flights += formatted("%s,RJTTKJFK,-\r\n", flightOf(i).c_str());
      flightEnds_.push_back(flights.size());
    }
    writeFile(folders.data / "ICAO24.csv", addresses);
    writeFile(folders.data / "FLIGHT.csv", flights);
  }

  void writeLog(const Folders& folders) {
    // One in ten stands in no table.
    std::uniform_int_distribution<int> line(0, kTableLines * 10 / 9);
    std::string log;
    std::size_t partBegin = 0;
    for (int i = 0; i < kSubRecords; ++i) {
      if (i % 2 == 0) {
        log += formatted("[3]------------------------[2026/11/01 %02d:%02d:%02d]\r\n", i / 417,
                         i / 7 % 60, i % 60);
        log += " DOWN LINK\r\n  GS NAME         = Agana, Guam\r\n";
      }
      const int address = line(random_);
      const int flight = line(random_);
      log += formatted("   ICAO24 ADDRESS = %06X\r\n   REGISTRATION   = N%05d\r\n",
                       addressOf(address), address);
      log += formatted("   FLIGHT ID      = %s\r\n   POSITION       = N35.123 E139.456\r\n",
                       flightOf(flight).c_str());
      log += "  ..............................\r\n";
      addressBytes_.push_back(
          addressEnds_[static_cast<std::size_t>(std::min(address, kTableLines - 1))]);
      flightBytes_.push_back(
          flightEnds_[static_cast<std::size_t>(std::min(flight, kTableLines - 1))]);
      if ((i + 1) % kSubRecordsOfPart == 0) {
        parts_.push_back(folders.logs / ("part" + std::to_string(parts_.size())));
        writeFile(parts_.back(), log.substr(partBegin));
        partBegin = log.size();
      }
    }
    log_ = folders.logs / "200111010000_HFDL_FMT.log";
    writeFile(log_, log);
  }

  static unsigned addressOf(int line) {
    return static_cast<unsigned>((line * 7919LL + 12345) % 0x1000000);
  }
  static std::string flightOf(int line) {
    return formatted("%c%c%04d", 'A' + line / 10000 % 26, 'A' + line / 1000 % 26, line % 10000);
  }

  std::mt19937 random_{20261117};
  std::filesystem::path log_;
  std::vector<std::filesystem::path> parts_;
  std::vector<std::size_t> addressEnds_;
  std::vector<std::size_t> flightEnds_;
  std::vector<std::size_t> addressBytes_;
  std::vector<std::size_t> flightBytes_;
};

}  // namespace vel::bench
