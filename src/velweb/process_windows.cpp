#include <array>
#include <cstdlib>
#include <thread>
#include <utility>

#include <windows.h>
#include <shellapi.h>
#include <tlhelp32.h>

#include "core/platform.h"
#include "velweb/process.h"

namespace vel {
namespace {

bool startedBefore(HANDLE first, HANDLE second) {
  std::array<FILETIME, 2> starts{};
  FILETIME ignored{};
  return GetProcessTimes(first, &starts[0], &ignored, &ignored, &ignored) != 0 &&
         GetProcessTimes(second, &starts[1], &ignored, &ignored, &ignored) != 0 &&
         CompareFileTime(&starts[0], &starts[1]) <= 0;
}

// The process that started this one; null where it has ended already. Numbers
// are given again: a process that began later is another one.
HANDLE parentProcess() {
  HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  if (all == INVALID_HANDLE_VALUE) return nullptr;
  DWORD number = 0;
  PROCESSENTRY32W each{};
  each.dwSize = sizeof each;
  for (BOOL found = Process32FirstW(all, &each); found != 0; found = Process32NextW(all, &each)) {
    if (each.th32ProcessID == GetCurrentProcessId()) number = each.th32ParentProcessID;
  }
  CloseHandle(all);
  HANDLE parent = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, number);
  if (parent == nullptr) return nullptr;
  if (startedBefore(parent, GetCurrentProcess())) return parent;
  CloseHandle(parent);
  return nullptr;
}

}  // namespace

std::vector<std::string> processArguments(int, const char* const*) {
  // The arguments of main() have been through a code page.
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(platform::utf8FromPath(wide[i]));
  LocalFree(static_cast<void*>(wide));
  return arguments;
}

void whenParentEnds(std::function<void()> ended) {
  if (HANDLE parent = parentProcess(); parent != nullptr) {
    std::thread([parent, ended] {
      WaitForSingleObject(parent, INFINITE);
      ended();
    }).detach();
  }
  std::thread([ended = std::move(ended)] {
    std::array<char, 64> ignored{};
    DWORD count = 0;
    HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    while (ReadFile(input, ignored.data(), static_cast<DWORD>(ignored.size()), &count, nullptr) !=
               0 &&
           count > 0) {
    }
    ended();
  }).detach();
}

void endAtOnce() {
  TerminateProcess(GetCurrentProcess(), EXIT_SUCCESS);
  std::abort();
}

void waitForever() {
  while (true) Sleep(INFINITE);
}

}  // namespace vel
