#pragma once

#include <QWidget>

#include "core/context.h"

namespace vel {

/// What the two chart windows have in common: they are loaded when they are
/// opened, and unloaded when they are closed.
class ChartWindow : public QWidget {
  Q_OBJECT

 public:
  /// The program outlives the window.
  explicit ChartWindow(const Context& context);

  /// Brings the window to the front; loads it first unless it is open already.
  void open();

  /// Runs once each time the window is opened, before it is shown.
  virtual void Form_Load() = 0;
  /// Runs when the window is shown and whenever it becomes the active one.
  virtual void Form_Activate() = 0;

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

  [[nodiscard]] const Context& context() const { return context_; }
  [[nodiscard]] Desktop& desktop() const { return context_.desktop; }
  /// False once the window was closed or the program ends: what was under way
  /// stops then.
  [[nodiscard]] bool isOpen() const { return open_ && !desktop().isEnding(); }

 private:
  void activateSoon();

  const Context& context_;
  bool open_ = false;
};

}  // namespace vel
