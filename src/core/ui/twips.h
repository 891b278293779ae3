#pragma once

#include <QRect>
#include <cmath>

namespace vel {

/// Twips (1/1440 inch) are 15 to one logical pixel on every screen.
constexpr int kTwipsPerPixel = 15;

[[nodiscard]] constexpr int toTwips(int pixels) { return pixels * kTwipsPerPixel; }
[[nodiscard]] constexpr int toPixels(int twips) { return twips / kTwipsPerPixel; }
[[nodiscard]] inline int toPixels(double twips) {
  return static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

[[nodiscard]] constexpr QRect toPixelRect(const QRect& twips) {
  return {toPixels(twips.x()), toPixels(twips.y()), toPixels(twips.width()),
          toPixels(twips.height())};
}
[[nodiscard]] constexpr QRect toTwipRect(const QRect& pixels) {
  return {toTwips(pixels.x()), toTwips(pixels.y()), toTwips(pixels.width()),
          toTwips(pixels.height())};
}

}  // namespace vel
