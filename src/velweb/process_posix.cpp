#include <array>
#include <cerrno>
#include <cstdlib>
#include <thread>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "velweb/process.h"

namespace vel {

std::vector<std::string> processArguments(int argc, const char* const* argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

// The system closes the other end of the pipe even when that program is killed.
// Where a third program holds that end open, the process has another parent
// then.
void whenParentEnds(std::function<void()> ended) {
  const pid_t parent = ::getppid();
  std::thread([parent, ended = std::move(ended)] {
    constexpr int kLookMilliseconds = 1000;
    std::array<char, 64> ignored{};
    while (::getppid() == parent) {
      pollfd input{STDIN_FILENO, POLLIN, 0};
      const int ready = ::poll(&input, 1, kLookMilliseconds);
      if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
      const ssize_t count = ::read(STDIN_FILENO, ignored.data(), ignored.size());
      if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN)) break;
    }
    ended();
  }).detach();
}

void endAtOnce() { std::_Exit(EXIT_SUCCESS); }

void waitForever() {
  while (true) ::pause();
}

}  // namespace vel
