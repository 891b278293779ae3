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
  /// `lookUpCaption` is what Label7 says while a look-up runs.
  BusyLabels(const QString& lookUpCaption, QWidget* parent);

  /// Shows Label7 for a read, whatever else it is shown for, until the read ends.
  void setReading(bool reading);
  /// Shows Label7 for a look-up.
  void showProcessing();
  /// Shows Label7 for a rewrite: "Processing" in every window.
  void showRewriting();
  /// Ends both.
  void hideProcessing();

  /// Hides "Processing", shows "Complete" and starts the timer that hides it.
  void showComplete();

 private:
  void show(const QString& caption);

  QString lookUpCaption_;
  QLabel* processing_;  // Label7
  QLabel* complete_;    // Label6
  QTimer* timer_;       // Timer1
  bool isReading_ = false;
};

}  // namespace vel
