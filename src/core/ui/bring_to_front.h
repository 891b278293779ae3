#pragma once

#include <QWidget>

namespace vel {

/// Shows a window above the others and makes it the active one, also where it
/// was minimised.
inline void bringToFront(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace vel
