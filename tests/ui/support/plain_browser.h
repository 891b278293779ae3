#pragma once

#include "app/ui/browser_window.h"

namespace vel::test {

/// A browser without a list of its own, to stand beside the real one.
class PlainBrowser : public BrowserWindow {
 public:
  explicit PlainBrowser(BrowserFrame& frame)
      : BrowserWindow(frame, QSize(12600, 10500), QSize(3000, 3000)) {}

  void load() override {
    loads.emplace_back(isVisible());
    Q_EMIT loaded();
  }
  [[nodiscard]] int shownRows() const override { return rows; }

  int rows = 120;
  std::vector<bool> loads;  ///< whether the window was visible at each load

 protected:
  void layOutFrames(int, int) override {}
};

}  // namespace vel::test
