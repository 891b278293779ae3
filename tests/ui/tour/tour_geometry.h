#pragma once

#include <QList>
#include <QRect>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "tour/ui/tour_marks.h"

namespace vel::test {

/// The distance between a rectangle and a line of pixels.
inline double distance(const QRect& a, const QRect& b) {
  const int dx = std::max({0, a.left() - b.right() - 1, b.left() - a.right() - 1});
  const int dy = std::max({0, a.top() - b.bottom() - 1, b.top() - a.bottom() - 1});
  return std::hypot(dx, dy);
}

/// The four edges of a rectangle as lines without width: left, top, right, bottom.
inline QList<QRect> edgesOf(const QRect& r) {
  return {QRect(r.x(), r.y(), 0, r.height()), QRect(r.x(), r.y(), r.width(), 0),
          QRect(r.x() + r.width(), r.y(), 0, r.height()),
          QRect(r.x(), r.y() + r.height(), r.width(), 0)};
}

/// The edge of the tour window that a picture stands on: 0 left, 1 top, 2 right,
/// 3 bottom; -1 for none.
inline int edgeOf(const PointerPicture* picture) {
  const QRect place = picture->geometry();
  const QSize window = picture->parentWidget()->size();
  if (place.left() == 0) return 0;
  if (place.top() == 0) return 1;
  if (place.right() == window.width() - 1) return 2;
  if (place.bottom() == window.height() - 1) return 3;
  return -1;
}

/// True when the arrow's line meets the control (logical pixels on the screen).
inline bool pointsAt(const PointerPicture* picture, const QRect& control) {
  const QPointF middle = picture->mapToGlobal(QPointF(picture->width(), picture->height()) / 2);
  const double angle = picture->property("angle").toDouble() * std::numbers::pi / 180;
  const QPointF direction(std::cos(angle), std::sin(angle));
  for (double way = 0; way < 3000; way += 0.25) {
    if (QRectF(control).contains(middle + way * direction)) return true;
  }
  return false;
}

}  // namespace vel::test
