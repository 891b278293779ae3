#pragma once

#include <QWidget>
#include <algorithm>

namespace vel {

/// Gives a widget smaller letters, three quarters of its font at least, where a
/// larger font would take more pixels than it was designed for: what stands
/// beside it keeps its place.
inline void narrowLetters(QWidget& widget, int needed, int designed) {
  constexpr double kLeast = 0.75;
  if (needed <= designed) return;
  QFont font = widget.font();
  font.setPointSizeF(font.pointSizeF() * std::max(kLeast, static_cast<double>(designed) / needed));
  widget.setFont(font);
}

}  // namespace vel
