#include "tests/ui/monkey/process_meter.h"

#include <ctime>
#include <filesystem>
#include <iterator>
#include <system_error>

#include <malloc.h>

// What the address sanitizer tells where it is in the program; it replaces the
// allocator that could tell otherwise.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace vel::test {

std::size_t allocatedBytes() {
  if (&__sanitizer_get_current_allocated_bytes != nullptr) {
    return __sanitizer_get_current_allocated_bytes();
  }
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

std::string namesOfDescriptors() {
  std::string names;
  std::error_code error;
  for (const auto& each : std::filesystem::directory_iterator("/proc/self/fd")) {
    names += each.path().filename().string() + ' ' +
             std::filesystem::read_symlink(each.path(), error).string() + '\n';
  }
  return names;
}

std::chrono::nanoseconds threadTime() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace vel::test
