#pragma once

#include <QDialog>
#include <QImage>
#include <QPoint>
#include <functional>

namespace vel {

/// Shows a square of 150 x 150 pixels of a picture four times enlarged. It is
/// taken anew each time the window is shown; clicks do nothing.
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

  Magnifier(Sampler picture, QWidget* parent);

  /// The point around which the next activation enlarges. An activation
  /// without a new one moves the square up and left by half its side.
  void setCentre(int x, int y);

  void Form_Activate();

  /// What the centre has become: the upper left corner of the square, less one
  /// pixel in both directions.
  [[nodiscard]] QPoint origin() const { return origin_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  Sampler picture_;
  QPoint origin_;
  QImage square_;
};

}  // namespace vel
