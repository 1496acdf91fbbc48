#include "features/discovery/location_converter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace qmv {
namespace {

// Expected values come from testdata/location_reference.py, which evaluates the same
// formulas independently at 50 significant digits.
struct Reference {
  Coordinate wgs;
  Coordinate gcj;           // transformFromWGSToGCJ(wgs)
  Coordinate bdOfGcj;       // transformFromGCJToBaidu(gcj)
  Coordinate gcjOfBdOfGcj;  // transformFromBaiduToGCJ(bdOfGcj), not gcj: the two ways differ
};

const Reference kReferences[] = {
    {{39.908692, 116.397477},
     {39.910095493939802, 116.40372056710369},
     {39.91627214907464, 116.41039674390771},
     {39.909933503738376, 116.4040236826521}},
    {{31.230416, 121.473701},
     {31.228473742246978, 121.47822405739265},
     {31.234498151801633, 121.48492232148486},
     {31.228648741916367, 121.47836302266301}},
    {{35.104672, 118.356448},
     {35.104279657195038, 118.36220230652496},
     {35.110488340143743, 118.36885948897596},
     {35.104703749197266, 118.36230045923277}},
    {{22.543099, 114.057868},
     {22.540381757783793, 114.06298196110272},
     {22.546749898078639, 114.06958076635955},
     {22.541090924148091, 114.06303061518001}},
    {{43.825592, 87.616848},
     {43.826797436147596, 87.619697998235299},
     {43.832998953571675, 87.62635960022466},
     {43.826857017019391, 87.619908509112721}},
    {{29.652491, 91.172112},
     {29.649701584828972, 91.173579356401093},
     {29.655527428832201, 91.180338967676014},
     {29.649469859253154, 91.173847627513587}},
    {{45.756967, 126.642464},
     {45.758918130663392, 126.64843401023796},
     {45.764828790878903, 126.65522125749875},
     {45.759138303551052, 126.64859039516855}},
    {{18.252847, 109.511909},
     {18.251141748703046, 109.51599327140338},
     {18.257183144554656, 109.52263990455476},
     {18.251399374881848, 109.51609266335504}},
    {{36.0, 72.004},
     {35.999183473411924, 72.008071988224711},
     {36.005494537100643, 72.01465426746919},
     {35.999298141619306, 72.008253044088742}},
    {{0.8293, 100.0},
     {0.830185532784289, 100.00065554865224},
     {0.83648580234062761, 100.00718535579268},
     {0.8306451074689564, 100.00069358923665}},
};

constexpr double kClose = 1e-9;  // double evaluation against the 50-digit reference

void expectNear(Coordinate actual, Coordinate expected, double tolerance, const std::string& what) {
  EXPECT_NEAR(actual.latitude, expected.latitude, tolerance) << what;
  EXPECT_NEAR(actual.longitude, expected.longitude, tolerance) << what;
}

TEST(LocationConverterTest, ForwardConversionsMatchIndependentReference) {
  for (const Reference& r : kReferences) {
    const std::string at = std::to_string(r.wgs.latitude) + "," + std::to_string(r.wgs.longitude);
    expectNear(LocationConverter::transformFromWGSToGCJ(r.wgs), r.gcj, kClose, "WGS->GCJ " + at);
    expectNear(LocationConverter::transformFromGCJToBaidu(r.gcj), r.bdOfGcj, kClose, "GCJ->BD " + at);
    expectNear(LocationConverter::transformFromBaiduToGCJ(r.bdOfGcj), r.gcjOfBdOfGcj, kClose, "BD->GCJ " + at);
  }
  EXPECT_NEAR(LocationConverter::transformLatWithX(11.397477, 4.908692), 155.836668563391, 1e-9);
  EXPECT_NEAR(LocationConverter::transformLonWithX(11.397477, 4.908692), 533.88067185602539, 1e-9);
  EXPECT_NEAR(LocationConverter::transformLatWithX(-17.383152, -5.347509), -344.41703857462781, 1e-9);
  EXPECT_NEAR(LocationConverter::transformLonWithX(-17.383152, -5.347509), 225.55099559214871, 1e-9);
  EXPECT_DOUBLE_EQ(LocationConverter::transformLatWithX(0, 0), -100.0);
  EXPECT_DOUBLE_EQ(LocationConverter::transformLonWithX(0, 0), 300.0);
}

// The formulas written out plainly, one library sine per term, as the converter first had
// them: its faster arrangement must stay within rounding of them.
double plainTransform(double x, double y, bool latitude) {
  constexpr double kPi = 3.141592653589793;
  const double wave = (20.0 * std::sin(6.0 * kPi * x) + 20.0 * std::sin(2.0 * kPi * x)) * 2.0 / 3.0;
  if (latitude) {
    double ret = -100.0 + 2.0 * x + 3.0 * y + 0.2 * y * y + 0.1 * x * y + 0.2 * std::sqrt(std::fabs(x));
    ret += wave;
    ret += (20.0 * std::sin(kPi * y) + 40.0 * std::sin(kPi * y / 3.0)) * 2.0 / 3.0;
    return ret + (160.0 * std::sin(kPi * y / 12.0) + 320.0 * std::sin(kPi * y / 30.0)) * 2.0 / 3.0;
  }
  double ret = 300.0 + x + 2.0 * y + 0.1 * x * x + 0.1 * x * y + 0.1 * std::sqrt(std::fabs(x));
  ret += wave;
  ret += (20.0 * std::sin(kPi * x) + 40.0 * std::sin(kPi * x / 3.0)) * 2.0 / 3.0;
  return ret + (150.0 * std::sin(kPi * x / 12.0) + 300.0 * std::sin(kPi * x / 30.0)) * 2.0 / 3.0;
}

Coordinate plainWgsToGcj(Coordinate wgs) {
  constexpr double kPi = 3.141592653589793;
  if (LocationConverter::isLocationOutOfChina(wgs)) return wgs;
  double dLat = plainTransform(wgs.longitude - 105.0, wgs.latitude - 35.0, true);
  double dLon = plainTransform(wgs.longitude - 105.0, wgs.latitude - 35.0, false);
  const double radLat = wgs.latitude / 180.0 * kPi;
  const double s = std::sin(radLat);
  const double magic = 1.0 + s * (s * -0.006693421622965943);
  const double sqrtMagic = std::sqrt(magic);
  dLat = (dLat * 180.0) / ((6335552.717000426 / (magic * sqrtMagic)) * kPi);
  dLon = (dLon * 180.0) / ((6378245.0 / sqrtMagic) * std::cos(radLat) * kPi);
  return {wgs.latitude + dLat, wgs.longitude + dLon};
}

// |a - b|, with two NaNs the same and a NaN against a number infinitely apart.
double gap(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b) ? 0 : HUGE_VAL;
  return std::fabs(a - b);
}

// The waves are raised from one sine and cosine per axis instead of taken from the library
// one by one. Over the grid below the offsets (up to several hundred units) differ from the
// plain formulas by at most 1.5e-12, as much as the plain formulas' own rounding of
// 6*pi*x costs them (a unit in the last place of ~600 is 1.1e-13, times 20*2/3), and the
// converted coordinates by 1.4e-14 degrees (one unit in the last place). The bounds leave
// a margin of three to seven.
TEST(LocationConverterTest, ForwardTransformStaysWithinRoundingOfThePlainFormulas) {
  constexpr double kOffsetBound = 5e-12;
  constexpr double kDegreeBound = 1e-13;
  double offsetGap = 0;
  double degreeGap = 0;
  const auto check = [&](Coordinate wgs) {
    const Coordinate got = LocationConverter::transformFromWGSToGCJ(wgs);
    const Coordinate want = plainWgsToGcj(wgs);
    const double x = wgs.longitude - 105.0;
    const double y = wgs.latitude - 35.0;
    degreeGap = std::max({degreeGap, gap(got.latitude, want.latitude), gap(got.longitude, want.longitude)});
    offsetGap = std::max({offsetGap, gap(LocationConverter::transformLatWithX(x, y), plainTransform(x, y, true)),
                          gap(LocationConverter::transformLonWithX(x, y), plainTransform(x, y, false))});
  };
  // A 0.0137-degree step lands on no round values, so the grid samples every wave's phase.
  for (double lat = 0.5; lat < 56.5; lat += 0.137) {
    for (double lon = 71.5; lon < 138.5; lon += 0.0137 * 13) check({lat, lon});
  }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Coordinate odd : {Coordinate{0.8293, 72.004}, Coordinate{55.8271, 137.8347}, Coordinate{35.0, 105.0},
                               Coordinate{nan, 116.0}, Coordinate{39.9, nan}}) {
    check(odd);
  }
  EXPECT_LE(offsetGap, kOffsetBound);
  EXPECT_LE(degreeGap, kDegreeBound);
}

TEST(LocationConverterTest, GcjToWgsRoundTripsInsideChina) {
  // The box edges are left out: there the forward transform jumps, so a search box that
  // straddles an edge has no continuous inverse to find.
  for (const Reference& r : kReferences) {
    if (r.wgs.longitude == 72.004 || r.wgs.latitude == 0.8293) continue;
    const Coordinate back = LocationConverter::transformFromGCJToWGS(r.gcj);
    EXPECT_NEAR(back.latitude, r.wgs.latitude, 0.00001) << r.wgs.latitude << "," << r.wgs.longitude;
    EXPECT_NEAR(back.longitude, r.wgs.longitude, 0.00001) << r.wgs.latitude << "," << r.wgs.longitude;
    // The search stops on the summed error of the midpoint's image.
    const Coordinate image = LocationConverter::transformFromWGSToGCJ(back);
    EXPECT_LE(std::fabs(image.latitude - r.gcj.latitude) + std::fabs(image.longitude - r.gcj.longitude), 0.00001);
  }
  // Same search run in 50-digit arithmetic: the midpoint it stops on.
  expectNear(LocationConverter::transformFromGCJToWGS({39.910095, 116.403721}),
             {39.908695006103516, 116.39747634057617}, 1e-9, "search Beijing");
  expectNear(LocationConverter::transformFromGCJToWGS({22.54, 114.06}), {22.542723693847656, 114.05489593505859}, 1e-9,
             "search Shenzhen");
  // Near the western edge the search box straddles it; the result still lies inside.
  expectNear(LocationConverter::transformFromGCJToWGS({36.0, 72.4}), {36.000633239746094, 72.396162414550781}, 1e-9,
             "search at the edge");
}

TEST(LocationConverterTest, ChinaBoxEdgesCountAsInside) {
  EXPECT_FALSE(LocationConverter::isLocationOutOfChina({36.0, 72.004}));
  EXPECT_TRUE(LocationConverter::isLocationOutOfChina({36.0, 72.0039}));
  EXPECT_FALSE(LocationConverter::isLocationOutOfChina({36.0, 137.8347}));
  EXPECT_TRUE(LocationConverter::isLocationOutOfChina({36.0, 137.83471}));
  EXPECT_FALSE(LocationConverter::isLocationOutOfChina({0.8293, 100.0}));
  EXPECT_TRUE(LocationConverter::isLocationOutOfChina({0.82929, 100.0}));
  EXPECT_FALSE(LocationConverter::isLocationOutOfChina({55.8271, 100.0}));
  EXPECT_TRUE(LocationConverter::isLocationOutOfChina({55.82711, 100.0}));

  const Coordinate onEdge = LocationConverter::transformFromWGSToGCJ({36.0, 72.004});
  EXPECT_GT(std::fabs(onEdge.longitude - 72.004), 0.001);  // shifted
  for (const Coordinate outside : {Coordinate{36.0, 72.0039}, Coordinate{48.8566, 2.3522}, Coordinate{-33.86, 151.2}}) {
    const Coordinate same = LocationConverter::transformFromWGSToGCJ(outside);
    EXPECT_EQ(same.latitude, outside.latitude);
    EXPECT_EQ(same.longitude, outside.longitude);
  }
}

TEST(LocationConverterTest, GcjToBaiduOfNegativeLatitudeIsNotANumber) {
  const Coordinate bd = LocationConverter::transformFromGCJToBaidu({-33.86, 151.2});
  EXPECT_TRUE(std::isnan(bd.latitude));
  EXPECT_TRUE(std::isnan(bd.longitude));
  // The request text then carries it as is.
  const std::string text = LocationConverter::coordinateArgument({-33.86, 151.2});
  EXPECT_NE(text.find("nan"), std::string::npos) << text;
  // The other direction is defined there.
  EXPECT_FALSE(std::isnan(LocationConverter::transformFromBaiduToGCJ({-33.86, 151.2}).latitude));
}

TEST(LocationConverterTest, SettledFirstMidpointReturnsTheInputItself) {
  // Outside China the forward transform is the identity, so the first midpoint (the
  // input) is its own image and the search stops at once.
  for (const Coordinate outside : {Coordinate{60.25, 10.5}, Coordinate{-30.5, 150.75}, Coordinate{36.0, 71.5}}) {
    const Coordinate back = LocationConverter::transformFromGCJToWGS(outside);
    EXPECT_EQ(back.latitude, outside.latitude);
    EXPECT_EQ(back.longitude, outside.longitude);
  }
  const Coordinate paris = LocationConverter::transformFromGCJToWGS({48.8566, 2.3522});
  EXPECT_DOUBLE_EQ(paris.latitude, 48.8566);
  EXPECT_DOUBLE_EQ(paris.longitude, 2.3522);
}

TEST(LocationConverterTest, CoordinateArgumentIsBaiduLatitudeFirst) {
  const Reference& beijing = kReferences[0];
  char expected[64];
  std::snprintf(expected, sizeof expected, "%.6f,%.6f", beijing.bdOfGcj.latitude, beijing.bdOfGcj.longitude);
  EXPECT_EQ(LocationConverter::coordinateArgument(beijing.wgs), expected);
  EXPECT_EQ(LocationConverter::coordinateArgument(beijing.wgs), "39.916272,116.410397");
}

TEST(LocationConverterTest, DistanceIsHaversineOnTheMeanSphere) {
  EXPECT_NEAR(LocationConverter::distanceInMeters({39.908692, 116.397477}, {31.230416, 121.473701}), 1068137.3780514958,
              1e-3);
  EXPECT_NEAR(LocationConverter::distanceInMeters({35.104672, 118.356448}, {35.114672, 118.366448}), 1436.6152651907828,
              1e-6);
  EXPECT_EQ(LocationConverter::distanceInMeters({35.1, 118.3}, {35.1, 118.3}), 0.0);
  // Antipodes: rounding must not push the arcsine out of its domain.
  EXPECT_NEAR(LocationConverter::distanceInMeters({0, 0}, {0, 180}), 6371000.0 * 3.141592653589793, 1e-3);
}

}  // namespace
}  // namespace qmv
