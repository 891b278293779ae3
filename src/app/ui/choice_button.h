#pragma once

#include <QPushButton>

namespace vel {

/// One of a few ways to go on: an arrow with its words in bold letters of the
/// window's own size, from the left.
class ChoiceButton : public QPushButton {
  Q_OBJECT

 public:
  ChoiceButton(const QString& text, QWidget* parent);

  /// How far the words stand from the left edge, in pixels.
  [[nodiscard]] int textIndent() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace vel
