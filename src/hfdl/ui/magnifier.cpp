#include "hfdl/ui/magnifier.h"

#include <QPainter>
#include <QScrollArea>
#include <QShowEvent>
#include <QVBoxLayout>
#include <utility>

#include "core/ui/screen_room.h"
#include "hfdl/ui/chart_painter.h"

namespace vel {
namespace {

// The enlarged square begins 4 pixels from the window's corner, and there is
// as much space behind it.
constexpr int kMargin = Magnifier::kTimes;
constexpr int kWindowSide = Magnifier::kSquare * Magnifier::kTimes + 2 * kMargin;
constexpr int kAxisHeight = 36;

void paintAxis(QPainter& painter, const Drawing& axis) {
  painter.save();
  painter.translate(kMargin, kWindowSide);
  paintChart(painter, axis, QRectF(0, 0, axis.width, axis.height));
  painter.restore();
}

}  // namespace

/// What the magnifier shows, in its full size.
class Magnifier::Surface : public QWidget {
 public:
  explicit Surface(QSize size) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedSize(size);
  }

  void show(const QImage& square, const std::optional<Drawing>& axis) {
    square_ = square;
    axis_ = axis;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(kOutside));
    painter.setRenderHint(QPainter::Antialiasing, false);
    if (axis_) paintAxis(painter, *axis_);
    if (!square_.isNull()) paintSquare(painter);
  }

 private:
  // Each device pixel becomes a box of four by four, so that a screen of
  // another scale shows neither smeared nor coarser boxes.
  void paintSquare(QPainter& painter) const {
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

  QImage square_;
  std::optional<Drawing> axis_;
};

Magnifier::Magnifier(Sampler picture, Axis axis, QWidget* parent)
    : QDialog(parent), picture_(std::move(picture)), axis_(std::move(axis)) {
  setObjectName(QStringLiteral("Magnifier"));
  setWindowTitle(QStringLiteral("VEL Magnifier"));
  setAccessibleName(tr("Part of the chart, four times enlarged"));
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setModal(true);
  const QSize whole(kWindowSide, kWindowSide + (axis_ ? kAxisHeight : 0));
  surface_ = new Surface(whole);
  auto* area = new QScrollArea(this);
  area->setObjectName(QStringLiteral("MagnifierArea"));
  area->setAccessibleName(accessibleName());
  area->setFrameShape(QFrame::NoFrame);
  area->setWidget(surface_);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(area);
  setMaximumSize(whole);
  resize(whole);
}

void Magnifier::setCentre(int x, int y) { origin_ = QPoint(x, y); }

void Magnifier::takeSquare() {
  origin_ -= QPoint(kSquare / 2, kSquare / 2);
  const QRect area(origin_ + QPoint(1, 1), QSize(kSquare, kSquare));
  const QImage square = picture_(area).convertToFormat(QImage::Format_ARGB32);
  surface_->show(square, axis_ ? std::optional(axis_(area)) : std::nullopt);
}

void Magnifier::showEvent(QShowEvent* event) {
  // Coming back from an icon shows the same square.
  if (!event->spontaneous()) {
    resize(maximumSize().boundedTo(screenRoom(*this)));
    takeSquare();
  }
  QDialog::showEvent(event);
}

}  // namespace vel
