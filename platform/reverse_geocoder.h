#pragma once
// Turns a device position into a place name. The home screen uses it once per start to
// learn which city the member is in; it reads the locality, or the administrative area
// when the locality is empty (municipalities).
#include <optional>
#include <string>

#include "core/common/coordinate.h"

namespace qmv {

struct Placemark {
  std::string locality;            // city, e.g. "临沂市"
  std::string administrativeArea;  // province, e.g. "山东省"
};

class ReverseGeocoder {
 public:
  virtual ~ReverseGeocoder() = default;

  // The place at `wgs` (WGS-84), or nullopt when nothing is known there (no data, or a
  // position far from every known place). Runs on the interface thread; an adapter
  // that must wait for a service does so off it and is not this port.
  virtual std::optional<Placemark> reverseGeocode(Coordinate wgs) = 0;
};

}  // namespace qmv
