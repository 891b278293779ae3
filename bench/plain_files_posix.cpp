#include <cstdlib>
#include <string>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include "bench/plain_files.h"

namespace vel::bench {

long processNumber() { return getpid(); }

bool readPlainly(const std::filesystem::path& file, char* buffer, std::size_t size) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  ssize_t count = 0;
  while ((count = ::read(descriptor, buffer, size)) > 0) {
    benchmark::DoNotOptimize(buffer);
    benchmark::ClobberMemory();
  }
  return ::close(descriptor) == 0 && count == 0;
}

bool copyPlainly(const std::filesystem::path& from, const std::filesystem::path& to) {
  const std::string command = "cp '" + from.string() + "' '" + to.string() + "'";
  return std::system(command.c_str()) == 0;
}

}  // namespace vel::bench
