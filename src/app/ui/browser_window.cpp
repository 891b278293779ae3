#include "app/ui/browser_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QWindow>

#include "core/ui/twips.h"

namespace vel {

BrowserWindow::BrowserWindow(BrowserFrame& frame, QSize designedSize, QSize smallestSize)
    : frame_(frame),
      designedSize_(designedSize),
      smallestSize_(smallestSize),
      placement_(new OuterPlacement(*this)) {
  keepSmallestSize(0);
  resize(toPixels(designedSize.width()), toPixels(designedSize.height()));
  connect(placement_, &OuterPlacement::looking, this, &BrowserWindow::noticeFrame);
  connect(placement_, &OuterPlacement::settled, this, [this] {
    sizeUnset_ = false;
    recordPlace();
  });
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
              takeOver();
            }
          });
}

QRect BrowserWindow::outerGeometry() const { return outerPixels(*this); }

void BrowserWindow::setOuterTwips(const QRect& outer) {
  placement_->place(outer, frame_.place().frame());
}

void BrowserWindow::keepSmallestSize() { keepSmallestSize(neededWidth()); }

void BrowserWindow::keepSmallestSize(int width) {
  // The smallest size is one with the frame around the window.
  const QSize outer(toPixels(smallestSize_.width()), toPixels(smallestSize_.height()));
  setMinimumSize(outer.shrunkBy(frameOf(*this)).expandedTo(QSize(qMax(1, width), 1)));
}

void BrowserWindow::noticeFrame() {
  if (frameOf(*this) != laidOutFrame_) layOut();
  if (!sizeUnset_ || frameOf(*this).isNull()) return;
  sizeUnset_ = false;
  const QSize designed(toPixels(designedSize_.width()), toPixels(designedSize_.height()));
  // Unless somebody was quicker.
  if (state() == kNormal && size() == designed) {
    setOuterTwips(toTwipRect(QRect(outerGeometry().topLeft(), designed)));
  }
}

WindowState BrowserWindow::state() const {
  if (isMinimized()) return kMinimised;
  return isNormal(*this) ? kNormal : kMaximised;
}

void BrowserWindow::takeOver() { takePlace(Coming::toTheFront); }

void BrowserWindow::takePlace(Coming coming) {
  const CommonPlace& place = frame_.place();
  const bool maximise = place.state() == kMaximised;
  takingPlace_ = true;
  normalPlace_ = NormalPlace();
  if (!place.normal().isNull()) normalPlace_.record(place.normal(), desktop().moment());
  if (coming == Coming::shown || maximise != isMaximized()) {
    // While it is hidden, a window forgets to where it is restored: it is
    // given its normal place before every maximising.
    setWindowState(windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
    if (!place.normal().isNull()) setOuterTwips(place.normal());
    if (maximise) {
      normalUncertain_ = frameOf(*this).isNull() && place.frame().isNull();
      setWindowState(windowState() | Qt::WindowMaximized);
    }
  } else if (!maximise && !place.normal().isNull() && outerTwips(*this) != place.normal()) {
    setOuterTwips(place.normal());
  }
  takingPlace_ = false;
}

void BrowserWindow::layOut() {
  if (!frame_.place().isRecording()) return;
  if (laidOutFrame_ != frameOf(*this)) {
    laidOutFrame_ = frameOf(*this);
    keepSmallestSize();
  }
  layOutFrames(outerTwips(*this).height(), outerTwips(*this).width());
  recordPlace();
}

void BrowserWindow::recordPlace() {
  CommonPlace& place = frame_.place();
  // A hidden window follows the shown one; it never sets the place itself.
  if (!place.isRecording() || !isVisible() || takingPlace_) return;
  const bool frameMissing = frameOf(*this).isNull() && !place.frame().isNull();
  const bool judged = windowHandle()->isExposed() && !frameMissing && !sizeUnset_;
  if (placement_->isWatching() && (placement_->isSettling() || !judged)) return;
  place.recordState(state());
  const QRect outer = outerTwips(*this);
  if (place.state() == kNormal) {
    place.recordFrame(frameOf(*this));
    normalPlace_.record(outer, desktop().moment());
  } else if (place.state() == kMaximised) {
    normalPlace_.windowMaximised(outer.size(), desktop().moment());
  }
  if (!normalPlace_.latest().isNull()) place.recordNormal(normalPlace_.latest());
}

void BrowserWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  layOut();
}

void BrowserWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  recordPlace();
}

void BrowserWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (event->spontaneous()) return;
  sizeUnset_ = frame_.place().normal().isNull();
  placement_->windowShown();
  takePlace(Coming::shown);
  takeOver();
  layOut();
}

void BrowserWindow::hideEvent(QHideEvent* event) {
  QMainWindow::hideEvent(event);
  if (!event->spontaneous()) placement_->windowHidden();
}

void BrowserWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange || !isVisible() || takingPlace_) return;
  const bool wasMaximised =
      (static_cast<QWindowStateChangeEvent*>(event)->oldState() & Qt::WindowMaximized) != 0;
  if (state() == kNormal && wasMaximised && normalUncertain_) {
    normalUncertain_ = false;
    setOuterTwips(frame_.place().normal());
  }
  layOut();
}

void BrowserWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  frame_.unload(*this);
}

}  // namespace vel
