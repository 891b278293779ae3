#include <windows.h>

#include "app/callers_console.h"

namespace vel {
namespace {

// True where what is printed arrives: in a file, a pipe, a console. The program
// may have been given the number of a console that it does not have.
bool arrives(DWORD stream) {
  HANDLE handle = GetStdHandle(stream);
  return handle != nullptr && handle != INVALID_HANDLE_VALUE &&
         GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

// The console in place of a stream that leads nowhere. Not every library opens
// one again that was never open.
std::FILE* consoleFor(std::FILE* stream) {
  if (std::FILE* again = std::freopen("CONOUT$", "w", stream); again != nullptr) return again;
  std::FILE* opened = std::fopen("CONOUT$", "w");
  return opened != nullptr ? opened : stream;
}

}  // namespace

CallersConsole::CallersConsole() {
  const bool outputArrives = arrives(STD_OUTPUT_HANDLE);
  const bool errorsArrive = arrives(STD_ERROR_HANDLE);
  if (outputArrives && errorsArrive) return;
  // Refused where it has one, which serves as well.
  if (AttachConsole(ATTACH_PARENT_PROCESS) == 0 && GetLastError() != ERROR_ACCESS_DENIED) return;
  encoding_ = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
  if (!outputArrives) output_ = consoleFor(stdout);
  if (!errorsArrive) errors_ = consoleFor(stderr);
}

CallersConsole::~CallersConsole() {
  static_cast<void>(std::fflush(output_));
  static_cast<void>(std::fflush(errors_));
  if (output_ != stdout) static_cast<void>(std::fclose(output_));
  if (errors_ != stderr) static_cast<void>(std::fclose(errors_));
  // It goes on being that of the program which this one was started from.
  if (encoding_ != 0) SetConsoleOutputCP(encoding_);
}

}  // namespace vel
