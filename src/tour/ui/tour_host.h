#pragma once

#include <QList>
#include <QRect>
#include <QWidget>

namespace vel {

/// The window that the tour walks through: the ACARS browser, or a test's own.
class TourHost {
 public:
  virtual ~TourHost() = default;

  /// The window with its frame, in logical pixels on the screen.
  [[nodiscard]] virtual QRect outerGeometry() const = 0;

  /// The top of the detail panel `Frame4` within the window, in twips.
  [[nodiscard]] virtual int panelTop() const = 0;

  /// What the step explains, see TourStep::targets: one rectangle each, in
  /// logical pixels on the screen. Empty for a step without a control; a
  /// control that is hidden is left out.
  [[nodiscard]] virtual QList<QRect> controlsOf(int step) const = 0;

  /// The window itself: the tour is modal over it and draws its frames on it.
  [[nodiscard]] virtual QWidget* window() const = 0;
};

}  // namespace vel
