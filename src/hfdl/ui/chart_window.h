#pragma once

#include <QWidget>

#include "core/context.h"

namespace vel {

/// What the two chart windows have in common: they are loaded when they are
/// opened, and unloaded when they are closed.
class ChartWindow : public QWidget {
  Q_OBJECT

 public:
  /// The context outlives the window.
  explicit ChartWindow(const Context& context);

  /// Brings the window to the front; prepares it first unless it is open
  /// already.
  void open();

  /// Runs when the window is shown and whenever it becomes the active one.
  virtual void whenActivated() = 0;

 protected:
  /// Runs once each time the window is opened, before it is shown.
  virtual void whenOpened() = 0;
  /// Ends what is under way.
  virtual void whenClosed() = 0;

  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

  [[nodiscard]] const Context& context() const { return context_; }
  [[nodiscard]] Desktop& desktop() const { return context_.desktop; }

 private:
  const Context& context_;
  bool open_ = false;
};

}  // namespace vel
