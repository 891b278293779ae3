#pragma once

#include <string>
#include <vector>

#include "acars/ui/acars_browser.h"
#include "tests/ui/support/log_window.h"

namespace vel::test {

/// The ACARS browser as the program starts it, over a small base folder of its
/// own that a test changes before start().
class AcarsWindowTest : public LogWindowTest {
 protected:
  static constexpr const char* kLog = "20260102_list.csv";
  static constexpr const char* kHeaderLine =
      "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time";

  AcarsWindowTest();

  void setBrowsers() override;
  /// Starts the program and waits until its main window is shown.
  void start();

  [[nodiscard]] AcarsBrowser& window() const { return dynamic_cast<AcarsBrowser&>(browser()); }
  [[nodiscard]] std::vector<std::string> flights() const { return column(kListFlight); }
};

}  // namespace vel::test
