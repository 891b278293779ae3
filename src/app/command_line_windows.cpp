#include <windows.h>
#include <shellapi.h>

#include "app/options.h"
#include "core/platform.h"

namespace vel {

std::vector<std::string> commandLine(int, const char* const*) {
  // The arguments of main() have been through a code page.
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(platform::utf8FromPath(wide[i]));
  LocalFree(static_cast<void*>(wide));
  return arguments;
}

}  // namespace vel
