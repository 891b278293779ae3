#include "app/ui/common_place.h"

#include <algorithm>
#include <cmath>

namespace vel {
namespace {

// Saved sizes below these, in twips, count as none.
constexpr int kSmallestSavedWidth = 2000;
constexpr int kSmallestSavedHeight = 500;
// Far beyond every screen, and still a number that fits.
constexpr double kFarthest = 1'000'000;

int wholeTwips(double twips) {
  return static_cast<int>(std::lround(std::clamp(twips, -kFarthest, kFarthest)));
}

}  // namespace

void CommonPlace::settingsLoaded() {
  startingUp_ = false;
  const bool saved = settings_.env_Form1_Width >= kSmallestSavedWidth &&
                     settings_.env_Form1_Height >= kSmallestSavedHeight;
  if (!saved) return;
  normal_ = QRect(wholeTwips(settings_.env_Form1_Left), wholeTwips(settings_.env_Form1_Top),
                  wholeTwips(settings_.env_Form1_Width), wholeTwips(settings_.env_Form1_Height));
  state_ = settings_.env_Form1_WinS == kMaximised ? kMaximised : kNormal;
}

void CommonPlace::recordState(WindowState state) {
  state_ = state;
  settings_.env_Form1_WinS = state;
}

void CommonPlace::recordNormal(const QRect& outer) {
  normal_ = outer;
  settings_.env_Form1_Top = outer.y();
  settings_.env_Form1_Left = outer.x();
  settings_.env_Form1_Height = outer.height();
  settings_.env_Form1_Width = outer.width();
}

void CommonPlace::recordUnload(QPoint corner) {
  if (!firstUnload_) return;
  firstUnload_ = false;
  settings_.env_Form1_Top = corner.y();
  settings_.env_Form1_Left = corner.x();
}

}  // namespace vel
