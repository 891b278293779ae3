// Stands for a program that the desktop opens something with: writes down how
// it was started.
//
//   opened_with OUT TARGET    writes to OUT: the number of the arguments behind
//                             OUT, the working folder, the show command and
//                             TARGET, a line each, in UTF-8

#include <fstream>

#include <windows.h>
#include <shellapi.h>

#include "core/platform.h"

int main() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  if (count < 2) return 2;
  const std::filesystem::path out = words[1];
  std::filesystem::path part = out;
  part += L".part";
  STARTUPINFOW start{};
  GetStartupInfoW(&start);
  {
    std::ofstream file(part, std::ios::binary);
    file << count - 2 << '\n'
         << vel::platform::utf8FromPath(std::filesystem::current_path()) << '\n'
         << start.wShowWindow << '\n';
    for (int i = 2; i < count; ++i) file << vel::platform::utf8FromPath(words[i]);
    if (!file.flush()) return 1;
  }
  std::filesystem::rename(part, out);
  LocalFree(static_cast<void*>(words));
  return 0;
}
