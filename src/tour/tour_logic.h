#pragma once

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "tour/tour_steps.h"

namespace vel {

/// Time between two ticks of the pointers' blinking.
inline constexpr int kTourBlinkMilliseconds = 500;

/// A point, size or rectangle of the tour, in the unit that the function that
/// takes it names.
struct TourPoint {
  int left = 0;
  int top = 0;
  bool operator==(const TourPoint&) const = default;
};
struct TourSize {
  int width = 0;
  int height = 0;
  bool operator==(const TourSize&) const = default;
};
struct TourRect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  [[nodiscard]] constexpr int right() const { return left + width; }
  [[nodiscard]] constexpr int bottom() const { return top + height; }
  bool operator==(const TourRect&) const = default;
};

/// Where the tour stands. It outlives the tour window, so that the tour
/// resumes where it was left; the ACARS window sets the step to 1 as it loads.
struct TourState {
  int step = kFirstTourStep;
};

/// The step after this one: 30, the end, after the last.
[[nodiscard]] constexpr int stepAfter(int step) { return step + 1; }

/// The step before this one: the last one before the first.
[[nodiscard]] constexpr int stepBefore(int step) {
  return step - 1 < kFirstTourStep ? kLastTourStep : step - 1;
}

/// The pointers of a step; none for a number that is no step.
[[nodiscard]] PointerSet pointersOf(int step);

/// Pointers blink: they are there, then they are not.
enum class Blink { on, off };

/// The pointers that are visible: those of the step while the blink is on.
[[nodiscard]] PointerSet visiblePointers(Blink blink, const PointerSet& pointers);

/// The top left corner of the tour window for a step of 1 to 29, or nothing
/// for another number. Everything is in twips and outer sizes; `panelTop` is
/// the detail panel's top within the main window. The step's place holds
/// wherever it is on a screen. Where it is on none: the nearest place on one at
/// which the tour window covers nothing of `controls`, else the nearest one at
/// all; on a screen smaller than the tour window, that screen's own corner.
/// Without a screen, the step's place.
[[nodiscard]] std::optional<TourPoint> tourPosition(int step, const TourRect& mainWindow,
                                                    int panelTop, const TourSize& tour,
                                                    std::span<const TourRect> screens,
                                                    std::span<const TourRect> controls);

/// The outer height that the tour window needs to show all of a text where it
/// stands with its outer place and width; an arrow takes room at the edge that
/// is nearest a control. Twips.
using TourHeight = std::function<int(const TourRect& outer)>;

/// The outer size of the tour window for a step of 1 to 29, in twips: `least`,
/// or one that is larger in the same shape where the text needs it, as far as
/// the window then still stands at the same place of the step, on a screen, and
/// covers no more of `controls` than at its least size. Where no such size
/// shows the whole text, one that does at the nearest place on a screen; where
/// none does at all, the one that shows most of it. The rest as for
/// tourPosition, whose place this size is for.
[[nodiscard]] TourSize tourSize(int step, const TourRect& mainWindow, int panelTop,
                                const TourSize& least, std::span<const TourRect> screens,
                                std::span<const TourRect> controls, const TourHeight& needed);

enum class TourEdge { left, top, right, bottom };

/// Where a pointer picture stands and where it points.
struct TourPointer {
  TourEdge edge = TourEdge::left;
  /// From the edge's left or top end to the middle of the picture.
  int along = 0;
  /// Direction in degrees: 0 right, 90 down, 180 left, 270 up; 0 to below 360.
  double angle = 0;
  bool operator==(const TourPointer&) const = default;
};

/// The middle of a pointer picture of `size` that stands at the very edge
/// inside the tour window.
[[nodiscard]] TourPoint pointerMiddle(const TourRect& tour, const TourPointer& pointer, int size);

/// One entry for each pointer of the set, nothing for the others. Each stands
/// on the edge of the tour window nearest its control and points at it; of a
/// control that the tour window partly covers, at the part that sticks out
/// furthest.
/// A single pointer takes the nearest of several controls; several pointers at
/// one control stand side by side. Without a control, pointers 0 and 2 point
/// left, 1 and 3 right, out of the window. Any unit, the same for all; `size`
/// is the side of the square that a picture takes.
[[nodiscard]] std::array<std::optional<TourPointer>, kTourPointerCount> placePointers(
    const PointerSet& pointers, const TourRect& tour, std::span<const TourRect> controls, int size);

/// The position label after a click on it. Twips.
[[nodiscard]] std::string positionReport(int step, const TourPoint& tour,
                                         const TourPoint& mainWindow, int panelTop);

/// The position label after the next button. Twips.
[[nodiscard]] std::string nextButtonReport(const TourPoint& tour, const TourPoint& mainWindow);

}  // namespace vel
