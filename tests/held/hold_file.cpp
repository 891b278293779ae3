// Holds a file open as another program would, until its input ends.
//
//   hold_file PATH none|read   opens the file for reading and writing and shares
//                              nothing, or reading only as a spreadsheet does
//   hold_file NAME mutex       holds the instance lock of that key instead
//
// Writes "held" when it holds, or "failed" and a number.

#include <iostream>
#include <string>

#include <windows.h>

#include "core/platform.h"

namespace {

int holdUntilInputEnds() {
  std::cout << "held" << std::endl;
  std::string line;
  while (std::getline(std::cin, line)) continue;
  return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 3) return 2;
  const std::wstring how = argv[2];
  if (how == L"mutex") {
    const auto lock =
        vel::platform::lockInstance(vel::platform::utf8FromPath(std::filesystem::path(argv[1])));
    if (lock.ok() && *lock != nullptr) return holdUntilInputEnds();
    std::cout << "failed 0" << std::endl;
    return 1;
  }
  HANDLE file =
      CreateFileW(argv[1], GENERIC_READ | GENERIC_WRITE, how == L"read" ? FILE_SHARE_READ : 0,
                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    std::cout << "failed " << GetLastError() << std::endl;
    return 1;
  }
  const int status = holdUntilInputEnds();
  CloseHandle(file);
  return status;
}
