#pragma once
// Distance along the Earth's surface between two positions of the same datum.
#include "core/common/coordinate.h"

namespace qmv {

// Mean Earth radius in metres, the sphere greatCircleDistance works on.
inline constexpr double kMeanEarthRadiusMeters = 6371000.0;

// Haversine distance in metres on a sphere of kMeanEarthRadiusMeters. Against the
// ellipsoid it errs by under 0.5%. Antipodal points give pi times the radius; NaN in,
// NaN out.
double greatCircleDistance(Coordinate from, Coordinate to);

}  // namespace qmv
