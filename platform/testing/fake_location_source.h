#pragma once
// A LocationSource for tests: the test decides when positions and failures arrive
// (deliver(), fail()) and sees how often updating was started and stopped.
#include <optional>
#include <utility>

#include "platform/location_source.h"

namespace qmv {

class FakeLocationSource : public LocationSource {
 public:
  explicit FakeLocationSource(bool enabled = true) : enabled_(enabled) {}

  bool locationServicesEnabled() const override { return enabled_; }
  void startUpdatingLocation(UpdateHandler onUpdate, FailureHandler onFailure) override {
    ++startCount_;
    updating_ = true;
    onUpdate_ = std::move(onUpdate);
    onFailure_ = std::move(onFailure);
  }
  void stopUpdatingLocation() override {
    ++stopCount_;
    updating_ = false;
  }

  void setEnabled(bool enabled) { enabled_ = enabled; }
  // Delivers `wgs` now when updating and enabled; returns whether it was delivered.
  bool deliver(Coordinate wgs) {
    if (!updating_ || !enabled_ || !onUpdate_) return false;
    onUpdate_(wgs);
    return true;
  }
  // Reports a failure now when updating; returns whether it was reported.
  bool fail() {
    if (!updating_ || !onFailure_) return false;
    onFailure_();
    return true;
  }

  bool updating() const { return updating_; }
  int startCount() const { return startCount_; }
  int stopCount() const { return stopCount_; }

 private:
  bool enabled_;
  bool updating_ = false;
  int startCount_ = 0;
  int stopCount_ = 0;
  UpdateHandler onUpdate_;
  FailureHandler onFailure_;
};

}  // namespace qmv
