#pragma once

namespace vel {

/// Twips (1/1440 inch) are 15 to one logical pixel on every screen.
constexpr int kTwipsPerPixel = 15;

[[nodiscard]] constexpr int toTwips(int pixels) { return pixels * kTwipsPerPixel; }
[[nodiscard]] constexpr int toPixels(int twips) { return twips / kTwipsPerPixel; }

}  // namespace vel
