#include "tour/ui/tour_marks.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>
#include <QStyleOption>
#include <algorithm>

namespace vel {
namespace {

// One warm colour that stands out from light and dark themes alike.
const QColor kMarkColour(0xd8, 0x3b, 0x01);

constexpr int kFrameWidth = 3;
constexpr int kFrameGap = 1;

constexpr int kSmallestLetters = 6;

// The theme's text, a third of the way to what it stands on: small letters lose
// more of their colour at their edges.
QColor greyText(const QPalette& theme) {
  const QColor text = theme.color(QPalette::WindowText);
  const QColor back = theme.color(QPalette::Window);
  const auto mixed = [](int of, int with) { return (2 * of + with) / 3; };
  return {mixed(text.red(), back.red()), mixed(text.green(), back.green()),
          mixed(text.blue(), back.blue())};
}

}  // namespace

PointerPicture::PointerPicture(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
}

void PointerPicture::setAngle(double degrees) {
  if (angle_ == degrees) return;
  angle_ = degrees;
  update();
}

void PointerPicture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(width() / 2.0, height() / 2.0);
  painter.rotate(angle_);
  painter.scale(width() / 2.0, height() / 2.0);
  painter.setPen(Qt::NoPen);
  painter.setBrush(kMarkColour);
  painter.drawPolygon(QPolygonF{{0.98, 0.0},
                                {0.05, 0.76},
                                {0.05, 0.30},
                                {-0.90, 0.30},
                                {-0.90, -0.30},
                                {0.05, -0.30},
                                {0.05, -0.76}});
}

ControlFrame::ControlFrame(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAttribute(Qt::WA_NoSystemBackground);
  setFocusPolicy(Qt::NoFocus);
}

QRect ControlFrame::around(const QRect& control) {
  constexpr int reach = kFrameWidth + kFrameGap;
  return control.adjusted(-reach, -reach, reach, reach);
}

void ControlFrame::frame(const QRect& control) {
  setGeometry(around(control).intersected(parentWidget()->rect()));
  show();
  raise();
}

void ControlFrame::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(kMarkColour, kFrameWidth));
  const double half = kFrameWidth / 2.0;
  painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), 3, 3);
}

PositionLabel::PositionLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void PositionLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
    Q_EMIT clicked();
  }
}

void PositionLabel::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space) {
    Q_EMIT clicked();
  } else {
    QLabel::keyPressEvent(event);
  }
}

void PositionLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  constexpr int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;
  QFont letters = font();
  int size = std::max(kSmallestLetters, QFontInfo(letters).pixelSize() * 5 / 6);
  letters.setPixelSize(size);
  while (size > kSmallestLetters &&
         !rect().contains(QFontMetrics(letters).boundingRect(rect(), flags, text()))) {
    letters.setPixelSize(--size);
  }
  painter.setFont(letters);
  painter.setPen(greyText(palette()));
  painter.drawText(rect(), flags, text());
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.backgroundColor = palette().color(QPalette::Window);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

}  // namespace vel
