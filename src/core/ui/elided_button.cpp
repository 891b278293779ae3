#include "core/ui/elided_button.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QToolTip>

#include "core/ui/plain_text.h"

namespace vel {

ElidedButton::ElidedButton(QWidget* parent) : QPushButton(parent) {
  setFlat(true);
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ElidedButton::setHint(const QString& hint) { hint_ = hint; }

void ElidedButton::showText(const QString& text) {
  setText(text);
  // A screen reader reads the fixed name, and then this.
  setAccessibleDescription(shownText(text, kLongestEntry));
  // The letter behind an ampersand has become one.
  setShortcut({});
}

QSize ElidedButton::sizeHint() const {
  return {fontMetrics().horizontalAdvance(shownText(text())) + 6, fontMetrics().height() + 2};
}

QSize ElidedButton::minimumSizeHint() const { return {40, fontMetrics().height() + 2}; }

void ElidedButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect area = rect().adjusted(3, 0, -3, 0);
  QFont shown = font();
  shown.setUnderline(underMouse() && !text().isEmpty());
  painter.setFont(shown);
  painter.setPen(
      palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
  painter.drawText(area, Qt::AlignVCenter | Qt::AlignLeft,
                   fontMetrics().elidedText(shownText(text()), Qt::ElideMiddle, area.width()));
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

void ElidedButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QPushButton::keyPressEvent(event);
}

bool ElidedButton::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString tip = text().isEmpty() ? hint_ : plainToolTip(text()) + QLatin1Char('\n') + hint_;
    QToolTip::showText(help->globalPos(), tip, this);
    return true;
  }
  return QPushButton::event(event);
}

}  // namespace vel
