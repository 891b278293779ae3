#pragma once

#include <QAction>
#include <QImage>
#include <QPoint>
#include <QWidget>
#include <functional>
#include <optional>

#include "core/desktop.h"
#include "hfdl/shapes.h"

namespace vel {

/// The surface of a chart: white in every theme, drawn anew for every size and
/// scale, and saved or copied as a picture.
class ChartPicture : public QWidget {
  Q_OBJECT

 public:
  /// Gives the chart for a surface of that size in logical pixels, with so many
  /// device pixels to a logical one.
  using Maker = std::function<Drawing(double width, double height, double ratio)>;

  /// `fileName` is what a saved picture is called unless the user says
  /// otherwise. The desktop outlives the surface.
  ChartPicture(Desktop& desktop, QString fileName, QWidget* parent);

  /// Shows what `make` gives, now and whenever size or scale change.
  void setChart(Maker make);

  /// Marks a point on the screen, for who works with the keys; nothing removes
  /// the mark. It is no part of the chart.
  void setPoint(std::optional<QPoint> point);
  [[nodiscard]] std::optional<QPoint> point() const { return point_; }

  /// The shown chart, as it is on the screen.
  [[nodiscard]] const Drawing& drawing() const;
  /// The whole chart with the screen's device pixels.
  [[nodiscard]] QImage picture() const;
  /// A part of it; what lies outside the chart is transparent.
  [[nodiscard]] QImage picture(const QRect& area) const;

  /// "Save picture as PNG..." (Ctrl+S) and "Copy picture" (Ctrl+C).
  [[nodiscard]] QAction* saveAction() const { return save_; }
  [[nodiscard]] QAction* copyAction() const { return copy_; }

  /// Asks for the file to save to; an empty name saves nothing. A dialog,
  /// unless a test sets something else.
  std::function<QString(const QString& fileName)> chooseFile;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  void paintFocus(QPainter& painter) const;
  void savePicture();
  void copyPicture() const;

  Desktop& desktop_;
  QString fileName_;
  QAction* save_;
  QAction* copy_;
  Maker make_;
  std::optional<QPoint> point_;
  bool framesFocus_ = false;
  // The chart for the size and scale at which it was drawn last.
  mutable std::optional<Drawing> drawing_;
  mutable QSize drawnSize_;
  mutable double drawnRatio_ = 0;
};

}  // namespace vel
