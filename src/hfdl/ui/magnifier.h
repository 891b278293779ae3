#pragma once

#include <QDialog>
#include <QImage>
#include <QPoint>
#include <functional>
#include <optional>

#include "hfdl/shapes.h"

namespace vel {

/// Shows a square of 150 x 150 pixels of a picture four times enlarged, and
/// below it the axis of that part. It is taken anew each time the window is
/// shown; clicks do nothing. On a screen that is too small for it, the window
/// shows a part and scrolls.
class Magnifier : public QDialog {
  Q_OBJECT

 public:
  static constexpr int kSquare = 150;  ///< side of the square, in pixels of the picture
  static constexpr int kTimes = 4;
  /// The colour of points outside the picture.
  static constexpr QRgb kOutside = qRgb(225, 225, 225);

  /// Gives that part of the picture with the screen's device pixels;
  /// transparent where it reaches outside the picture.
  using Sampler = std::function<QImage(const QRect& area)>;

  /// Gives the axis of that part of the picture, kTimes as wide as the part.
  using Axis = std::function<Drawing(const QRect& area)>;

  /// Without `axis` there is none.
  Magnifier(Sampler picture, Axis axis, QWidget* parent);

  /// The point around which the next activation enlarges. An activation
  /// without a new one moves the square up and left by half its side.
  void setCentre(int x, int y);

  /// What the centre has become: the upper left corner of the square, less one
  /// pixel in both directions.
  [[nodiscard]] QPoint origin() const { return origin_; }

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void takeSquare();

  Sampler picture_;
  Axis axis_;
  class Surface;

  QPoint origin_;
  Surface* surface_ = nullptr;
};

}  // namespace vel
