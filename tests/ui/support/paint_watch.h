#pragma once

#include <QEvent>
#include <QWidget>
#include <functional>

namespace vel::test {

/// Counts the paints of a widget, and may look at each.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(QWidget* watched) { watched->installEventFilter(this); }

  int count = 0;
  std::function<void()> onPaint;  ///< before the widget paints

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      ++count;
      if (onPaint) onPaint();
    }
    return QObject::eventFilter(watched, event);
  }
};

}  // namespace vel::test
