#pragma once

#include "app/ui/common_place.h"
#include "core/context.h"

namespace vel {

class BrowserWindow;

/// What a browser needs of the program around it.
class BrowserFrame {
 public:
  virtual ~BrowserFrame() = default;

  /// What every window works with.
  [[nodiscard]] virtual const Context& context() const = 0;

  /// The browsers' common place on the screen.
  [[nodiscard]] virtual CommonPlace& place() = 0;

  /// Hides one browser and shows the other one in its place.
  virtual void switchBrowser(const BrowserWindow& from) = 0;
  [[nodiscard]] virtual bool hasOtherBrowser() const = 0;

  /// More rows show. The splash tells the rows of both browsers as long as more
  /// than `untilReads` first reads have to end.
  virtual void rowsRead(int untilReads) = 0;
  /// A read has ended.
  virtual void readEnded() = 0;

  /// The tables were changed by something else than a browser's editors: both
  /// browsers show what they say now.
  virtual void tablesChanged() = 0;

  /// A browser is being closed: closes every window, saves the settings and ends
  /// the program.
  virtual void unload(BrowserWindow& closing) = 0;
};

}  // namespace vel
