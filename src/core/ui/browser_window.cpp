#include "core/ui/browser_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QScreen>
#include <QWindow>

#include "core/ui/twips.h"

namespace vel {
namespace {

constexpr int kSettleInterval = 40;
constexpr int kSettleTries = 12;
// A window manager reports a new size a moment before the new state.
constexpr int kSteadyMilliseconds = 250;

QRect toPixelRect(const QRect& twips) {
  return {toPixels(twips.x()), toPixels(twips.y()), toPixels(twips.width()),
          toPixels(twips.height())};
}

QRect toTwipRect(const QRect& pixels) {
  return {toTwips(pixels.x()), toTwips(pixels.y()), toTwips(pixels.width()),
          toTwips(pixels.height())};
}

// The rectangle, moved so that its title bar can be reached on some screen.
QRect reachable(QRect rect) {
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect area = screen->availableGeometry();
    if (area.intersects(QRect(rect.x() + 40, rect.y(), rect.width() - 80, 20))) return rect;
  }
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  rect.moveLeft(qBound(area.left(), rect.left(), qMax(area.left(), area.right() - rect.width())));
  rect.moveTop(qBound(area.top(), rect.top(), qMax(area.top(), area.bottom() - rect.height())));
  return rect;
}

}  // namespace

BrowserWindow::BrowserWindow(Program& program, QSize designedSize, QSize smallestSize)
    : program_(program), designedSize_(designedSize) {
  setMinimumSize(toPixels(smallestSize.width()), toPixels(smallestSize.height()));
  resize(toPixels(designedSize.width()), toPixels(designedSize.height()));
  settleTimer_.setInterval(kSettleInterval);
  connect(&settleTimer_, &QTimer::timeout, this, &BrowserWindow::settleFrame);
  connect(qApp, &QApplication::focusWindowChanged, this, [this, last = QPointer<QWindow>()](
                                                             QWindow* focused) mutable {
    if (focused == nullptr) return;
    const QWindow* previous = last;
    last = focused;
    // Coming back from a dialog of its own is not an activation.
    const bool ownDialog = previous != nullptr && previous->transientParent() == windowHandle();
    if (focused == windowHandle() && previous != nullptr && previous != focused && !ownDialog &&
        isVisible()) {
      Form_Activate();
    }
  });
}

void BrowserWindow::setOuterTwips(const QRect& outer) {
  wantedOuter_ = reachable(toPixelRect(outer));
  applyOuter();
  if (isVisible()) {
    settleTries_ = 0;
    settleTimer_.start();
  }
}

void BrowserWindow::applyOuter() {
  const QWindow* handle = windowHandle();
  const QMargins frame = handle != nullptr ? handle->frameMargins() : QMargins();
  const QRect inner = wantedOuter_.marginsRemoved(frame);
  resize(inner.size());
  move(wantedOuter_.topLeft());
}

void BrowserWindow::settleFrame() {
  const bool placed = wantedOuter_.isNull() || state() != kNormal;
  if (placed || ++settleTries_ > kSettleTries) {
    settleTimer_.stop();
    wantedOuter_ = QRect();
    recordPlace();
    return;
  }
  if (frameGeometry() == wantedOuter_) return;
  applyOuter();
}

WindowState BrowserWindow::state() const {
  if (isMinimized()) return kMinimised;
  if (isMaximized() || isFullScreen()) return kMaximised;
  return kNormal;
}

void BrowserWindow::Form_Activate() { takePlace(); }

void BrowserWindow::takePlace() {
  const ScreenPlace place = program_.place();
  takingPlace_ = true;
  if (place.state == kMaximised) {
    if (!isMaximized()) {
      if (!place.normal.isNull()) setOuterTwips(place.normal);
      setWindowState(windowState() | Qt::WindowMaximized);
    }
  } else if (place.state == kNormal) {
    if (isMaximized()) setWindowState(windowState() & ~Qt::WindowMaximized);
    if (!place.normal.isNull() && toTwipRect(frameGeometry()) != place.normal) {
      setOuterTwips(place.normal);
    }
  }
  takingPlace_ = false;
}

void BrowserWindow::Form_Resize() {
  if (program_.startingUp) return;
  layOutFrames(toTwips(frameGeometry().height()), toTwips(frameGeometry().width()));
  recordPlace();
}

void BrowserWindow::recordPlace() {
  // A hidden window follows the shown one; it never sets the place itself.
  if (program_.startingUp || !isVisible() || takingPlace_) return;
  if (!wantedOuter_.isNull() && settleTimer_.isActive()) return;
  Settings& env = settings();
  ScreenPlace& place = program_.place();
  place.state = state();
  env.env_Form1_WinS = place.state;
  if (place.state != kNormal) return;
  if (!sinceRecord_.isValid() || sinceRecord_.elapsed() > kSteadyMilliseconds) {
    steadyPlace_ = place.normal;
  }
  sinceRecord_.start();
  place.normal = toTwipRect(frameGeometry());
  env.env_Form1_Top = place.normal.y();
  env.env_Form1_Left = place.normal.x();
  env.env_Form1_Height = place.normal.height();
  env.env_Form1_Width = place.normal.width();
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
  settleTries_ = 0;
  settleTimer_.start();
  Form_Activate();
  Form_Resize();
}

void BrowserWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange || !isVisible()) return;
  const bool justRecorded =
      sinceRecord_.isValid() && sinceRecord_.elapsed() <= kSteadyMilliseconds;
  if (state() != kNormal && justRecorded && !steadyPlace_.isNull()) {
    // The size just recorded as normal was already that of the new state.
    Settings& env = settings();
    program_.place().normal = steadyPlace_;
    env.env_Form1_Top = steadyPlace_.y();
    env.env_Form1_Left = steadyPlace_.x();
    env.env_Form1_Height = steadyPlace_.height();
    env.env_Form1_Width = steadyPlace_.width();
  }
  Form_Resize();
}

void BrowserWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  Form_Unload();
}

void BrowserWindow::Form_Unload() { program_.unload(*this); }

}  // namespace vel
