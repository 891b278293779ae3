#pragma once

#include <QPlainTextEdit>

namespace vel {

/// A read-only text that never shows a part of a line: one that does not fit
/// as a whole is left for scrolling.
class WholeLines : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit WholeLines(QWidget* parent);

  /// The height at which all of a text would be seen at this width.
  [[nodiscard]] int heightFor(const QString& text, int width) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Where, in the viewport, the last line ends that is seen as a whole.
  [[nodiscard]] int endOfWholeLines() const;
};

}  // namespace vel
