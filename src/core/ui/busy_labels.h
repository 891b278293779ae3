#pragma once

#include <QLabel>
#include <QTimer>
#include <QWidget>

namespace vel {

/// The two words beside a browser's details: "Processing" while a look-up or a
/// rewrite runs, "Complete" for a moment after a table was rewritten.
class BusyLabels : public QWidget {
  Q_OBJECT

 public:
  /// `processingCaption` is what Label7 says.
  BusyLabels(const QString& processingCaption, QWidget* parent);

  void showProcessing();
  void hideProcessing();

  /// Hides "Processing", shows "Complete" and starts the timer that hides it.
  void showComplete();

  /// Hides "Complete".
  void Timer1_Timer();

 private:
  QLabel* processing_;  // Label7
  QLabel* complete_;    // Label6
  QTimer* timer_;       // Timer1
};

}  // namespace vel
