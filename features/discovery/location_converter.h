#pragma once
// Conversions between the three datums the client meets: WGS-84 (device positions),
// GCJ-02 (the national offset grid, used by map views) and BD-09 (the Baidu grid, in
// which the server stores and compares store positions). Every operation is pure and
// may be called from any thread; none fails (non-numbers go in, non-numbers come out).
//
// The formulas, constants and evaluation order are fixed: the server and other clients
// compare positions computed this way, so "improving" any step (for instance making
// GCJ-02 -> BD-09 the exact inverse of BD-09 -> GCJ-02) would shift every store.
#include <string>

#include "core/common/coordinate.h"

namespace qmv {

class LocationConverter {
 public:
  LocationConverter() = delete;

  // WGS-84 -> GCJ-02. Positions outside the China box come back unchanged.
  static Coordinate transformFromWGSToGCJ(Coordinate wgs);

  // GCJ-02 -> WGS-84 by a quadrant search over the forward transform: 30 refinements
  // of a 1-degree box around `gcj`, stopping early when the midpoint's image is within
  // 0.00001 (summed over both axes) of `gcj`. Accurate to about 0.00001 degree.
  static Coordinate transformFromGCJToWGS(Coordinate gcj);

  // GCJ-02 -> BD-09. Deliberately not the inverse of transformFromBaiduToGCJ: the radius
  // term uses the square root of latitude times pi, so a negative latitude gives NaN.
  static Coordinate transformFromGCJToBaidu(Coordinate gcj);

  // BD-09 -> GCJ-02.
  static Coordinate transformFromBaiduToGCJ(Coordinate bd);

  // Polynomial offsets (in metres on the Krasovsky ellipsoid, before scaling) for
  // x = longitude - 105 and y = latitude - 35.
  static double transformLatWithX(double x, double y);
  static double transformLonWithX(double x, double y);

  // True outside the box latitude 0.8293..55.8271, longitude 72.004..137.8347; the
  // edges count as inside.
  static bool isLocationOutOfChina(Coordinate coordinate);

  // The member's WGS-84 position as the server wants it in "coordinate": converted
  // WGS-84 -> GCJ-02 -> BD-09 and written "%f,%f", latitude first.
  static std::string coordinateArgument(Coordinate wgs);

  // Great-circle distance in metres between two WGS-84 points: the haversine formula on
  // a sphere of radius 6371000 m (the mean Earth radius; see greatCircleDistance).
  // Against the ellipsoid this errs by under 0.5%, which a distance text shown to the
  // metre or to ten metres at city scale does not need.
  static double distanceInMeters(Coordinate from, Coordinate to);
};

}  // namespace qmv
