#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/types.h>

#include "tests/ui/web/running_services.h"

namespace vel::test {

std::vector<long long> runningServices(const std::string& programFolder) {
  std::vector<long long> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
    std::ifstream file(entry.path() / "cmdline", std::ios::binary);
    const std::string command((std::istreambuf_iterator<char>(file)), {});
    // A process that has ended but is not yet collected has no command.
    if (command.starts_with(std::string(VEL_VELWEB) + '\0') &&
        command.find(programFolder) != std::string::npos) {
      found.push_back(std::stoll(entry.path().filename().string()));
    }
  }
  return found;
}

bool killProcess(long long number) { return kill(static_cast<pid_t>(number), SIGKILL) == 0; }

}  // namespace vel::test
