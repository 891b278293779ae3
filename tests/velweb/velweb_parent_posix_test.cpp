#include <chrono>
#include <cstdlib>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/test_files.h"
#include "tests/velweb/velweb_process.h"

namespace vel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::HasSubstr;
using testing::StartsWith;

TEST(VelwebStart, WithoutTheEncodingsConverterItSaysSoAndEnds) {
  const test::TemporaryBase base;
  const auto output = base.path() / "output";
  // A sanitizer would come first otherwise, and complain.
  const std::string command = "ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD='" +
                              std::string(VEL_NO_CONVERTER) + "' '" + VEL_VELWEB + "' --base '" +
                              base.path().string() + "' >'" + output.string() + "' 2>&1";
  const int status = std::system(command.c_str());
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 1);
  const std::string said = test::readBytes(output);
  EXPECT_THAT(said, StartsWith("velweb: "));
  EXPECT_THAT(said, HasSubstr("932"));
}

// Waits until nothing listens on the port any more.
bool closesWithin(int port, seconds most) {
  const auto end = steady_clock::now() + most;
  while (steady_clock::now() < end) {
    if (!test::RawClient(port).connected()) return true;
    std::this_thread::sleep_for(milliseconds(10));
  }
  return false;
}

TEST(VelwebParent, EndsAlsoWhereAnotherProgramHoldsThePipe) {
  struct Started {
    int port;
    pid_t holder;
  };
  int report[2];
  ASSERT_EQ(::pipe(report), 0);
  const pid_t parent = ::fork();
  ASSERT_GE(parent, 0);
  if (parent == 0) {
    const test::VelwebProcess velweb({});
    const pid_t holder = ::fork();
    if (holder == 0) {
      while (true) ::pause();
    }
    const Started started{velweb.port(), holder};
    if (::write(report[1], &started, sizeof started) != sizeof started) ::_exit(1);
    while (true) ::pause();
  }
  ::close(report[1]);
  Started started{};
  ASSERT_EQ(::read(report[0], &started, sizeof started), static_cast<ssize_t>(sizeof started));
  ::close(report[0]);
  ASSERT_GT(started.holder, 0);
  EXPECT_TRUE(test::RawClient(started.port).connected());
  ASSERT_EQ(::kill(parent, SIGKILL), 0);
  ASSERT_EQ(::waitpid(parent, nullptr, 0), parent);
  EXPECT_TRUE(closesWithin(started.port, test::kLong));
  EXPECT_EQ(::kill(started.holder, SIGKILL), 0);
}

TEST(VelwebParent, EndsWhenTheProgramThatStartedItIsKilled) {
  int report[2];
  ASSERT_EQ(::pipe(report), 0);
  const pid_t parent = ::fork();
  ASSERT_GE(parent, 0);
  if (parent == 0) {
    // This process stands for the browser: it starts the service and waits.
    const test::VelwebProcess velweb({});
    const int port = velweb.port();
    if (::write(report[1], &port, sizeof port) != sizeof port) ::_exit(1);
    while (true) ::pause();
  }
  ::close(report[1]);
  int port = 0;
  ASSERT_EQ(::read(report[0], &port, sizeof port), static_cast<ssize_t>(sizeof port));
  ::close(report[0]);
  ASSERT_GT(port, 0);
  EXPECT_TRUE(test::RawClient(port).connected());
  ASSERT_EQ(::kill(parent, SIGKILL), 0);
  ASSERT_EQ(::waitpid(parent, nullptr, 0), parent);
  EXPECT_TRUE(closesWithin(port, test::kLong));
}

}  // namespace
}  // namespace vel
