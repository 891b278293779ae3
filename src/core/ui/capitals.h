#pragma once

#include <QLineEdit>

namespace vel {

/// A box that turns typed lower-case letters a to z into capitals.
class CapitalBox : public QLineEdit {
  Q_OBJECT

 public:
  using QLineEdit::QLineEdit;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

/// Turns all of a box's text into capitals; the cursor stays, and no change is
/// told.
void makeCapitals(QLineEdit& box);

}  // namespace vel
