#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/system_files.h"
#include "tests/support/unprivileged_user.h"

namespace vel::test {

namespace fs = std::filesystem;

// The first byte of this process's memory can never be read.
const char* const RefusedFile::kReadingError = "ERROR #57";

class RefusedFile::System {
 public:
  System(const fs::path& path, Refuses refuses) {
    switch (refuses) {
      case Refuses::opening:
        forbid(path, fs::perms::none);
        break;
      case Refuses::reading:
        fs::create_symlink("/proc/self/mem", path);
        break;
      case Refuses::renaming:
        // A folder that may not be written refuses the renames of its files.
        forbid(path.parent_path(), static_cast<fs::perms>(0555));
        break;
    }
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;
  ~System() {
    user_.reset();
    if (!path_.empty()) fs::permissions(path_, before_);
  }

 private:
  void forbid(const fs::path& path, fs::perms perms) {
    path_ = path;
    before_ = fs::status(path).permissions();
    fs::permissions(path, perms);
    user_ = std::make_unique<UnprivilegedUser>();
  }

  fs::path path_;
  fs::perms before_ = fs::perms::none;
  std::unique_ptr<UnprivilegedUser> user_;
};

RefusedFile::RefusedFile(const fs::path& path, Refuses refuses)
    : system_(std::make_unique<System>(path, refuses)) {}

RefusedFile::~RefusedFile() = default;

fs::path specialFile(const fs::path& folder) {
  fs::path pipe = folder / "pipe";
  EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  return pipe;
}

class ReadWatch::System {
 public:
  explicit System(const fs::path& file) : events_(inotify_init1(IN_NONBLOCK)) {
    EXPECT_GE(inotify_add_watch(events_, file.c_str(), IN_OPEN), 0);
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;
  ~System() { close(events_); }

  [[nodiscard]] bool wasRead() const {
    char event[4096];
    return read(events_, event, sizeof event) > 0;
  }

 private:
  int events_;
};

ReadWatch::ReadWatch(const fs::path& file) : system_(std::make_unique<System>(file)) {}

ReadWatch::~ReadWatch() = default;

bool ReadWatch::wasRead() const { return system_->wasRead(); }

}  // namespace vel::test
