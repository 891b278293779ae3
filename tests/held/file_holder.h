#pragma once

#include <filesystem>
#include <ostream>
#include <string>

#include <windows.h>

namespace vel::test {

/// Another process that holds a file (or the instance lock of a key) from its
/// construction until release() or its end. Check isHolding() first.
class FileHolder {
 public:
  enum class Shares {
    nothing,  ///< nobody else can open the file at all
    reading,  ///< others can read it, as with a spreadsheet
    isLock,   ///< no file: the instance lock of the key given as the path
  };

  FileHolder(const std::filesystem::path& path, Shares shares);
  FileHolder(const FileHolder&) = delete;
  FileHolder& operator=(const FileHolder&) = delete;
  /// Releases, and ends the process if it does not end by itself.
  ~FileHolder();

  [[nodiscard]] bool isHolding() const { return holding_; }

  /// Lets go and waits until the process has ended; true when it did.
  bool release();

  /// Ends the process as a crash would; true when it ended.
  bool crash();

 private:
  std::string readAnswer();

  PROCESS_INFORMATION process_{};
  HANDLE input_ = nullptr;   // the end that is written here
  HANDLE output_ = nullptr;  // the end that is read here
  bool holding_ = false;
};

/// The names of the tests end in this.
inline void PrintTo(FileHolder::Shares shares, std::ostream* stream) {
  *stream << (shares == FileHolder::Shares::nothing ? "nothing" : "reading");
}

}  // namespace vel::test
