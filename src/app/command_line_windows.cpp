#include <cstdio>

#include <windows.h>
#include <shellapi.h>

#include "app/options.h"
#include "core/platform.h"

namespace vel {
namespace {

// A program with windows has no console: what it prints goes to the one that it
// was started from, unless it goes elsewhere already.
void useCallersConsole() {
  const auto isUsed = [](DWORD which) {
    HANDLE handle = GetStdHandle(which);
    return handle != nullptr && handle != INVALID_HANDLE_VALUE;
  };
  if (isUsed(STD_OUTPUT_HANDLE) || isUsed(STD_ERROR_HANDLE)) return;
  if (AttachConsole(ATTACH_PARENT_PROCESS) == 0) return;
  for (FILE* stream : {stdout, stderr}) {
    // Without a console there is nothing that could be told about it.
    static_cast<void>(std::freopen("CONOUT$", "w", stream));
  }
}

}  // namespace

std::vector<std::string> commandLine(int, const char* const*) {
  useCallersConsole();
  // The arguments of main() have been through a code page.
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(platform::utf8FromPath(wide[i]));
  LocalFree(static_cast<void*>(wide));
  return arguments;
}

}  // namespace vel
