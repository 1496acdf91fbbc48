#pragma once
// A LocationSource for a machine without a position receiver: one fixed position, from
// the configuration file or the command line ("--at LAT,LON"). Starting queues that
// position on the main loop, or a failure when no position was configured.
#include <memory>
#include <optional>
#include <string_view>

#include "platform/location_source.h"

namespace qmv {

class MainLoop;

class FixedLocationSource : public LocationSource {
 public:
  // `position` nullopt: starting reports a failure. `enabled` false: location services
  // are off. REQUIRES: `loop` outlives every delivery it queues.
  FixedLocationSource(std::shared_ptr<MainLoop> loop, std::optional<Coordinate> position, bool enabled = true);
  ~FixedLocationSource() override;

  // "LAT,LON" in decimal degrees (blanks around either number allowed), latitude within
  // ±90 and longitude within ±180; anything else gives nullopt.
  static std::optional<Coordinate> parsePosition(std::string_view text);

  bool locationServicesEnabled() const override { return enabled_; }
  void startUpdatingLocation(UpdateHandler onUpdate, FailureHandler onFailure) override;
  void stopUpdatingLocation() override;

 private:
  struct Delivery;

  std::shared_ptr<MainLoop> loop_;
  std::optional<Coordinate> position_;
  bool enabled_;
  std::shared_ptr<Delivery> current_;  // the running start; replaced or cleared by stop
};

}  // namespace qmv
