#include "samples/geo.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vel::samples {
namespace {

constexpr double kEarthRadiusKm = 6371.0;
constexpr double kRadians = std::numbers::pi / 180.0;

/// The angle between the two places at the earth's centre, in radians.
double centralAngle(Place a, Place b) {
  const double dLat = (b.latitude - a.latitude) * kRadians / 2;
  const double dLon = (b.longitude - a.longitude) * kRadians / 2;
  const double h = std::sin(dLat) * std::sin(dLat) + std::cos(a.latitude * kRadians) *
                                                         std::cos(b.latitude * kRadians) *
                                                         std::sin(dLon) * std::sin(dLon);
  return 2 * std::asin(std::min(1.0, std::sqrt(h)));
}

}  // namespace

double distanceKm(Place a, Place b) { return kEarthRadiusKm * centralAngle(a, b); }

Place alongRoute(Place a, Place b, double fraction) {
  const double angle = centralAngle(a, b);
  if (angle < 1e-9) return a;
  const double f = std::clamp(fraction, 0.0, 1.0);
  const double fromA = std::sin((1 - f) * angle) / std::sin(angle);
  const double fromB = std::sin(f * angle) / std::sin(angle);
  const double lat1 = a.latitude * kRadians;
  const double lon1 = a.longitude * kRadians;
  const double lat2 = b.latitude * kRadians;
  const double lon2 = b.longitude * kRadians;
  const double x =
      fromA * std::cos(lat1) * std::cos(lon1) + fromB * std::cos(lat2) * std::cos(lon2);
  const double y =
      fromA * std::cos(lat1) * std::sin(lon1) + fromB * std::cos(lat2) * std::sin(lon2);
  const double z = fromA * std::sin(lat1) + fromB * std::sin(lat2);
  return {std::atan2(z, std::hypot(x, y)) / kRadians, std::atan2(y, x) / kRadians};
}

}  // namespace vel::samples
