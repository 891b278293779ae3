#pragma once

#include <QGroupBox>

namespace vel {

/// Gives a frame's title smaller letters than its controls, which are all
/// there already: the panels below the lists are low.
inline void useSmallTitle(QGroupBox& frame) {
  constexpr double kScale = 0.85;
  // Setting a size, also the one it has, keeps a font from taking its parent's.
  QFont usual = frame.font();
  usual.setPointSizeF(usual.pointSizeF());
  QFont small = usual;
  small.setPointSizeF(usual.pointSizeF() * kScale);
  frame.setFont(small);
  for (QWidget* child : frame.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    child->setFont(usual);
  }
}

}  // namespace vel
