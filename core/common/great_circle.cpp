#include "core/common/great_circle.h"

#include <algorithm>
#include <cmath>

namespace qmv {

double greatCircleDistance(Coordinate from, Coordinate to) {
  constexpr double kRadians = 3.14159265358979323846 / 180.0;
  const double phi1 = from.latitude * kRadians;
  const double phi2 = to.latitude * kRadians;
  const double sinHalfDPhi = std::sin((phi2 - phi1) / 2.0);
  const double sinHalfDLambda = std::sin((to.longitude - from.longitude) * kRadians / 2.0);
  const double h = sinHalfDPhi * sinHalfDPhi + std::cos(phi1) * std::cos(phi2) * sinHalfDLambda * sinHalfDLambda;
  // Rounding can push h just past 1 for antipodes, outside the arcsine's domain.
  return 2.0 * kMeanEarthRadiusMeters * std::asin(std::sqrt(std::min(1.0, h)));
}

}  // namespace qmv
