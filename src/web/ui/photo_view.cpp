#include "web/ui/photo_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPen>

namespace vel {
namespace {

constexpr int kFocusFrame = 2;
constexpr int kHintMargin = 6;

}  // namespace

PhotoView::PhotoView(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("Image1"));
  setAccessibleName(tr("Aircraft photo"));
  setToolTip(tr("Click to open the photo\nクリックで写真を開く"));
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
}

void PhotoView::showPicture(const QImage& picture, QSize trueSize) {
  picture_ = picture;
  pictureSize_ = trueSize;
  hint_.clear();
  scaled_ = QPixmap();
  update();
}

void PhotoView::showHint(const QString& hint) {
  clear();
  hint_ = hint;
  update();
}

void PhotoView::clear() { showPicture(QImage(), QSize()); }

void PhotoView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect frame = rect();
  painter.fillRect(frame, palette().color(QPalette::Midlight));
  if (!picture_.isNull()) {
    const QSize shown = picture_.size().scaled(frame.size(), Qt::KeepAspectRatio);
    const QSize device = (QSizeF(shown) * devicePixelRatioF()).toSize();
    if (scaled_.size() != device) {
      scaled_ = QPixmap::fromImage(
          picture_.scaled(device, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    QRect place(QPoint(), shown);
    place.moveCenter(frame.center());
    painter.drawPixmap(place, scaled_);
  }
  if (picture_.isNull() && !hint_.isEmpty()) {
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(frame.adjusted(kHintMargin, 0, -kHintMargin, 0),
                     Qt::AlignCenter | Qt::TextWrapAnywhere, hint_);
  }
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(frame.adjusted(0, 0, -1, -1));
  if (!hasFocus()) return;
  // A frame alone: the colours of the photo stay what they are.
  QPen pen(palette().color(QPalette::Highlight), kFocusFrame);
  pen.setJoinStyle(Qt::MiterJoin);
  painter.setPen(pen);
  painter.drawRect(frame.adjusted(1, 1, -1, -1));
}

void PhotoView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->pos())) Q_EMIT clicked();
}

void PhotoView::keyPressEvent(QKeyEvent* event) {
  const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                     event->key() == Qt::Key_Space;
  if (opens) {
    Q_EMIT clicked();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace vel
