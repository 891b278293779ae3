#pragma once

#include <csignal>

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace vel::test {

/// While it lives, no file can grow beyond the size: a disk that is full.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
    EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before_), 0);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &before_), 0);
    std::signal(SIGXFSZ, oldHandler_);
  }

 private:
  void (*oldHandler_)(int);
  rlimit before_{};
};

}  // namespace vel::test
