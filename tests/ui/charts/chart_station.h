#pragma once

#include <QImage>
#include <QTest>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "hfdl/shapes.h"
#include "tests/ui/support/test_station.h"

namespace vel::test {

/// A station at noon on 17 November 2026.
class ChartStation : public TestStation {
 public:
  ChartStation() {
    use();
    desktop.time = std::chrono::local_days(std::chrono::year(2026) / 11 / 17) +
                   std::chrono::hours(12) + std::chrono::minutes(5) + std::chrono::seconds(30);
  }
};

inline QColor toQColor(Colour colour) { return QColor(colour.red, colour.green, colour.blue); }

/// The colour of a picture at a point in logical pixels.
inline QColor colourAt(const QImage& picture, double x, double y) {
  const double ratio = picture.devicePixelRatio();
  return picture.pixelColor(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
}

/// Lets what is queued run until `done`, at most five seconds.
template <typename Condition>
bool waitFor(Condition done) {
  return QTest::qWaitFor(done, 5000);
}

}  // namespace vel::test
