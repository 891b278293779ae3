#pragma once

#include <filesystem>

#include <gtest/gtest.h>
#include <unistd.h>

namespace vel::test {

/// Permissions bind every user but the privileged one: while it lives, this
/// process is somebody else, if it was privileged.
class UnprivilegedUser {
 public:
  static constexpr uid_t kUser = 65534;

  UnprivilegedUser() : before_(geteuid()) { become(); }

  /// Gives the folder with all it holds to that user first.
  explicit UnprivilegedUser(const std::filesystem::path& folder) : before_(geteuid()) {
    if (before_ == 0) {
      EXPECT_EQ(chown(folder.c_str(), kUser, kUser), 0);
      for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        EXPECT_EQ(lchown(entry.path().c_str(), kUser, kUser), 0);
      }
    }
    become();
  }

  UnprivilegedUser(const UnprivilegedUser&) = delete;
  UnprivilegedUser& operator=(const UnprivilegedUser&) = delete;
  ~UnprivilegedUser() {
    if (before_ != 0) return;
    EXPECT_EQ(seteuid(before_), 0);
  }

 private:
  void become() const {
    if (before_ != 0) return;
    EXPECT_EQ(seteuid(kUser), 0);
  }

  uid_t before_;
};

}  // namespace vel::test
