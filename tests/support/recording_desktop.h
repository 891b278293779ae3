#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "core/desktop.h"

namespace vel::test {

/// A host that shows nothing: it keeps what it was told, and answers from what
/// a test has prepared.
class RecordingDesktop : public Desktop {
 public:
  void showMessage(const std::string& text) override {
    messages.push_back(text);
    if (onMessage) onMessage(text);
  }
  bool askRetry(const std::string& text) override {
    messages.push_back(text);
    return onRetry ? onRetry() : false;
  }
  bool askYesNo(const std::string& text) override {
    messages.push_back(text);
    return answerYes;
  }
  void endProgram(int status) override {
    ended = true;
    exitStatus = status;
  }
  [[nodiscard]] bool isEnding() const override { return ended; }
  int open(const std::string& target) override {
    opened.push_back(target);
    if (openResults.empty()) return 42;
    const int result = openResults.front();
    openResults.pop_front();
    return result;
  }
  [[nodiscard]] std::string clipboardText() override { return clipboard; }
  void setClipboardText(const std::string& text) override { clipboard = text; }
  [[nodiscard]] std::chrono::local_seconds now() override { return time; }
  [[nodiscard]] std::chrono::steady_clock::time_point moment() override {
    return std::chrono::steady_clock::now() + passed;
  }
  void runLog(std::string_view line) override { runLogLines.emplace_back(line); }

  std::vector<std::string> messages;
  std::vector<std::string> opened;
  std::vector<std::string> runLogLines;
  std::deque<int> openResults;  ///< what open() answers, one after another
  std::string clipboard;
  std::chrono::local_seconds time{};
  std::chrono::milliseconds passed{0};  ///< how much later it is than it seems
  bool answerYes = false;
  bool ended = false;
  int exitStatus = -1;
  std::function<bool()> onRetry;  ///< true for Retry; Cancel without one
  std::function<void(const std::string&)> onMessage;
};

}  // namespace vel::test
