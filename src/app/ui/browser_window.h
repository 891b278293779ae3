#pragma once

#include <QMainWindow>
#include <QMargins>

#include "app/ui/browser_frame.h"
#include "core/ui/outer_placement.h"

namespace vel {

/// What the two browsers are to the application frame: a window that loads
/// hidden, shares one place on the screen with the other one, lays its frames
/// out by its outer size in twips, and ends the program when it is closed.
class BrowserWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// The designed and the smallest size are outer sizes in twips.
  BrowserWindow(BrowserFrame& frame, QSize designedSize, QSize smallestSize);

  /// Fills the window, while events run; called once, before it is shown.
  /// `loaded` tells the end; it never does where the program ends.
  virtual void load() = 0;
  /// The program ends in good order: what the window keeps beside the settings
  /// is saved now.
  virtual void programEnds() {}
  /// The number of list rows, as the splash shows it.
  [[nodiscard]] virtual int shownRows() const = 0;

  /// The tables were changed by another part of the program: shows what they
  /// say now.
  virtual void tablesChanged() {}

  [[nodiscard]] const Context& context() const { return frame_.context(); }
  [[nodiscard]] QSize designedSize() const { return designedSize_; }

  /// The window's outer rectangle in logical pixels, title bar included.
  [[nodiscard]] QRect outerGeometry() const;

  /// Moves and sizes the window so that its outer rectangle is this one, in
  /// twips; kept up until the window manager has said how wide its frame is.
  void setOuterTwips(const QRect& outer);

 Q_SIGNALS:
  /// The window is filled.
  void loaded();

 protected:
  /// Takes the common place over; runs when the window comes to the front from
  /// another window of the program or is shown.
  virtual void takeOver();

  /// The width in pixels below which something within the window would be cut,
  /// in the letters in use; 0 for the designed smallest one.
  [[nodiscard]] virtual int neededWidth() const { return 0; }
  /// Keeps the window from being made smaller than it may be. To be called once
  /// the window is filled.
  void keepSmallestSize();

  /// Puts the frames where the outer height and width (twips) want them.
  virtual void layOutFrames(int height, int width) = 0;

  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

  [[nodiscard]] BrowserFrame& frame() { return frame_; }
  [[nodiscard]] Desktop& desktop() const { return context().desktop; }
  [[nodiscard]] Settings& settings() const { return context().settings; }

 private:
  /// No smaller than the designed least, nor narrower inside than this, in pixels.
  void keepSmallestSize(int width);
  [[nodiscard]] WindowState state() const;
  void noticeFrame();
  void recordPlace();
  void layOut();
  enum class Coming { shown, toTheFront };
  void takePlace(Coming coming);

  BrowserFrame& frame_;
  QSize designedSize_;
  QSize smallestSize_;
  OuterPlacement* placement_;
  NormalPlace normalPlace_;
  QMargins laidOutFrame_;
  bool sizeUnset_ = false;        // shown without a place: the designed size holds
  bool normalUncertain_ = false;  // was maximised before its frame was known
  bool takingPlace_ = false;
};

}  // namespace vel
