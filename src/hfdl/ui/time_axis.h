#pragma once

#include <QWidget>
#include <functional>

#include "hfdl/shapes.h"

namespace vel {

/// The upper part of a chart that lies over it, so that it stays in sight when
/// the chart is scrolled. Lets the mouse through.
class TimeAxis : public QWidget {
 public:
  /// Gives the axis for a surface of that width.
  using Maker = std::function<Drawing(double width, double ratio)>;

  TimeAxis(Maker make, QWidget* parent);

  /// Whether rows lie hidden under the axis: an edge is drawn then.
  void setCoversRows(bool covers);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Maker make_;
  bool coversRows_ = false;
};

}  // namespace vel
