#include "hfdl/ui/chart_window.h"

#include <QCloseEvent>
#include <QMetaObject>

namespace vel {

ChartWindow::ChartWindow(const Context& context) : context_(context) {}

void ChartWindow::open() {
  if (!open_) {
    open_ = true;
    Form_Load();
    if (!isOpen()) return;
  }
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

void ChartWindow::activateSoon() {
  // A load lets events run; it must not do so inside the delivery of one.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (isOpen()) Form_Activate();
      },
      Qt::QueuedConnection);
}

bool ChartWindow::event(QEvent* event) {
  // Not every window manager activates a window that it shows.
  const bool shown = event->type() == QEvent::Show && !event->spontaneous();
  if (shown || event->type() == QEvent::WindowActivate) activateSoon();
  return QWidget::event(event);
}

void ChartWindow::closeEvent(QCloseEvent* event) {
  open_ = false;
  QWidget::closeEvent(event);
}

}  // namespace vel
