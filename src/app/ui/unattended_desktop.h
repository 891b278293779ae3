#pragma once

#include <cstdio>

#include "core/ui/qt_desktop.h"

namespace vel {

/// The desktop of a program that nobody sits at: messages go to the standard
/// error output, and questions are answered with Cancel or No.
class UnattendedDesktop : public QtDesktop {
 public:
  void showMessage(const std::string& text) override { print(text); }
  bool askRetry(const std::string& text) override { return print(text); }
  bool askYesNo(const std::string& text) override { return print(text); }

 private:
  static bool print(const std::string& text) {
    std::fputs((text + "\n").c_str(), stderr);
    return false;
  }
};

}  // namespace vel
