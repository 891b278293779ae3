#pragma once

#include <QPushButton>

namespace vel {

/// A flat button that looks like a label, shortens a long text in the middle
/// and shows it whole in its tool tip. Its text is one from outside: never a
/// shortcut, never markup. Enter and a click press it.
class ElidedButton : public QPushButton {
  Q_OBJECT

 public:
  explicit ElidedButton(QWidget* parent);

  /// The second line of the tool tip.
  void setHint(const QString& hint);
  /// Shows a text; text() is then that text, unchanged.
  void showText(const QString& text);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  QString hint_;
};

}  // namespace vel
