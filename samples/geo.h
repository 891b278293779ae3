#pragma once

namespace vel::samples {

/// Degrees; south and west negative.
struct Place {
  double latitude = 0;
  double longitude = 0;
};

/// Great-circle distance in kilometres.
double distanceKm(Place a, Place b);

/// The place on the great circle from `a` to `b` after `fraction` (0 to 1) of
/// the way.
Place alongRoute(Place a, Place b, double fraction);

}  // namespace vel::samples
