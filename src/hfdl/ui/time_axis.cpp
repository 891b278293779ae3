#include "hfdl/ui/time_axis.h"

#include <QPainter>
#include <utility>

#include "hfdl/ui/chart_painter.h"

namespace vel {

TimeAxis::TimeAxis(Maker make, QWidget* parent) : QWidget(parent), make_(std::move(make)) {
  setObjectName(QStringLiteral("TimeAxis"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TimeAxis::setCoversRows(bool covers) {
  if (coversRows_ == covers) return;
  coversRows_ = covers;
  update();
}

void TimeAxis::paintEvent(QPaintEvent*) {
  constexpr QColor kEdge(150, 150, 150);
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  paintChart(painter, make_(width(), devicePixelRatioF()), rect());
  if (coversRows_) painter.fillRect(0, height() - 1, width(), 1, kEdge);
}

}  // namespace vel
