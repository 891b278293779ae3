#pragma once

#include <filesystem>
#include <memory>

/// What tests ask of the system's files: one implementation for each platform
/// (system_files_posix.cpp, system_files_windows.cpp).
namespace vel::test {

/// A file that refuses something while the object lives: for permissions, or
/// because another program holds it.
class RefusedFile {
 public:
  enum class Refuses {
    opening,   ///< "ERROR #70" where it is read
    reading,   ///< can be opened; then kReadingError
    renaming,  ///< "path/file access error" where it is renamed
  };

  /// What the program says about a file of the kind `reading`.
  static const char* const kReadingError;

  RefusedFile(const std::filesystem::path& path, Refuses refuses);
  RefusedFile(const RefusedFile&) = delete;
  RefusedFile& operator=(const RefusedFile&) = delete;
  ~RefusedFile();

 private:
  class System;
  std::unique_ptr<System> system_;
};

/// Something below the folder that can be named as a file and is none: a pipe
/// or a device.
[[nodiscard]] std::filesystem::path specialFile(const std::filesystem::path& folder);

/// Tells whether a file is ever read that lies alone in its folder.
class ReadWatch {
 public:
  explicit ReadWatch(const std::filesystem::path& file);
  ReadWatch(const ReadWatch&) = delete;
  ReadWatch& operator=(const ReadWatch&) = delete;
  ~ReadWatch();

  [[nodiscard]] bool wasRead() const;

 private:
  class System;
  std::unique_ptr<System> system_;
};

}  // namespace vel::test
