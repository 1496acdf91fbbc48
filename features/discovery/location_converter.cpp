#include "features/discovery/location_converter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/common/great_circle.h"

namespace qmv {
namespace {

// Literal values rather than M_PI or expressions, as the other clients of the same server
// have them.
constexpr double kPi = 3.141592653589793;
constexpr double kXPi = 52.35987755982988;  // pi * 3000 / 180, BD-09 -> GCJ-02 only
constexpr double kA = 6378245.0;            // Krasovsky semi-major axis
constexpr double kAOneMinusEe = 6335552.717000426;
constexpr double kNegatedEe = -0.006693421622965943;
constexpr double kOriginLon = 105.0;
constexpr double kOriginLat = 35.0;
constexpr double kMinLat = 0.8293;
constexpr double kMaxLat = 55.8271;
constexpr double kMinLon = 72.004;
constexpr double kMaxLon = 137.8347;
constexpr double kBdLonOffset = 0.0065;
constexpr double kBdLatOffset = 0.006;
constexpr double kBdRadiusTerm = 0.00002;
constexpr double kBdAngleTerm = 0.000003;
constexpr double kSearchHalfWidth = 0.5;
constexpr double kSearchTolerance = 0.00001;
constexpr int kSearchRefinements = 30;

// Two thirds of a group.
double twoThirds(double group) { return group * (2.0 / 3.0); }

// Whether `target` lies in the closed box spanned by `p` and `q` (in any order).
bool spans(Coordinate p, Coordinate q, Coordinate target) {
  return target.latitude >= std::min(p.latitude, q.latitude) && target.latitude <= std::max(p.latitude, q.latitude) &&
         target.longitude >= std::min(p.longitude, q.longitude) &&
         target.longitude <= std::max(p.longitude, q.longitude);
}

// Every wave of the two offsets is a sine of a whole multiple of pi*v/60 (v = x or y:
// pi*v/30, pi*v/12, pi*v/3, pi*v, 2*pi*v, 6*pi*v). One sine and cosine per axis, raised to
// those multiples as unit complex numbers, replaces the ten library sines that dominated the
// conversion; the multiples stay within about 1e-13 of the directly computed sines, far
// below what reaches a coordinate after the offsets are scaled to degrees.
struct Turn {
  double c;  // cosine
  double s;  // sine
};

Turn turnOf(double angle) { return {std::cos(angle), std::sin(angle)}; }

Turn times(Turn a, Turn b) { return {a.c * b.c - a.s * b.s, a.s * b.c + a.c * b.s}; }

// Sines of the multiples of one axis' base angle pi*v/60 that the offsets use.
struct Waves {
  Waves(Turn base, bool withFastWaves) {
    const Turn twice = times(base, base);
    const Turn five = times(times(twice, twice), base);
    const Turn ten = times(five, five);
    const Turn twenty = times(ten, ten);
    const Turn sixty = times(times(twenty, twenty), twenty);
    over30 = twice.s;
    over12 = five.s;
    over3 = twenty.s;
    once = sixty.s;
    if (withFastWaves) {
      const Turn hundredTwenty = times(sixty, sixty);
      twoPi = hundredTwenty.s;
      sixPi = times(times(hundredTwenty, hundredTwenty), hundredTwenty).s;
    }
  }
  double over30 = 0;  // sin(pi*v/30)
  double over12 = 0;  // sin(pi*v/12)
  double over3 = 0;   // sin(pi*v/3)
  double once = 0;    // sin(pi*v)
  double twoPi = 0;   // sin(2*pi*v), x axis only
  double sixPi = 0;   // sin(6*pi*v), x axis only
};

Turn baseTurn(double v) { return turnOf(v * (kPi / 60.0)); }

// `root` is sqrt(|x|), which both offsets use.
double latOffset(double x, double y, double root, const Waves& wx, const Waves& wy) {
  double ret = -100.0 + 2.0 * x + 3.0 * y + 0.2 * y * y + 0.1 * x * y + 0.2 * root;
  ret += twoThirds(20.0 * wx.sixPi + 20.0 * wx.twoPi);
  ret += twoThirds(20.0 * wy.once + 40.0 * wy.over3);
  ret += twoThirds(160.0 * wy.over12 + 320.0 * wy.over30);
  return ret;
}

double lonOffset(double x, double y, double root, const Waves& wx) {
  double ret = 300.0 + x + 2.0 * y + 0.1 * x * x + 0.1 * x * y + 0.1 * root;
  ret += twoThirds(20.0 * wx.sixPi + 20.0 * wx.twoPi);
  ret += twoThirds(20.0 * wx.once + 40.0 * wx.over3);
  ret += twoThirds(150.0 * wx.over12 + 300.0 * wx.over30);
  return ret;
}

// e^(-i*35*pi/60): pi*(lat-35)/60 is three times the latitude in radians less 35*pi/60, so
// the y axis' base angle comes from the latitude's own sine and cosine.
constexpr Turn kLatitudeShift{-0.25881904510252076235, -0.96592582628906828675};

}  // namespace

bool LocationConverter::isLocationOutOfChina(Coordinate c) {
  return c.longitude < kMinLon || c.longitude > kMaxLon || c.latitude < kMinLat || c.latitude > kMaxLat;
}

double LocationConverter::transformLatWithX(double x, double y) {
  return latOffset(x, y, std::sqrt(std::fabs(x)), Waves(baseTurn(x), true), Waves(baseTurn(y), false));
}

double LocationConverter::transformLonWithX(double x, double y) {
  return lonOffset(x, y, std::sqrt(std::fabs(x)), Waves(baseTurn(x), true));
}

Coordinate LocationConverter::transformFromWGSToGCJ(Coordinate wgs) {
  if (isLocationOutOfChina(wgs)) return wgs;
  const double x = wgs.longitude - kOriginLon;
  const double y = wgs.latitude - kOriginLat;
  const Turn lat = turnOf(wgs.latitude * (kPi / 180.0));
  const Waves wx(baseTurn(x), true);
  const double root = std::sqrt(std::fabs(x));
  const double dLat = latOffset(x, y, root, wx, Waves(times(times(times(lat, lat), lat), kLatitudeShift), false));
  const double dLon = lonOffset(x, y, root, wx);
  const double s = lat.s;
  const double magic = 1.0 + s * (s * kNegatedEe);
  const double sqrtMagic = std::sqrt(magic);
  // Metres of offset to degrees on the ellipsoid: the meridian and parallel radii of
  // curvature, written as products so that one division remains.
  return {wgs.latitude + dLat * (magic * sqrtMagic) * (180.0 / (kAOneMinusEe * kPi)),
          wgs.longitude + dLon * sqrtMagic / (lat.c * (kA * kPi / 180.0))};
}

Coordinate LocationConverter::transformFromGCJToBaidu(Coordinate gcj) {
  const double lat = gcj.latitude;
  const double lon = gcj.longitude;
  const double z = std::sqrt(lon * lon + lat * lat) + kBdRadiusTerm * std::sqrt(lat * kPi);
  const double theta = std::atan2(lat, lon) + kBdAngleTerm * std::cos(lon * kPi);
  return {z * std::sin(theta) + kBdLatOffset, z * std::cos(theta) + kBdLonOffset};
}

Coordinate LocationConverter::transformFromBaiduToGCJ(Coordinate bd) {
  const double x = bd.longitude - kBdLonOffset;
  const double y = bd.latitude - kBdLatOffset;
  const double z = std::sqrt(x * x + y * y) - kBdRadiusTerm * std::sin(y * kXPi);
  const double theta = std::atan2(y, x) - kBdAngleTerm * std::cos(x * kXPi);
  return {z * std::sin(theta), z * std::cos(theta)};
}

Coordinate LocationConverter::transformFromGCJToWGS(Coordinate gcj) {
  double minLat = gcj.latitude - kSearchHalfWidth;
  double maxLat = gcj.latitude + kSearchHalfWidth;
  double minLon = gcj.longitude - kSearchHalfWidth;
  double maxLon = gcj.longitude + kSearchHalfWidth;
  for (int counter = kSearchRefinements;; --counter) {
    const double midLat = (minLat + maxLat) / 2.0;
    const double midLon = (minLon + maxLon) / 2.0;
    const Coordinate mid{midLat, midLon};
    const Coordinate midImage = transformFromWGSToGCJ(mid);
    if (counter < 1 || std::fabs(midImage.latitude - gcj.latitude) + std::fabs(midImage.longitude - gcj.longitude) <=
                           kSearchTolerance) {
      return mid;
    }
    // The corners' images only steer the choice of quarter, so they are needed only
    // when the midpoint did not settle the search.
    const Coordinate a = transformFromWGSToGCJ({minLat, minLon});
    const Coordinate b = transformFromWGSToGCJ({minLat, maxLon});
    const Coordinate c = transformFromWGSToGCJ({maxLat, minLon});
    if (spans(a, midImage, gcj)) {
      maxLat = midLat;
      maxLon = midLon;
    } else if (spans(b, midImage, gcj)) {
      maxLat = midLat;
      minLon = midLon;
    } else if (spans(c, midImage, gcj)) {
      minLat = midLat;
      maxLon = midLon;
    } else {
      minLat = midLat;
      minLon = midLon;
    }
  }
}

std::string LocationConverter::coordinateArgument(Coordinate wgs) {
  const Coordinate bd = transformFromGCJToBaidu(transformFromWGSToGCJ(wgs));
  char text[768];  // "%f" of the largest double needs 317 characters
  std::snprintf(text, sizeof text, "%f,%f", bd.latitude, bd.longitude);
  return text;
}

double LocationConverter::distanceInMeters(Coordinate from, Coordinate to) { return greatCircleDistance(from, to); }

}  // namespace qmv
