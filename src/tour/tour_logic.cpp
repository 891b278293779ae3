#include "tour/tour_logic.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <utility>
#include <vector>

#include "core/twips.h"

namespace vel {
namespace {

/// Lines of text that are longer than this are hard to read. Twips.
constexpr int kWidest = 12000;
constexpr int kGrowth = toTwips(8);

/// The place nearest to `wanted` at which `length` lies within the span.
int nearestWithin(int wanted, int length, int spanStart, int spanLength) {
  return std::max(spanStart, std::min(wanted, spanStart + spanLength - length));
}

bool covers(const TourRect& tour, const TourRect& control) {
  return tour.left < control.right() && control.left < tour.right() &&
         tour.top < control.bottom() && control.top < tour.bottom();
}

/// The places to try along one axis. A place nearest to the wanted one that
/// keeps clear of rectangles lies, on either axis, at the wanted coordinate or
/// touches one of them.
std::vector<int> placesAlong(int wanted, int length, int screenStart, int screenLength,
                             std::span<const TourRect> controls, int TourRect::*start,
                             int TourRect::*size) {
  std::vector<int> places = {wanted};
  for (const TourRect& control : controls) {
    places.push_back(control.*start - length);
    places.push_back(control.*start + control.*size);
  }
  for (int& place : places) place = nearestWithin(place, length, screenStart, screenLength);
  return places;
}

/// The place on a screen nearest to `wanted` that covers none of the controls;
/// nothing where there is none.
std::optional<TourPoint> clearPlace(const TourPoint& wanted, const TourSize& tour,
                                    std::span<const TourRect> screens,
                                    std::span<const TourRect> controls) {
  std::optional<TourPoint> best;
  auto bestDistance = std::numeric_limits<long long>::max();
  for (const TourRect& screen : screens) {
    const std::vector<int> tops = placesAlong(wanted.top, tour.height, screen.top, screen.height,
                                              controls, &TourRect::top, &TourRect::height);
    for (const int left : placesAlong(wanted.left, tour.width, screen.left, screen.width, controls,
                                      &TourRect::left, &TourRect::width)) {
      for (const int top : tops) {
        const long long dx = left - wanted.left;
        const long long dy = top - wanted.top;
        const long long distance = dx * dx + dy * dy;
        const TourRect place{left, top, tour.width, tour.height};
        const auto isCovered = [&place](const TourRect& control) { return covers(place, control); };
        if (distance < bestDistance && std::none_of(controls.begin(), controls.end(), isCovered)) {
          best = TourPoint{left, top};
          bestDistance = distance;
        }
      }
    }
  }
  return best;
}

TourPoint onScreen(const TourPoint& wanted, const TourSize& tour, std::span<const TourRect> screens,
                   std::span<const TourRect> controls) {
  const TourPoint nearest = clearPlace(wanted, tour, screens, {}).value_or(wanted);
  if (nearest == wanted) return wanted;
  return clearPlace(wanted, tour, screens, controls).value_or(nearest);
}

/// The step's place wherever the screens end; nothing for no step.
std::optional<TourPoint> ownPlace(int step, const TourRect& mainWindow, int panelTop,
                                  const TourSize& tour) {
  const TourStep* found = tourStep(step);
  if (found == nullptr) return std::nullopt;
  TourPoint wanted{mainWindow.left + found->left,
                   mainWindow.top + found->top + (found->panel ? panelTop : 0)};
  if (found->place == TourPlace::rightOfWindow) wanted.left += mainWindow.width;
  if (found->place == TourPlace::centred) {
    wanted = {mainWindow.left + (mainWindow.width - tour.width) / 2,
              mainWindow.top + (mainWindow.height - tour.height) / 2};
  }
  return wanted;
}

/// Tells which sizes the tour window may have at a step.
class Room {
 public:
  Room(int step, const TourRect& mainWindow, int panelTop, const TourSize& least,
       std::span<const TourRect> screens, std::span<const TourRect> controls)
      : step_(step),
        mainWindow_(mainWindow),
        panelTop_(panelTop),
        screens_(screens),
        controls_(controls),
        leastPlace_(placeOf(least)),
        standsAtOwnPlace_(leastPlace_ == ownPlaceOf(least)) {
    for (const TourRect& control : controls) {
      if (!covers(rectOf(leastPlace_, least), control)) clear_.push_back(control);
    }
  }

  /// Where the window stands with this size.
  [[nodiscard]] TourRect rectOf(const TourSize& size) const { return rectOf(placeOf(size), size); }

  /// How far from the step's own place that is; 0 for a window that its least
  /// size already keeps away from there.
  [[nodiscard]] long long distance(const TourSize& size) const {
    if (!standsAtOwnPlace_) return 0;
    const TourPoint place = placeOf(size);
    const TourPoint own = ownPlaceOf(size);
    const long long dx = place.left - own.left;
    const long long dy = place.top - own.top;
    return dx * dx + dy * dy;
  }

  /// True when the window stands on a screen and clear of the controls.
  [[nodiscard]] bool holds(const TourSize& size) const {
    const TourRect rect = rectOf(size);
    const bool isOnScreen =
        screens_.empty() || std::any_of(screens_.begin(), screens_.end(), [&](const TourRect& s) {
          return rect.left >= s.left && rect.top >= s.top && rect.right() <= s.right() &&
                 rect.bottom() <= s.bottom();
        });
    return isOnScreen && std::none_of(clear_.begin(), clear_.end(), [&](const TourRect& control) {
             return covers(rect, control);
           });
  }

 private:
  static TourRect rectOf(const TourPoint& place, const TourSize& size) {
    return {place.left, place.top, size.width, size.height};
  }
  [[nodiscard]] TourPoint ownPlaceOf(const TourSize& size) const {
    return ownPlace(step_, mainWindow_, panelTop_, size).value_or(TourPoint());
  }
  [[nodiscard]] TourPoint placeOf(const TourSize& size) const {
    return onScreen(ownPlaceOf(size), size, screens_, controls_);
  }

  int step_;
  TourRect mainWindow_;
  int panelTop_;
  std::span<const TourRect> screens_;
  std::span<const TourRect> controls_;
  TourPoint leastPlace_;
  bool standsAtOwnPlace_;
  std::vector<TourRect> clear_;
};

/// How far a size is from the shape of the least one: 0 for the same shape.
double shapeOff(const TourSize& size, const TourSize& least) {
  return std::abs(std::log(static_cast<double>(size.width) * least.height /
                           (static_cast<double>(size.height) * least.width)));
}

/// The height at which a window of this width, no lower than given, shows the
/// whole text. A higher one may stand elsewhere, with its arrow at another edge.
int wholeHeight(const Room& room, TourSize size, const TourHeight& needed) {
  constexpr int kMostPlaces = 4;
  for (int places = 0; places < kMostPlaces; ++places) {
    const int height = needed(room.rectOf(size));
    if (height <= size.height) break;
    size.height = height;
  }
  return size.height;
}

/// How far the control lies beyond each edge of the tour window; negative
/// where it does not.
struct Gaps {
  int left;
  int top;
  int right;
  int bottom;
  [[nodiscard]] int sideways() const { return std::max(left, right); }
  [[nodiscard]] int upright() const { return std::max(top, bottom); }
  [[nodiscard]] bool outside() const { return sideways() >= 0 || upright() >= 0; }
};

Gaps gapsBetween(const TourRect& tour, const TourRect& control) {
  return {tour.left - control.right(), tour.top - control.bottom(), control.left - tour.right(),
          control.top - tour.bottom()};
}

TourEdge edgeTowards(const Gaps& gaps) {
  if (gaps.sideways() >= gaps.upright()) {
    return gaps.left >= gaps.right ? TourEdge::left : TourEdge::right;
  }
  return gaps.top >= gaps.bottom ? TourEdge::top : TourEdge::bottom;
}

/// The part of the control on that side of the tour window where it sticks out
/// furthest; the control itself when it sticks out nowhere.
TourRect partInSight(const TourRect& tour, const TourRect& control) {
  const int left = tour.left - control.left;
  const int top = tour.top - control.top;
  const int right = control.right() - tour.right();
  const int bottom = control.bottom() - tour.bottom();
  const int furthest = std::max({left, top, right, bottom});
  if (furthest <= 0) return control;
  if (left == furthest) return {control.left, control.top, left, control.height};
  if (right == furthest) return {tour.right(), control.top, right, control.height};
  if (top == furthest) return {control.left, control.top, control.width, top};
  return {control.left, tour.bottom(), control.width, bottom};
}

bool isUpright(TourEdge edge) { return edge == TourEdge::left || edge == TourEdge::right; }

double outwardAngle(TourEdge edge) {
  switch (edge) {
    case TourEdge::right:
      return 0;
    case TourEdge::bottom:
      return 90;
    case TourEdge::left:
      return 180;
    case TourEdge::top:
      break;
  }
  return 270;
}

/// The middle of what two spans share; where they share nothing, the middle of
/// the second one.
int middleOfShared(int start, int end, int otherStart, int otherEnd) {
  const int from = std::max(start, otherStart);
  const int to = std::min(end, otherEnd);
  return from < to ? from + (to - from) / 2 : otherStart + (otherEnd - otherStart) / 2;
}

/// The coordinate of a span nearest to `from`, but not at its very rim: a
/// pointer that aims there visibly hits the control.
double aimWithin(double from, int start, int length, int rim) {
  const double inset = std::min(length / 2.0, static_cast<double>(rim));
  return std::clamp(from, start + inset, start + length - inset);
}

double angleTowards(const TourPoint& from, const TourRect& control, TourEdge edge, int rim) {
  const double dx = aimWithin(from.left, control.left, control.width, rim) - from.left;
  const double dy = aimWithin(from.top, control.top, control.height, rim) - from.top;
  if (dx == 0 && dy == 0) return outwardAngle(edge);
  const double degrees = std::atan2(dy, dx) * 180 / std::numbers::pi;
  return degrees < 0 ? degrees + 360 : degrees;
}

long long distanceBetween(const TourRect& tour, const TourRect& control) {
  const Gaps gaps = gapsBetween(tour, control);
  const long long dx = std::max(gaps.sideways(), 0);
  const long long dy = std::max(gaps.upright(), 0);
  return dx * dx + dy * dy;
}

/// A pointer under way to its place.
struct Placing {
  std::size_t picture;
  TourEdge edge;
  int along;
  std::optional<TourRect> target;
};

Placing placeAt(std::size_t picture, const TourRect& tour, const TourRect& control) {
  Placing placing{picture, TourEdge::left, 0, control};
  if (gapsBetween(tour, control).outside()) {
    placing.edge = edgeTowards(gapsBetween(tour, control));
  } else {
    const TourRect part = partInSight(tour, control);
    placing.target = part;
    // Of a control wholly under the window no part is in sight: its middle
    // tells which edge is nearest.
    const TourRect middle{part.left + part.width / 2, part.top + part.height / 2, 0, 0};
    placing.edge = edgeTowards(gapsBetween(tour, part == control ? middle : part));
  }
  const TourRect& target = *placing.target;
  placing.along =
      isUpright(placing.edge)
          ? middleOfShared(tour.top, tour.bottom(), target.top, target.bottom()) - tour.top
          : middleOfShared(tour.left, tour.right(), target.left, target.right()) - tour.left;
  return placing;
}

Placing placeWithoutControl(std::size_t picture, const TourRect& tour) {
  return {picture, picture % 2 == 0 ? TourEdge::left : TourEdge::right,
          picture < 2 ? tour.height / 4 : tour.height - tour.height / 4, std::nullopt};
}

/// Keeps the pictures of one edge within it and off each other.
void spread(std::vector<Placing*>& onEdge, int length, int size) {
  const int spacing = size + size / 4;
  const int first = size / 2;
  const int last = std::max(first, length - (size - size / 2));
  std::stable_sort(onEdge.begin(), onEdge.end(),
                   [](const Placing* a, const Placing* b) { return a->along < b->along; });
  int lowest = first;
  for (Placing* placing : onEdge) {
    placing->along = std::max(placing->along, lowest);
    lowest = placing->along + spacing;
  }
  int highest = last;
  for (auto placing = onEdge.rbegin(); placing != onEdge.rend(); ++placing) {
    (*placing)->along = std::max(first, std::min((*placing)->along, highest));
    highest = (*placing)->along - spacing;
  }
}

std::vector<Placing> placeAll(const PointerSet& pointers, const TourRect& tour,
                              std::span<const TourRect> controls, int size) {
  std::vector<std::size_t> pictures;
  for (std::size_t i = 0; i < pointers.size(); ++i) {
    if (pointers[i]) pictures.push_back(i);
  }
  std::vector<TourRect> nearest(controls.begin(), controls.end());
  if (nearest.size() > pictures.size()) {
    std::stable_sort(nearest.begin(), nearest.end(), [&](const TourRect& a, const TourRect& b) {
      return distanceBetween(tour, a) < distanceBetween(tour, b);
    });
  }

  std::vector<Placing> placings;
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    if (nearest.empty()) {
      placings.push_back(placeWithoutControl(pictures[i], tour));
      continue;
    }
    const std::size_t count = nearest.size();
    Placing placing = placeAt(pictures[i], tour, nearest[i % count]);
    const std::size_t sharing = (pictures.size() - i % count + count - 1) / count;
    const int spacing = size + size / 4;
    placing.along +=
        (2 * static_cast<int>(i / count) - static_cast<int>(sharing) + 1) * spacing / 2;
    placings.push_back(placing);
  }
  return placings;
}

}  // namespace

PointerSet pointersOf(int step) {
  const TourStep* found = tourStep(step);
  return found == nullptr ? PointerSet{} : found->pointers;
}

PointerSet visiblePointers(Blink blink, const PointerSet& pointers) {
  return blink == Blink::on ? pointers : PointerSet{};
}

std::optional<TourPoint> tourPosition(int step, const TourRect& mainWindow, int panelTop,
                                      const TourSize& tour, std::span<const TourRect> screens,
                                      std::span<const TourRect> controls) {
  const std::optional<TourPoint> wanted = ownPlace(step, mainWindow, panelTop, tour);
  if (!wanted) return std::nullopt;
  return onScreen(*wanted, tour, screens, controls);
}

TourSize tourSize(int step, const TourRect& mainWindow, int panelTop, const TourSize& least,
                  std::span<const TourRect> screens, std::span<const TourRect> controls,
                  const TourHeight& needed) {
  if (tourStep(step) == nullptr) return least;
  const Room room(step, mainWindow, panelTop, least, screens, controls);
  // Nearest to the step's own place first, then of the best shape.
  using Merit = std::pair<long long, double>;
  std::optional<TourSize> whole;
  Merit wholeMerit;
  TourSize most = least;
  double mostShown = 0;
  for (int width = least.width; width <= kWidest; width += kGrowth) {
    const TourSize size{width, wholeHeight(room, {width, least.height}, needed)};
    if (room.holds(size)) {
      const Merit merit(room.distance(size), shapeOff(size, least));
      if (!whole || merit < wholeMerit) {
        whole = size;
        wholeMerit = merit;
      }
      continue;
    }
    if (whole) continue;
    TourSize part = size;
    const auto stays = [&room, &part] { return room.distance(part) == 0 && room.holds(part); };
    while (part.height > least.height && !stays()) {
      part.height = std::max(least.height, part.height - kGrowth);
    }
    const double shown = static_cast<double>(part.height) / size.height;
    if (stays() && shown > mostShown) {
      most = part;
      mostShown = shown;
    }
  }
  return whole.value_or(most);
}

TourPoint pointerMiddle(const TourRect& tour, const TourPointer& pointer, int size) {
  const int near = size / 2;
  const int far = size - near;
  switch (pointer.edge) {
    case TourEdge::left:
      return {tour.left + near, tour.top + pointer.along};
    case TourEdge::right:
      return {tour.right() - far, tour.top + pointer.along};
    case TourEdge::top:
      return {tour.left + pointer.along, tour.top + near};
    case TourEdge::bottom:
      break;
  }
  return {tour.left + pointer.along, tour.bottom() - far};
}

std::array<std::optional<TourPointer>, kTourPointerCount> placePointers(
    const PointerSet& pointers, const TourRect& tour, std::span<const TourRect> controls,
    int size) {
  std::vector<Placing> placings = placeAll(pointers, tour, controls, size);
  for (const TourEdge edge : {TourEdge::left, TourEdge::top, TourEdge::right, TourEdge::bottom}) {
    std::vector<Placing*> onEdge;
    for (Placing& placing : placings) {
      if (placing.edge == edge) onEdge.push_back(&placing);
    }
    spread(onEdge, isUpright(edge) ? tour.height : tour.width, size);
  }

  std::array<std::optional<TourPointer>, kTourPointerCount> placed;
  for (const Placing& placing : placings) {
    TourPointer pointer{placing.edge, placing.along, outwardAngle(placing.edge)};
    if (placing.target) {
      pointer.angle =
          angleTowards(pointerMiddle(tour, pointer, size), *placing.target, pointer.edge, size / 2);
    }
    placed[placing.picture] = pointer;
  }
  return placed;
}

std::string positionReport(int step, const TourPoint& tour, const TourPoint& mainWindow,
                           int panelTop) {
  const int top = tour.top - mainWindow.top;
  return "P=" + std::to_string(step) + " Top=" + std::to_string(top) +
         " / Left=" + std::to_string(tour.left - mainWindow.left) +
         " / Form1+Frame4-Top=" + std::to_string(top - panelTop);
}

std::string nextButtonReport(const TourPoint& tour, const TourPoint& mainWindow) {
  return std::to_string(tour.left - mainWindow.left) + "<-left top->" +
         std::to_string(tour.top - mainWindow.top);
}

}  // namespace vel
