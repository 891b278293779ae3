#pragma once

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <algorithm>

#include "core/ui/outer_placement.h"

namespace vel::test {

/// Waits until every window stands where it is wanted: its place is put right
/// for a moment after it was shown. False where one never does.
inline bool placesSettle() {
  const auto settled = [] {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::none_of(windows.begin(), windows.end(), [](const QWidget* window) {
      const auto* placement =
          window->findChild<OuterPlacement*>(QString(), Qt::FindDirectChildrenOnly);
      return placement != nullptr && window->isVisible() && placement->isWatching();
    });
  };
  QCoreApplication::processEvents();
  return QTest::qWaitFor(settled, 30'000);
}

}  // namespace vel::test
