#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vel {

/// What a chart is made of. Coordinates are logical pixels from the top left.
struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Colour&, const Colour&) = default;
};

/// A filled rectangle without an outline.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  Colour colour;
  friend bool operator==(const Rect&, const Rect&) = default;
};

/// A level or upright line one logical pixel wide: to the right of (and below) its coordinates.
struct Line {
  double x1 = 0;
  double y1 = 0;
  double x2 = 0;
  double y2 = 0;
  Colour colour;
  friend bool operator==(const Line&, const Line&) = default;
};

enum class Align { left, centre, right };

/// A text on a transparent ground. `x` is its left edge, middle or right edge,
/// `y` its top; `points` is its size, 4/3 logical pixels to a point.
struct Text {
  double x = 0;
  double y = 0;
  std::string text;
  Colour colour;
  double points = 0;
  Align align = Align::left;
  friend bool operator==(const Text&, const Text&) = default;
};

/// Height of a text's line in logical pixels.
[[nodiscard]] constexpr double textHeight(double points) { return points * 4 / 3; }

using Shape = std::variant<Rect, Line, Text>;

enum class ChartFont {
  mincho,  ///< "ＭＳ 明朝"
  gothic,  ///< "ＭＳ ゴシック", fixed pitch
};

/// A chart: shapes on a white ground, to be painted in their order.
struct Drawing {
  double width = 0;
  double height = 0;
  ChartFont font = ChartFont::gothic;
  std::vector<Shape> shapes;
};

/// The nearest edge of a device pixel; `ratio` is device pixels to a logical
/// one. Shapes whose edges lie there are crisp on every screen.
[[nodiscard]] inline double snapped(double coordinate, double ratio) {
  return std::floor(coordinate * ratio + 0.5) / ratio;
}

}  // namespace vel
