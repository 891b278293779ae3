#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "core/result.h"

namespace vel {

/// The world outside the logic: message boxes, the end of the program, the
/// desktop's opener, the clipboard and the time. Windows and logic get it by
/// reference; the program has one on Qt, the tests a recording one. Every text
/// is UTF-8.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Shows a message box with an OK button and waits for it.
  virtual void showMessage(const std::string& text) = 0;

  /// Shows a message box with Retry and Cancel; true for Retry.
  virtual bool askRetry(const std::string& text) = 0;

  /// Shows a message box with Yes and No; true for Yes.
  virtual bool askYesNo(const std::string& text) = 0;

  /// Asks the program to end with this exit status and without saving
  /// anything. Returns: the caller then returns too, as fast as it can.
  virtual void endProgram(int status) = 0;

  /// True once endProgram was called: nothing more may be written or shown.
  [[nodiscard]] virtual bool isEnding() const = 0;

  /// Opens a web address or a file with the program that the desktop has for
  /// it. The target reaches that program as one argument, byte for byte.
  /// 33 or more is success, 2 a file that does not exist, 31 no program.
  virtual int open(const std::string& target) = 0;

  [[nodiscard]] virtual std::string clipboardText() = 0;
  virtual void setClipboardText(const std::string& text) = 0;

  /// The local wall-clock time.
  [[nodiscard]] virtual std::chrono::local_seconds now() = 0;

  /// A clock that never goes back, for how long something has stood or taken.
  [[nodiscard]] virtual std::chrono::steady_clock::time_point moment() = 0;

  /// Takes one line of the run log; see WriteRunLog.
  virtual void runLog(std::string_view line) = 0;
};

/// The fixed points of start-up and of the log readers report here, so that a
/// run log can be switched on in one place. In this version nothing is written.
inline void WriteRunLog(Desktop& desktop, std::string_view line) { desktop.runLog(line); }

/// Shows the error's text and ends the program with exit status 1.
inline void endWithError(Desktop& desktop, const Error& error) {
  desktop.showMessage(error.text());
  desktop.endProgram(1);
}

}  // namespace vel
