#pragma once
// Whether the device has a network path at all. Used to choose between the no-network
// picture and the no-data view when a request fails.
namespace qmv {

class Reachability {
 public:
  virtual ~Reachability() = default;
  // Thread-safe.
  virtual bool isReachable() const = 0;
  // Start-up begins monitoring; adapters that answer on demand need nothing.
  virtual void startMonitoring() {}
};

}  // namespace qmv
