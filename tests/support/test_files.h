#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "core/folders.h"

namespace vel::test {

/// A new folder for one test, removed with the object.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(std::string_view name) const;

 private:
  std::filesystem::path path_;
};

/// A base folder as users have it, with empty data, logs, EachLogs, pics and
/// program folders.
class TemporaryBase : public TemporaryFolder {
 public:
  TemporaryBase();
  Folders folders;

  /// Writes UTF-8 lines in code page 932 with CR LF ends: `writeData("FLIGHT.csv", {...})`.
  void writeData(std::string_view name, std::initializer_list<std::string_view> lines) const;
  void writeLog(std::string_view name, std::initializer_list<std::string_view> lines) const;
  /// A table's content, decoded from code page 932, line ends as they are.
  [[nodiscard]] std::string data(std::string_view name) const;
};

/// Writes bytes as they are; the test fails when that does not work.
void writeBytes(const std::filesystem::path& path, std::string_view bytes);

/// Gives a file of a folder another name, also one of the same letters in other
/// case, which not every system takes for another name.
void giveName(const std::filesystem::path& path, const std::string& name);

/// The bytes of a file; the test fails when it cannot be read.
[[nodiscard]] std::string readBytes(const std::filesystem::path& path);

/// UTF-8 to code page 932; the test fails for a text that does not fit.
[[nodiscard]] std::string cp932(std::string_view utf8);

/// The lines in code page 932, each ended by CR LF.
[[nodiscard]] std::string cp932Lines(std::initializer_list<std::string_view> lines);

}  // namespace vel::test
