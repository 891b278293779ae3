#pragma once

#include <QList>
#include <QMargins>
#include <QObject>
#include <QRect>
#include <QTimer>
#include <chrono>

class QWidget;

namespace vel {

/// Widths of the frame that the window manager puts around a window, in pixels;
/// null before it has said so.
[[nodiscard]] QMargins frameOf(const QWidget& window);

/// A window's outer rectangle, title bar included, in pixels.
[[nodiscard]] QRect outerPixels(const QWidget& window);

/// The same in twips.
[[nodiscard]] QRect outerTwips(const QWidget& window);

/// True in neither the minimised nor the maximised nor the full-screen state.
[[nodiscard]] bool isNormal(const QWidget& window);

/// An outer rectangle in pixels, no larger than all screens together, no smaller
/// than `smallest`, and moved so that its title bar can be reached on some screen.
[[nodiscard]] QRect reachable(QRect outer, QSize smallest);

/// Puts a window's outer rectangle where it is wanted. How wide its frame is,
/// the window manager says only some time after the window was shown: until
/// then the place is put right again and again.
class OuterPlacement : public QObject {
  Q_OBJECT

 public:
  /// The window owns this object.
  explicit OuterPlacement(QWidget& window);

  /// Moves and sizes the window so that its outer rectangle is this one, in
  /// twips, moved so that its title bar can be reached on some screen. The
  /// expected frame counts until the window manager has said how wide it is.
  void place(const QRect& outer, const QMargins& expectedFrame = {});

  /// To be called when the window is shown.
  void windowShown();
  /// To be called when the window is hidden: nothing is wanted any more.
  void windowHidden();

  /// True from the showing or placing of a window until it has settled.
  [[nodiscard]] bool isWatching() const { return timer_.isActive(); }
  /// True while the window does not stand where it is wanted yet.
  [[nodiscard]] bool isSettling() const { return !wanted_.isNull() && timer_.isActive(); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  /// The window is on the screen and is about to be judged: its frame may be new.
  void looking();
  /// The window stands where it is wanted with its frame, or will not go there.
  void settled();

 private:
  void settle();
  void apply();
  [[nodiscard]] QMargins frameToExpect() const;

  QWidget& window_;
  QRect wanted_;  // pixels; null when the window stands where it should
  QMargins expectedFrame_;
  QTimer timer_;
  int ticks_ = 0;
  int settledTicks_ = 0;
};

/// The place that a window goes back to from the maximised state. A window
/// manager may report the maximised size a moment before the maximised state, or
/// after it: what was recorded last need not be the normal place.
class NormalPlace {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  /// The window stands here in the normal state; twips.
  void record(const QRect& outer, Moment now);

  /// The window is maximised and of this outer size, in twips; to be called at
  /// the change of state and at every change of size from then on.
  void windowMaximised(QSize outer, Moment now);

  /// The last place recorded, or, when the window is maximised, the last one
  /// that was not that of the maximised window already; twips. Null when none
  /// was recorded.
  [[nodiscard]] QRect latest() const;

 private:
  struct Record {
    Moment time;
    QRect outer;
  };

  [[nodiscard]] bool isOfMaximised(const Record& record) const;

  QList<Record> records_;  // oldest first
  QSize maximised_;        // invalid in the normal state
  Moment maximisedAt_{};
};

}  // namespace vel
