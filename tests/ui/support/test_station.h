#pragma once

#include "core/context.h"
#include "core/ui/event_loop_jobs.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "tests/ui/support/window_driver.h"

namespace vel::test {

/// A station with a small base folder of its own, and all that its windows
/// work with. Call use() once services.ini, if any, has been written.
class TestStation {
 public:
  TestStation() {
    jobs_.isEnding = [this] { return desktop.isEnding(); };
  }
  TestStation(const TestStation&) = delete;
  TestStation& operator=(const TestStation&) = delete;
  ~TestStation() { drivenJobs = nullptr; }

  /// Reads services.ini; the context may be used from now on.
  void use() {
    services_ = Services::load(base.folders.program / "services.ini");
    encoding_ = services_.textEncoding().value();
    drivenJobs = &jobs_;
  }

  RecordingDesktop desktop;
  TemporaryBase base;
  Settings settings;

  [[nodiscard]] const Context& context() const { return context_; }

 private:
  Services services_;
  Encoding encoding_ = Encoding::codePage932();
  EventLoopJobs jobs_;
  Context context_{desktop, base.folders, services_, encoding_, settings, jobs_};
};

}  // namespace vel::test
