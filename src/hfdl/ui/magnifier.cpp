#include "hfdl/ui/magnifier.h"

#include <QPainter>
#include <QShowEvent>
#include <utility>

namespace vel {
namespace {

// The enlarged square begins 4 pixels from the window's corner, and there is
// as much space behind it.
constexpr int kMargin = Magnifier::kTimes;
constexpr int kWindowSide = Magnifier::kSquare * Magnifier::kTimes + 2 * kMargin;

}  // namespace

Magnifier::Magnifier(Sampler picture, QWidget* parent)
    : QDialog(parent), picture_(std::move(picture)) {
  setObjectName(QStringLiteral("Magnifier"));
  setWindowTitle(QStringLiteral("VEL Magnifier"));
  setAccessibleName(tr("Part of the chart, four times enlarged"));
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setModal(true);
  setFixedSize(kWindowSide, kWindowSide);
}

void Magnifier::setCentre(int x, int y) { origin_ = QPoint(x, y); }

void Magnifier::Form_Activate() {
  origin_ -= QPoint(kSquare / 2, kSquare / 2);
  square_ = picture_(QRect(origin_ + QPoint(1, 1), QSize(kSquare, kSquare)))
                .convertToFormat(QImage::Format_ARGB32);
  update();
}

void Magnifier::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // Coming back from an icon shows the same square.
  if (!event->spontaneous()) Form_Activate();
}

void Magnifier::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor(kOutside));
  painter.setRenderHint(QPainter::Antialiasing, false);
  if (square_.isNull()) return;
  // Each device pixel becomes a box of four by four, so that a screen of
  // another scale shows neither smeared nor coarser boxes.
  const double side = kTimes / square_.devicePixelRatio();
  for (int y = 0; y < square_.height(); ++y) {
    const auto* pixels = reinterpret_cast<const QRgb*>(square_.constScanLine(y));
    for (int begin = 0, end = 0; begin < square_.width(); begin = end) {
      while (end < square_.width() && pixels[end] == pixels[begin]) ++end;
      if (qAlpha(pixels[begin]) == 0) continue;
      painter.fillRect(
          QRectF(kMargin + begin * side, kMargin + y * side, (end - begin) * side, side),
          QColor(pixels[begin]));
    }
  }
}

}  // namespace vel
