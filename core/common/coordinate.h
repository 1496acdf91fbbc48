#pragma once
// A geographic position in degrees, latitude first. Which datum (WGS-84, GCJ-02, BD-09)
// a value is in is told by the name of the variable or function that holds it.
namespace qmv {

struct Coordinate {
  double latitude = 0;
  double longitude = 0;
};

}  // namespace qmv
