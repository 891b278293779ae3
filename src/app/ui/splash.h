#pragma once

#include <QLabel>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace vel {

/// The window that is seen while the browsers load. Its timer drives the
/// start: `tick` is called from startTicking() until the splash is closed.
class Splash : public QWidget {
  Q_OBJECT

 public:
  explicit Splash(std::function<void()> tick);

  /// Shows "Please wait for a while.".
  void showPleaseWait();
  /// Puts a text like "FMT:120 LIST:358" into the progress label.
  void setProgress(const QString& text);
  void setInterval(int milliseconds) { timer_.setInterval(milliseconds); }
  void startTicking();
  /// Ends the ticks.
  void stop() { timer_.stop(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QLabel* pleaseWait_;
  QLabel* progress_;
  QTimer timer_;
};

}  // namespace vel
