#pragma once

#include <QRect>
#include <cmath>

#include "core/twips.h"

namespace vel {

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
