#pragma once

#include <QObject>
#include <QPalette>

namespace vel {

/// The colours of a theme with those changed that are too weak to be read: what
/// is selected, and the words in empty boxes. Both reach 4.5 to 1 at least; every other
/// colour stays.
[[nodiscard]] QPalette readableColours(QPalette theme);

/// How well one colour is seen on another: 1 for not at all, 21 for black on white.
[[nodiscard]] double contrastOf(const QColor& left, const QColor& right);

/// Keeps the application's colours readable as long as it lives, also when the
/// desktop changes to another theme.
class ReadableColours : public QObject {
  Q_OBJECT

 public:
  ReadableColours();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void apply();
  bool applying_ = false;
};

}  // namespace vel
