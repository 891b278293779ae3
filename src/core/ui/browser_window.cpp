#include "core/ui/browser_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QScreen>
#include <QWindow>

#include "core/ui/outer_placement.h"
#include "core/ui/twips.h"

namespace vel {
namespace {

// Time enough for a window manager to dress and place a window. Some looks in a
// row at the right place end it early; more of them as long as no frame is seen.
constexpr int kSettleInterval = 40;
constexpr int kSettleTicks = 12;
constexpr int kSettledTicks = 2;
constexpr int kFramelessTicks = 5;
// A window manager reports the maximised size up to so many milliseconds before
// the maximised state.
constexpr qint64 kStateDelay = 200;
// How far such a size may differ from that of the maximised window, in twips.
constexpr int kFrameTolerance = 900;

}  // namespace

BrowserWindow::BrowserWindow(Program& program, QSize designedSize, QSize smallestSize)
    : program_(program), designedSize_(designedSize) {
  setMinimumSize(toPixels(smallestSize.width()), toPixels(smallestSize.height()));
  resize(toPixels(designedSize.width()), toPixels(designedSize.height()));
  clock_.start();
  settleTimer_.setInterval(kSettleInterval);
  connect(&settleTimer_, &QTimer::timeout, this, &BrowserWindow::settleFrame);
  connect(qApp, &QApplication::focusWindowChanged, this,
          [this, last = QPointer<QWindow>()](QWindow* focused) mutable {
            if (focused == nullptr) return;
            const QWindow* previous = last;
            last = focused;
            // Coming back from a dialog of its own is not an activation.
            const bool ownDialog =
                previous != nullptr && previous->transientParent() == windowHandle();
            if (focused == windowHandle() && previous != nullptr && previous != focused &&
                !ownDialog && isVisible()) {
              Form_Activate();
            }
          });
}

QRect BrowserWindow::outerGeometry() const { return geometry().marginsAdded(ownFrame()); }

QMargins BrowserWindow::ownFrame() const {
  const QWindow* handle = windowHandle();
  return handle != nullptr ? handle->frameMargins() : QMargins();
}

void BrowserWindow::takeDesignedSize() {
  sizeUnset_ = false;
  const QSize designed(toPixels(designedSize_.width()), toPixels(designedSize_.height()));
  // Somebody was quicker.
  if (state() != kNormal || size() != designed) return;
  wantedOuter_ = QRect(outerGeometry().topLeft(), designed);
  applyOuter();
}

bool BrowserWindow::isOnScreen() const {
  const QWindow* handle = windowHandle();
  return handle != nullptr && handle->isExposed();
}

void BrowserWindow::setOuterTwips(const QRect& outer) {
  wantedOuter_ = reachable(toPixelRect(outer));
  applyOuter();
  if (isVisible()) startSettling();
}

void BrowserWindow::startSettling() {
  settleTicks_ = 0;
  settledTicks_ = 0;
  settleTimer_.start();
}

void BrowserWindow::applyOuter() {
  // A window that is not on the screen has no frame yet; it will get the one
  // that the other browser has.
  const QMargins own = ownFrame();
  setGeometry(wantedOuter_.marginsRemoved(own.isNull() ? program_.place().frame : own));
}

void BrowserWindow::settleFrame() {
  // Until the window manager shows the window, nothing of it can be judged.
  if (!isOnScreen() || !settleTimer_.isActive()) return;
  if (ownFrame() != laidOutFrame_) Form_Resize();
  if (sizeUnset_ && !ownFrame().isNull()) takeDesignedSize();
  const bool placed =
      wantedOuter_.isNull() || state() != kNormal || outerGeometry() == wantedOuter_;
  settledTicks_ = placed ? settledTicks_ + 1 : 0;
  const int neededTicks = ownFrame().isNull() ? kFramelessTicks : kSettledTicks;
  if (settledTicks_ >= neededTicks || ++settleTicks_ > kSettleTicks) {
    settleTimer_.stop();
    wantedOuter_ = QRect();
    sizeUnset_ = false;
    recordPlace();
    return;
  }
  if (!placed) applyOuter();
}

WindowState BrowserWindow::state() const {
  if (isMinimized()) return kMinimised;
  if (isMaximized() || isFullScreen()) return kMaximised;
  return kNormal;
}

void BrowserWindow::Form_Activate() { takePlace(false); }

void BrowserWindow::takePlace(bool showing) {
  const ScreenPlace place = program_.place();
  const bool maximise = place.state == kMaximised;
  takingPlace_ = true;
  if (showing || maximise != isMaximized()) {
    // While it is hidden, a window forgets to where it is restored: it is
    // given its normal place before every maximising.
    setWindowState(windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
    if (!place.normal.isNull()) setOuterTwips(place.normal);
    if (maximise) {
      normalUncertain_ = ownFrame().isNull() && place.frame.isNull();
      setWindowState(windowState() | Qt::WindowMaximized);
    }
  } else if (!maximise && !place.normal.isNull() && toTwipRect(outerGeometry()) != place.normal) {
    setOuterTwips(place.normal);
  }
  takingPlace_ = false;
}

void BrowserWindow::Form_Resize() {
  if (program_.startingUp) return;
  laidOutFrame_ = ownFrame();
  layOutFrames(toTwips(outerGeometry().height()), toTwips(outerGeometry().width()));
  recordPlace();
}

void BrowserWindow::recordPlace() {
  // A hidden window follows the shown one; it never sets the place itself.
  if (program_.startingUp || !isVisible() || takingPlace_) return;
  ScreenPlace& place = program_.place();
  const bool frameMissing = ownFrame().isNull() && !place.frame.isNull();
  const bool settled = wantedOuter_.isNull() && isOnScreen() && !frameMissing && !sizeUnset_;
  if (settleTimer_.isActive() && !settled) return;
  place.state = state();
  settings().env_Form1_WinS = place.state;
  if (place.state != kNormal) return;
  place.frame = ownFrame();
  setNormalPlace(toTwipRect(outerGeometry()));
  while (recent_.size() > 1 && clock_.elapsed() - recent_[1].time > kStateDelay) {
    recent_.removeFirst();
  }
  recent_.append({clock_.elapsed(), program_.place().normal});
}

void BrowserWindow::setNormalPlace(const QRect& outer) {
  program_.place().normal = outer;
  Settings& env = settings();
  env.env_Form1_Top = outer.y();
  env.env_Form1_Left = outer.x();
  env.env_Form1_Height = outer.height();
  env.env_Form1_Width = outer.width();
}

// What was recorded just now as the normal place can have been that of the
// maximised window already.
void BrowserWindow::dropMaximisedRecords() {
  if (recent_.isEmpty()) return;
  const QSize maximised = toTwipRect(outerGeometry()).size();
  const QSize before = recent_.first().outer.size();
  const auto isMaximised = [&](const RecentPlace& place) {
    const QSize size = place.outer.size();
    return clock_.elapsed() - place.time <= kStateDelay && size != before &&
           qAbs(size.width() - maximised.width()) < kFrameTolerance &&
           qAbs(size.height() - maximised.height()) < kFrameTolerance;
  };
  for (auto place = recent_.crbegin(); place != recent_.crend(); ++place) {
    if (isMaximised(*place)) continue;
    setNormalPlace(place->outer);
    break;
  }
  recent_.clear();
  if (!program_.place().normal.isNull()) recent_.append({0, program_.place().normal});
}

void BrowserWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  Form_Resize();
}

void BrowserWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  recordPlace();
}

void BrowserWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (event->spontaneous()) return;
  sizeUnset_ = program_.place().normal.isNull();
  startSettling();
  windowHandle()->installEventFilter(this);
  takePlace(true);
  Form_Activate();
  Form_Resize();
}

bool BrowserWindow::eventFilter(QObject* watched, QEvent* event) {
  // The frame is known as soon as the window is on the screen: it then need not
  // be seen in a wrong place until the next look.
  if (event->type() == QEvent::Expose && watched == windowHandle() && settleTimer_.isActive()) {
    QMetaObject::invokeMethod(this, &BrowserWindow::settleFrame, Qt::QueuedConnection);
  }
  return QMainWindow::eventFilter(watched, event);
}

void BrowserWindow::hideEvent(QHideEvent* event) {
  QMainWindow::hideEvent(event);
  if (event->spontaneous()) return;
  settleTimer_.stop();
  wantedOuter_ = QRect();
}

void BrowserWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange || !isVisible() || takingPlace_) return;
  const bool wasMaximised =
      (static_cast<QWindowStateChangeEvent*>(event)->oldState() & Qt::WindowMaximized) != 0;
  if (state() == kMaximised && !wasMaximised) dropMaximisedRecords();
  if (state() == kNormal && wasMaximised && normalUncertain_) {
    normalUncertain_ = false;
    setOuterTwips(program_.place().normal);
  }
  Form_Resize();
}

void BrowserWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  Form_Unload();
}

void BrowserWindow::Form_Unload() { program_.unload(*this); }

}  // namespace vel
