#pragma once

#include <QScreen>
#include <QSize>
#include <QWidget>

namespace vel {

/// The largest inner size that a window can have on its screen, with the frame
/// that window managers put around it and the screen's bars left free.
inline QSize screenRoom(const QWidget& window) {
  constexpr QSize kFrame(12, 40);
  return window.screen()->availableSize() - kFrame;
}

/// Makes a window that is about to be shown no larger than its screen.
inline void fitToScreen(QWidget& window) {
  window.resize(window.size().boundedTo(screenRoom(window)));
}

}  // namespace vel
