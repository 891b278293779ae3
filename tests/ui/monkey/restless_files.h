#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "core/folders.h"

namespace vel::test {

/// Writes a small station: tables, logs of some days, raw logs, photos, files that
/// are imported (`imports`), and a place for lists (`saved`).
void makeStation(const Folders& folders);

/// A thread that does to the files of a station what other programs might:
/// appends to them, cuts them off, replaces, deletes and restores them. At its
/// end all files are as they were.
class RestlessFiles {
 public:
  RestlessFiles(const Folders& folders, std::uint64_t seed);
  RestlessFiles(const RestlessFiles&) = delete;
  RestlessFiles& operator=(const RestlessFiles&) = delete;
  ~RestlessFiles();

  /// How often a file was changed.
  [[nodiscard]] std::size_t changes() const { return changes_; }

 private:
  struct File {
    std::filesystem::path path;
    std::string bytes;
    bool isTable;
  };

  void run(std::uint64_t seed, const std::stop_token& stop);
  static void restore(const File& file);

  std::vector<File> files_;
  std::atomic<std::size_t> changes_ = 0;
  std::jthread thread_;
};

}  // namespace vel::test
