#pragma once
// Reachability from the network interfaces: reachable when any interface other than
// loopback is up, running and has an IPv4 or IPv6 address.
#include "platform/reachability.h"

namespace qmv {

class InterfaceReachability : public Reachability {
 public:
  bool isReachable() const override;
};

}  // namespace qmv
