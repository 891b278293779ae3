#pragma once

#include <cstdio>

namespace vel {

/// Where the program was started from: what it prints is seen there, in UTF-8 as
/// long as this lives. A program with windows has no console on Windows, so it
/// joins that of its parent; what goes to a file or a pipe already stays there.
/// One implementation for each platform.
class CallersConsole {
 public:
  CallersConsole();
  CallersConsole(const CallersConsole&) = delete;
  CallersConsole& operator=(const CallersConsole&) = delete;
  // It has something to give back on Windows.
  ~CallersConsole();  // NOLINT(performance-trivially-destructible)

  [[nodiscard]] std::FILE* output() const { return output_; }
  [[nodiscard]] std::FILE* errors() const { return errors_; }

 private:
  std::FILE* output_ = stdout;
  std::FILE* errors_ = stderr;
  unsigned encoding_ = 0;  ///< what the console had, 0 where none was joined
};

}  // namespace vel
