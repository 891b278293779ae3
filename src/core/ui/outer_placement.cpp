#include "core/ui/outer_placement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include "core/ui/twips.h"

namespace vel {
namespace {

// Time enough for a window manager to dress and place a window. Some looks in a
// row at the right place end it early; more of them as long as no frame is seen.
constexpr int kSettleInterval = 40;
constexpr int kSettleTicks = 12;
constexpr int kSettledTicks = 2;
constexpr int kFramelessTicks = 5;
// A window manager reports a new size a moment before the new state.
constexpr int kSteadyMilliseconds = 250;
// In pixels, beyond every wall of screens: a damaged setting must not ask for a
// window of many gigabytes.
constexpr QSize kLargestWindow(16384, 16384);

}  // namespace

QRect reachable(QRect rect) {
  rect.setSize(rect.size().boundedTo(kLargestWindow));
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect area = screen->availableGeometry();
    if (area.intersects(QRect(rect.x() + 40, rect.y(), rect.width() - 80, 20))) return rect;
  }
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  rect.moveLeft(qBound(area.left(), rect.left(), qMax(area.left(), area.right() - rect.width())));
  rect.moveTop(qBound(area.top(), rect.top(), qMax(area.top(), area.bottom() - rect.height())));
  return rect;
}

QRect outerTwips(const QWidget& window) { return toTwipRect(window.frameGeometry()); }

OuterPlacement::OuterPlacement(QWidget& window) : QObject(&window), window_(window) {
  timer_.setInterval(kSettleInterval);
  connect(&timer_, &QTimer::timeout, this, &OuterPlacement::settle);
}

void OuterPlacement::place(const QRect& outer) {
  wanted_ = reachable(toPixelRect(outer));
  apply();
  if (window_.isVisible()) windowShown();
}

void OuterPlacement::windowShown() {
  ticks_ = 0;
  settledTicks_ = 0;
  timer_.start();
}

void OuterPlacement::apply() {
  const QWindow* handle = window_.windowHandle();
  const QMargins frame = handle != nullptr ? handle->frameMargins() : QMargins();
  window_.resize(wanted_.marginsRemoved(frame).size());
  window_.move(wanted_.topLeft());
}

void OuterPlacement::settle() {
  const QWindow* handle = window_.windowHandle();
  // Until the window manager shows the window, nothing of it can be judged.
  if (window_.isVisible() && !handle->isExposed()) return;
  const bool normal = !window_.isMinimized() && !window_.isMaximized() && !window_.isFullScreen();
  const bool placed = wanted_.isNull() || !normal || window_.frameGeometry() == wanted_;
  settledTicks_ = placed ? settledTicks_ + 1 : 0;
  const int needed = handle->frameMargins().isNull() ? kFramelessTicks : kSettledTicks;
  if (!window_.isVisible() || settledTicks_ >= needed || ++ticks_ > kSettleTicks) {
    timer_.stop();
    wanted_ = QRect();
    Q_EMIT settled();
    return;
  }
  if (!placed) apply();
}

void SteadyPlace::replacing(const QRect& before) {
  if (!sinceReplaced_.isValid() || sinceReplaced_.elapsed() > kSteadyMilliseconds) {
    steady_ = before;
  }
  sinceReplaced_.start();
}

QRect SteadyPlace::placeToGoBackTo() const {
  const bool justNow = sinceReplaced_.isValid() && sinceReplaced_.elapsed() <= kSteadyMilliseconds;
  return justNow ? steady_ : QRect();
}

}  // namespace vel
