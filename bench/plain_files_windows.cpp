#include <windows.h>
#include <benchmark/benchmark.h>

#include "bench/plain_files.h"

namespace vel::bench {

long processNumber() { return static_cast<long>(GetCurrentProcessId()); }

bool readPlainly(const std::filesystem::path& file, char* buffer, std::size_t size) {
  HANDLE handle = CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  DWORD count = 0;
  BOOL good = TRUE;
  while ((good = ReadFile(handle, buffer, static_cast<DWORD>(size), &count, nullptr)) != 0 &&
         count > 0) {
    benchmark::DoNotOptimize(buffer);
    benchmark::ClobberMemory();
  }
  return CloseHandle(handle) != 0 && good != 0;
}

bool copyPlainly(const std::filesystem::path& from, const std::filesystem::path& to) {
  return CopyFileW(from.c_str(), to.c_str(), FALSE) != 0;
}

}  // namespace vel::bench
