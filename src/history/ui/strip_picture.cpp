#include "history/ui/strip_picture.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "core/ui/qt_desktop.h"

namespace vel {

StripPicture::StripPicture(Desktop& desktop, const QString& fileName, const QString& objectName,
                           BarText barText, QWidget* parent)
    : ChartPicture(desktop, fileName, parent), barText_(barText) {
  setObjectName(objectName);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  // There are two strips, and a list, in one window.
  saveAction()->setShortcutContext(Qt::WidgetShortcut);
  copyAction()->setShortcutContext(Qt::WidgetShortcut);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumHeight(70);
}

void StripPicture::setStrip(StripMaker make) {
  make_ = std::move(make);
  setChart([this](double width, double height, double ratio) {
    return make_(width, height, ratio).drawing;
  });
}

std::vector<StripBar> StripPicture::bars() const {
  return make_ ? make_(width(), height(), devicePixelRatioF()).bars : std::vector<StripBar>();
}

bool StripPicture::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto bar = barAt({{}, bars()}, help->pos().x());
    if (bar) {
      QToolTip::showText(help->globalPos(), toQString(barText_(*bar)), this);
    } else {
      QToolTip::hideText();
    }
    return true;
  }
  return ChartPicture::event(event);
}

void StripPicture::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    ChartPicture::mousePressEvent(event);
    return;
  }
  const auto bar = barAt({{}, bars()}, event->position().x());
  if (bar && bar->count > 0) {
    cursor_ = bar;
    Q_EMIT barChosen(*bar);
  }
}

void StripPicture::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      moveCursor(-1);
      return;
    case Qt::Key_Right:
      moveCursor(1);
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (cursor_) Q_EMIT barChosen(StripBar(*cursor_));
      return;
    default:
      ChartPicture::keyPressEvent(event);
  }
}

// To the next bar with messages in that direction.
void StripPicture::moveCursor(int direction) {
  std::vector<StripBar> all = bars();
  if (direction < 0) std::reverse(all.begin(), all.end());
  for (const StripBar& bar : all) {
    const bool isBeyond =
        !cursor_ || (direction > 0 ? bar.first > cursor_->first : bar.first < cursor_->first);
    if (bar.count == 0 || !isBeyond) continue;
    cursor_ = bar;
    showText(bar);
    return;
  }
}

void StripPicture::showText(const StripBar& bar) {
  const QString text = toQString(barText_(bar));
  setAccessibleDescription(text);
  const QPoint place(static_cast<int>((bar.left + bar.right) / 2), height() / 2);
  QToolTip::showText(mapToGlobal(place), text, this);
}

}  // namespace vel
