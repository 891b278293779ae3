#include <fstream>

#include <windows.h>
#include <gtest/gtest.h>

#include "tests/support/system_files.h"

namespace vel::test {

namespace fs = std::filesystem;

const char* const RefusedFile::kReadingError = "ERROR #70";

// A second handle refuses this process as it refuses any other.
class RefusedFile::System {
 public:
  System(const fs::path& path, Refuses refuses) {
    if (refuses == Refuses::reading) std::ofstream(path, std::ios::app) << "locked\r\n";
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const DWORD shared = refuses == Refuses::opening    ? 0
                         : refuses == Refuses::renaming ? FILE_SHARE_READ
                                                        : kShareAll;
    file_ = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, shared, nullptr, OPEN_EXISTING,
                        FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(file_, INVALID_HANDLE_VALUE) << GetLastError();
    if (refuses == Refuses::reading) {
      EXPECT_NE(LockFile(file_, 0, 0, 1 << 20, 0), 0) << GetLastError();
    }
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;
  ~System() { CloseHandle(file_); }

 private:
  HANDLE file_;
};

RefusedFile::RefusedFile(const fs::path& path, Refuses refuses)
    : system_(std::make_unique<System>(path, refuses)) {}

RefusedFile::~RefusedFile() = default;

fs::path specialFile(const fs::path& folder) { return folder / "NUL"; }

class ReadWatch::System {
 public:
  explicit System(const fs::path& file)
      : changes_(FindFirstChangeNotificationW(file.parent_path().c_str(), FALSE,
                                              FILE_NOTIFY_CHANGE_LAST_ACCESS)) {
    EXPECT_NE(changes_, INVALID_HANDLE_VALUE) << GetLastError();
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;
  ~System() { FindCloseChangeNotification(changes_); }

  [[nodiscard]] bool wasRead() const {
    // The system tells it a moment later.
    constexpr DWORD kMoment = 300;
    return WaitForSingleObject(changes_, kMoment) == WAIT_OBJECT_0;
  }

 private:
  HANDLE changes_;
};

ReadWatch::ReadWatch(const fs::path& file) : system_(std::make_unique<System>(file)) {}

ReadWatch::~ReadWatch() = default;

bool ReadWatch::wasRead() const { return system_->wasRead(); }

}  // namespace vel::test
