#pragma once

#include <QVBoxLayout>
#include <QWidget>

namespace vel {

/// Keeps a hidden widget's place, so that nothing moves when it is shown.
inline void keepPlaceWhenHidden(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

/// The rows of a panel's column, without margins; spacing in pixels.
inline QVBoxLayout* makeRows(QWidget* column, int spacing) {
  auto* rows = new QVBoxLayout(column);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(spacing);
  return rows;
}

}  // namespace vel
