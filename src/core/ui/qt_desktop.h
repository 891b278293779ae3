#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "core/desktop.h"

namespace vel {

/// The program's title, which every message box carries.
constexpr const char* kProgramTitle = "Database Maneger for QZ-ACARS/QZ-HFDL";

[[nodiscard]] inline QString toQString(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// The real desktop: message boxes over the active window, the platform's
/// opener, the system clipboard and clock, and the application's event loop.
class QtDesktop : public Desktop {
 public:
  void showMessage(const std::string& text) override;
  bool askRetry(const std::string& text) override;
  bool askYesNo(const std::string& text) override;
  void endProgram(int status) override;
  [[nodiscard]] bool isEnding() const override { return ending_; }
  int open(const std::string& target) override;
  [[nodiscard]] std::string clipboardText() override;
  void setClipboardText(const std::string& text) override;
  [[nodiscard]] std::chrono::local_seconds now() override;
  [[nodiscard]] std::chrono::steady_clock::time_point moment() override;
  void runLog(std::string_view line) override;

  /// The exit status that endProgram asked for; 0 until then.
  [[nodiscard]] int exitStatus() const { return exitStatus_; }

 private:
  bool ending_ = false;
  int exitStatus_ = 0;
};

/// Hands a target to the desktop's opening command as one argument, byte for
/// byte. Same results as Desktop::open. One implementation for each platform.
int openWithDesktop(const std::string& target);

}  // namespace vel
