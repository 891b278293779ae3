#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "acars/ui/acars_browser.h"
#include "app/ui/program.h"
#include "hfdl/ui/activity_window.h"
#include "hfdl/ui/frequency_window.h"
#include "hfdl/ui/hfdl_browser.h"
#include "history/ui/history_wiring.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "tests/ui/looks/looks.h"
#include "tests/ui/support/window_driver.h"
#include "tour/ui/tour_window.h"
#include "web/ui/web_access.h"

namespace vel::test {

/// The whole program on a station, whose windows are looked at.
class LooksTest : public testing::Test {
 protected:
  static constexpr int kLongEnough = 120'000;

  static void SetUpTestSuite();
  static void TearDownTestSuite();

  void TearDown() override { drivenJobs = nullptr; }

  /// A sample station, made once for all tests.
  [[nodiscard]] static std::filesystem::path sampleStation();
  /// Starts the program on the station and waits until it is there.
  void start(const std::filesystem::path& station);

  static void settle();
  static QWidget& shown(const char* name);
  void look(const char* name, QWidget& window) const;
  /// Looks at a dialog that an action opens, at once or a moment later.
  void lookAtDialog(const char* name, const char* objectName, const std::function<void()>& open);
  void lookAtMenu(const char* name, const char* objectName,
                  const std::function<void()>& open) const;
  /// The same where more than a look is to be done there.
  static void inWindow(const char* objectName, const std::function<void()>& open,
                       const std::function<void(QWidget&)>& action);
  static void selectLine(LogBrowser& browser, int line);
  static QAction& entry(LogBrowser& browser, const char* words);

  Looks looks_;
  RecordingDesktop desktop_;
  std::unique_ptr<Program> program_;
  std::unique_ptr<WebAccess> web_;
  std::unique_ptr<HistoryWindows> history_;
  std::unique_ptr<ActivityWindow> activity_;
  std::unique_ptr<FrequencyWindow> frequencies_;
  TourState tour_;
  AcarsBrowser* acars_ = nullptr;
  HfdlBrowser* hfdl_ = nullptr;

 private:
  static std::unique_ptr<TemporaryFolder> folder_;
};

}  // namespace vel::test
