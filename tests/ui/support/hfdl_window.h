#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "hfdl/hfdl_row.h"
#include "hfdl/ui/hfdl_browser.h"
#include "tests/ui/support/log_window.h"

namespace vel::test {

/// The HFDL browser as a user reaches it from the ACARS browser, over a small
/// base folder of its own that a test changes before start().
class HfdlWindowTest : public LogWindowTest {
 protected:
  static constexpr const char* kLog = "202601020000_HFDL_FMT.log";
  static constexpr const char* kEndOfSubRecord = "  ..............................";

  HfdlWindowTest();

  void setBrowsers() override;
  /// Starts the program, waits until its main window is shown, and switches to
  /// the HFDL browser.
  void start();

  [[nodiscard]] HfdlBrowser& window() const { return dynamic_cast<HfdlBrowser&>(browser()); }

  [[nodiscard]] std::string address() const { return caption("Frame1"); }
  [[nodiscard]] std::string flight() const { return caption("Frame2"); }
  /// The five boxes of the aircraft frame, joined by "|".
  [[nodiscard]] std::string aircraft() const;
  /// Departure, destination and remark, joined by "|".
  [[nodiscard]] std::string route() const;
  [[nodiscard]] bool isShown(const char* name) const { return find<QWidget>(name).isVisible(); }

  /// A log whose messages hold one aircraft each: "address registration flight",
  /// "-" for a line that is missing.
  void writeAircraftLog(std::string_view name, std::initializer_list<std::string_view> aircraft);

 private:
  [[nodiscard]] std::string caption(const char* frame) const;
};

}  // namespace vel::test
