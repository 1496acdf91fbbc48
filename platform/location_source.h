#pragma once
// The device's position service. Positions are WGS-84, as a satellite receiver reports
// them; converting them for the server or a map is the caller's business. Updates and
// failures arrive on the interface thread.
#include <functional>

#include "core/common/coordinate.h"

namespace qmv {

class LocationSource {
 public:
  using UpdateHandler = std::function<void(Coordinate wgs)>;
  using FailureHandler = std::function<void()>;

  virtual ~LocationSource() = default;

  // Whether the member lets the device locate itself at all. When false, starting
  // delivers nothing.
  virtual bool locationServicesEnabled() const = 0;

  // Starts delivering positions: `onUpdate` for every position from now on,
  // `onFailure` when none can be had. Replaces the handlers of an earlier start.
  virtual void startUpdatingLocation(UpdateHandler onUpdate, FailureHandler onFailure) = 0;

  // Stops delivery; nothing is delivered after it returns, not even what was queued.
  virtual void stopUpdatingLocation() = 0;
};

}  // namespace qmv
