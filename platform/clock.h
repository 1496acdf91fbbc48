#pragma once
// Wall-clock time, a port so that date rules can be tested at any date.
#include <cstdint>

namespace qmv {

class Clock {
 public:
  virtual ~Clock() = default;
  // Seconds since 1970-01-01T00:00:00Z.
  virtual std::int64_t unixSeconds() const = 0;
};

class SystemClock : public Clock {
 public:
  std::int64_t unixSeconds() const override;
};

class FixedClock : public Clock {
 public:
  explicit FixedClock(std::int64_t seconds) : seconds_(seconds) {}
  std::int64_t unixSeconds() const override { return seconds_; }
  void set(std::int64_t seconds) { seconds_ = seconds; }

 private:
  std::int64_t seconds_;
};

}  // namespace qmv
