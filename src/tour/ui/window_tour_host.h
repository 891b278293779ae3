#pragma once

#include <QPointer>

#include "tour/tour_steps.h"
#include "tour/ui/tour_host.h"

namespace vel {

/// The tour's view of a real window: controls are found by their object names,
/// column titles and rows in its list `xLView1`, the panel as `Frame4`.
class WindowTourHost : public TourHost {
 public:
  /// The window is not owned; nothing is found once it is gone.
  explicit WindowTourHost(QWidget* window) : window_(window) {}

  [[nodiscard]] QRect outerGeometry() const override;
  [[nodiscard]] int panelTop() const override;
  [[nodiscard]] QList<QRect> controlsOf(int step) const override;
  [[nodiscard]] QWidget* window() const override { return window_; }

 private:
  [[nodiscard]] QRect rectangleOf(const TourTarget& target) const;

  QPointer<QWidget> window_;
};

}  // namespace vel
