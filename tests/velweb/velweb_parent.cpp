// Stands for the program that starts the service, to be killed by a test.
//
//   velweb_parent          starts velweb, writes its port and its number and waits
//   velweb_parent held     the same, and another copy of itself, which inherits
//                          the pipe's end, holds that open
//   velweb_parent hold     is that other copy: waits

#include <iostream>
#include <string>
#include <vector>

#include <windows.h>

#include "core/platform.h"
#include "tests/velweb/velweb_process.h"

namespace {

// Ends by itself, should no test end it.
constexpr DWORD kLongestWait = 60'000;

bool startHolder(std::intptr_t pipe) {
  if (SetHandleInformation(reinterpret_cast<HANDLE>(pipe), HANDLE_FLAG_INHERIT,
                           HANDLE_FLAG_INHERIT) == 0) {
    return false;
  }
  std::wstring program(MAX_PATH, L'\0');
  program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
  std::wstring command = L'"' + program + L"\" hold";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION made{};
  return CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                        nullptr, &start, &made) != 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string how = argc > 1 ? argv[1] : "";
  if (how == "hold") {
    Sleep(kLongestWait);
    return 0;
  }
  const vel::test::VelwebProcess velweb({});
  if (how == "held" && !startHolder(velweb.pipe())) return 1;
  std::cout << velweb.port() << ' ' << GetProcessId(reinterpret_cast<HANDLE>(velweb.process()))
            << std::endl;
  Sleep(kLongestWait);
  return 0;
}
