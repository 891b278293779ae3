#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QRect>
#include <QTimer>

class QWidget;

namespace vel {

/// A window's outer rectangle, title bar included, in twips.
[[nodiscard]] QRect outerTwips(const QWidget& window);

/// An outer rectangle in pixels, of a sane size and moved so that its title bar
/// can be reached on some screen.
[[nodiscard]] QRect reachable(QRect outer);

/// Puts a window's outer rectangle where it is wanted. How wide its frame is,
/// the window manager says only some time after the window was shown: until
/// then the place is put right again and again.
class OuterPlacement : public QObject {
  Q_OBJECT

 public:
  /// The window owns this object.
  explicit OuterPlacement(QWidget& window);

  /// Moves and sizes the window so that its outer rectangle is this one, in
  /// twips, moved so that its title bar can be reached on some screen.
  void place(const QRect& outer);

  /// To be called when the window is shown.
  void windowShown();

  /// True while the window does not stand where it is wanted yet.
  [[nodiscard]] bool isSettling() const { return !wanted_.isNull() && timer_.isActive(); }

 Q_SIGNALS:
  /// The window stands where it is wanted with its frame, or will not go there.
  void settled();

 private:
  void settle();
  void apply();

  QWidget& window_;
  QRect wanted_;  // pixels; null when the window stands where it should
  QTimer timer_;
  int ticks_ = 0;
  int settledTicks_ = 0;
};

/// Tells a normal place that stood for a while from one that was recorded the
/// moment before the window left the normal state: a window manager reports a
/// new size before the new state.
class SteadyPlace {
 public:
  /// `before` is about to be replaced as the window's normal place.
  void replacing(const QRect& before);

  /// The window left the normal state: the place to go back to when the last
  /// one was recorded only just now, else null.
  [[nodiscard]] QRect placeToGoBackTo() const;

 private:
  QRect steady_;
  QElapsedTimer sinceReplaced_;
};

}  // namespace vel
