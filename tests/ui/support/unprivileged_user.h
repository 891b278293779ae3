#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>
#include <unistd.h>

namespace vel::test {

/// Permissions bind every user but the privileged one: while it lives, this
/// process is somebody else.
class UnprivilegedUser {
 public:
  UnprivilegedUser() : before_(geteuid()) {
    constexpr uid_t kNobody = 65534;
    if (before_ == 0) {
      EXPECT_EQ(seteuid(kNobody), 0);
    }
  }
  UnprivilegedUser(const UnprivilegedUser&) = delete;
  UnprivilegedUser& operator=(const UnprivilegedUser&) = delete;
  ~UnprivilegedUser() {
    if (before_ == 0) {
      EXPECT_EQ(seteuid(before_), 0);
    }
  }

 private:
  uid_t before_;
};

}  // namespace vel::test
