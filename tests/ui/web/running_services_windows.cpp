#include <memory>

#include <windows.h>
#include <tlhelp32.h>
#include <winternl.h>

#include "core/platform.h"
#include "tests/ui/web/running_services.h"

namespace vel::test {
namespace {

struct Closed {
  void operator()(void* handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, Closed>;

template <typename T>
bool readFrom(void* process, const void* address, T& value) {
  return ReadProcessMemory(process, address, &value, sizeof value, nullptr) != 0;
}

// A process's command line, which stands in its own memory; empty for one that
// may not be looked into.
std::string commandOf(DWORD number) {
  const Handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, number));
  if (process == nullptr) return {};
  PROCESS_BASIC_INFORMATION basic{};
  PEB block{};
  RTL_USER_PROCESS_PARAMETERS parameters{};
  if (NtQueryInformationProcess(process.get(), ProcessBasicInformation, &basic, sizeof basic,
                                nullptr) != 0 ||
      !readFrom(process.get(), basic.PebBaseAddress, block) ||
      !readFrom(process.get(), block.ProcessParameters, parameters)) {
    return {};
  }
  std::wstring text(parameters.CommandLine.Length / sizeof(wchar_t), L'\0');
  if (ReadProcessMemory(process.get(), parameters.CommandLine.Buffer, text.data(),
                        parameters.CommandLine.Length, nullptr) == 0) {
    return {};
  }
  return platform::utf8FromPath(text);
}

}  // namespace

std::vector<long long> runningServices(const std::string& programFolder) {
  std::vector<long long> found;
  const Handle all(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32W each{};
  each.dwSize = sizeof each;
  for (BOOL more = Process32FirstW(all.get(), &each); more != 0;
       more = Process32NextW(all.get(), &each)) {
    if (lstrcmpiW(each.szExeFile, L"velweb.exe") == 0 &&
        commandOf(each.th32ProcessID).find(programFolder) != std::string::npos) {
      found.push_back(each.th32ProcessID);
    }
  }
  return found;
}

bool killProcess(long long number) {
  // The status that the toolkit, too, takes for a crash.
  constexpr UINT kCrashed = 0xF291;
  const Handle process(OpenProcess(PROCESS_TERMINATE, FALSE, static_cast<DWORD>(number)));
  return process != nullptr && TerminateProcess(process.get(), kCrashed) != 0;
}

}  // namespace vel::test
