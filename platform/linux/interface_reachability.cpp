#include "platform/linux/interface_reachability.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <sys/socket.h>

namespace qmv {

bool InterfaceReachability::isReachable() const {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return false;
  bool reachable = false;
  for (ifaddrs* it = list; it != nullptr && !reachable; it = it->ifa_next) {
    if (it->ifa_addr == nullptr) continue;
    const int family = it->ifa_addr->sa_family;
    if (family != AF_INET && family != AF_INET6) continue;
    const unsigned flags = it->ifa_flags;
    reachable = (flags & IFF_UP) && (flags & IFF_RUNNING) && !(flags & IFF_LOOPBACK);
  }
  freeifaddrs(list);
  return reachable;
}

}  // namespace qmv
