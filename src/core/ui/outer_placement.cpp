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
// In pixels: what has to be seen of a title bar, without the buttons at its ends.
constexpr int kTitleBarHeight = 20;
constexpr int kTitleBarEnd = 40;

// A window manager reports the maximised size at most so long before or after the
// maximised state.
constexpr std::chrono::milliseconds kStateDelay{200};
// How far such a size may differ from that of the maximised window, in twips.
constexpr int kFrameTolerance = 900;

}  // namespace

QMargins frameOf(const QWidget& window) {
  const QWindow* handle = window.windowHandle();
  return handle != nullptr ? handle->frameMargins() : QMargins();
}

QRect outerPixels(const QWidget& window) { return window.geometry().marginsAdded(frameOf(window)); }

QRect outerTwips(const QWidget& window) { return toTwipRect(outerPixels(window)); }

bool isNormal(const QWidget& window) {
  return !window.isMinimized() && !window.isMaximized() && !window.isFullScreen();
}

QRect reachable(QRect rect, QSize smallest) {
  const QRect screens = QGuiApplication::primaryScreen()->availableVirtualGeometry();
  const QSize wanted = rect.size().expandedTo(smallest);
  rect.setSize(wanted.boundedTo(screens.size()).expandedTo(smallest));
  // What is larger than all screens together begins where they begin.
  if (wanted.width() > screens.width()) rect.moveLeft(screens.left());
  if (wanted.height() > screens.height()) rect.moveTop(screens.top());
  const QRect titleBar(rect.x() + kTitleBarEnd, rect.y(), rect.width() - 2 * kTitleBarEnd,
                       kTitleBarHeight);
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect area = screen->availableGeometry();
    const bool reachable = titleBar.right() >= area.left() && titleBar.left() <= area.right() &&
                           titleBar.top() >= area.top() && titleBar.bottom() <= area.bottom();
    if (reachable) return rect;
  }
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  rect.moveLeft(qBound(area.left(), rect.left(), qMax(area.left(), area.right() - rect.width())));
  rect.moveTop(qBound(area.top(), rect.top(), qMax(area.top(), area.bottom() - rect.height())));
  return rect;
}

OuterPlacement::OuterPlacement(QWidget& window) : QObject(&window), window_(window) {
  timer_.setInterval(kSettleInterval);
  connect(&timer_, &QTimer::timeout, this, &OuterPlacement::settle);
}

void OuterPlacement::place(const QRect& outer, const QMargins& expectedFrame) {
  expectedFrame_ = expectedFrame;
  wanted_ = reachable(toPixelRect(outer), window_.minimumSize().grownBy(frameToExpect()));
  apply();
  if (window_.isVisible()) windowShown();
}

void OuterPlacement::windowShown() {
  ticks_ = 0;
  settledTicks_ = 0;
  timer_.start();
  window_.windowHandle()->installEventFilter(this);
}

void OuterPlacement::windowHidden() {
  timer_.stop();
  wanted_ = QRect();
}

bool OuterPlacement::eventFilter(QObject* watched, QEvent* event) {
  // The frame is known as soon as the window is on the screen: it then need not
  // be seen in a wrong place until the next look.
  if (event->type() == QEvent::Expose && timer_.isActive()) {
    QMetaObject::invokeMethod(this, &OuterPlacement::settle, Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}

QMargins OuterPlacement::frameToExpect() const {
  const QMargins own = frameOf(window_);
  return own.isNull() ? expectedFrame_ : own;
}

void OuterPlacement::apply() { window_.setGeometry(wanted_.marginsRemoved(frameToExpect())); }

void OuterPlacement::settle() {
  // Until the window manager shows the window, nothing of it can be judged.
  if (!timer_.isActive() || !window_.windowHandle()->isExposed()) return;
  Q_EMIT looking();
  const bool placed = wanted_.isNull() || !isNormal(window_) || outerPixels(window_) == wanted_;
  settledTicks_ = placed ? settledTicks_ + 1 : 0;
  const int needed = frameOf(window_).isNull() ? kFramelessTicks : kSettledTicks;
  if (settledTicks_ >= needed || ++ticks_ > kSettleTicks) {
    timer_.stop();
    wanted_ = QRect();
    Q_EMIT settled();
    return;
  }
  if (!placed) apply();
}

void NormalPlace::record(const QRect& outer, Moment now) {
  if (maximised_.isValid()) {
    const QRect normal = latest();
    maximised_ = QSize();
    records_.clear();
    if (!normal.isNull()) records_.append({Moment(), normal});
  }
  // The newest of those that stood long enough is kept.
  while (records_.size() > 1 && now - records_[1].time > kStateDelay) {
    records_.removeFirst();
  }
  records_.append({now, outer});
}

void NormalPlace::windowMaximised(QSize outer, Moment now) {
  if (!maximised_.isValid()) {
    maximisedAt_ = now;
  } else if (now - maximisedAt_ > kStateDelay) {
    return;
  }
  maximised_ = outer;
}

bool NormalPlace::isOfMaximised(const Record& record) const {
  const QSize size = record.outer.size();
  return maximised_.isValid() && maximisedAt_ - record.time <= kStateDelay &&
         size != records_.first().outer.size() &&
         qAbs(size.width() - maximised_.width()) < kFrameTolerance &&
         qAbs(size.height() - maximised_.height()) < kFrameTolerance;
}

QRect NormalPlace::latest() const {
  for (auto record = records_.crbegin(); record != records_.crend(); ++record) {
    if (!isOfMaximised(*record)) return record->outer;
  }
  return {};
}

}  // namespace vel
