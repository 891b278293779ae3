// Stands for velweb where that does not come up as it should. What it does is
// in the environment, for its options are velweb's:
//
//   VEL_STAND_IN=silent    says nothing and stays
//   VEL_STAND_IN=1000      says an address after so many milliseconds and stays
//                          until its input ends
//   VEL_STAND_IN=other     says something else and ends

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

int main() {
  const char* value = std::getenv("VEL_STAND_IN");
  const std::string how = value == nullptr ? "" : value;
  if (how == "other") return std::puts("--program-folder") < 0 ? 1 : 0;
  if (how == "silent") {
    std::this_thread::sleep_for(std::chrono::seconds(60));
    return 0;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(how.c_str())));
  if (std::puts("http://127.0.0.1:9") < 0 || std::fflush(stdout) != 0) return 1;
  while (std::getchar() != EOF) {
  }
  return 0;
}
