#pragma once

#include <QLabel>
#include <QWidget>

namespace vel {

/// A pointer picture of the tour: an arrow in a square, drawn at any angle.
class PointerPicture : public QWidget {
  Q_OBJECT
  /// Degrees: 0 right, 90 down, 180 left, 270 up.
  Q_PROPERTY(double angle READ angle WRITE setAngle)

 public:
  explicit PointerPicture(QWidget* parent);

  [[nodiscard]] double angle() const { return angle_; }
  void setAngle(double degrees);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double angle_ = 0;
};

/// The coloured frame around a control while its step is shown. It lies over
/// its parent, in no layout, and lets the mouse through.
class ControlFrame : public QWidget {
  Q_OBJECT

 public:
  explicit ControlFrame(QWidget* parent);

  /// The place that the frame around a control takes.
  [[nodiscard]] static QRect around(const QRect& control);

  /// Frames what lies at this place of the parent; the lines stay within it.
  void frame(const QRect& control);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A small label that can be clicked and shows its whole text in whatever room
/// it has, in several lines and smaller letters where needed.
class PositionLabel : public QLabel {
  Q_OBJECT

 public:
  explicit PositionLabel(QWidget* parent);

 Q_SIGNALS:
  void clicked();

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace vel
