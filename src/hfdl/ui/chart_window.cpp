#include "hfdl/ui/chart_window.h"

#include <QCloseEvent>

#include "core/ui/bring_to_front.h"
#include "core/ui/screen_room.h"

namespace vel {

ChartWindow::ChartWindow(const Context& context) : context_(context) {}

void ChartWindow::open() {
  if (!open_) {
    open_ = true;
    whenOpened();
    fitToScreen(*this);
  }
  bringToFront(*this);
}

bool ChartWindow::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  // Not every window manager activates a window that it shows.
  const bool shown = event->type() == QEvent::Show && !event->spontaneous();
  if (open_ && (shown || event->type() == QEvent::WindowActivate)) whenActivated();
  return handled;
}

void ChartWindow::closeEvent(QCloseEvent* event) {
  open_ = false;
  whenClosed();
  QWidget::closeEvent(event);
}

}  // namespace vel
