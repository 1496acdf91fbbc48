#include "apps/sandbox/peer_address.h"

#include <arpa/inet.h>

#include <cstring>

namespace qmv::sandbox {

std::string peerKey(const std::string& ip) {
  in6_addr v6{};
  if (::inet_pton(AF_INET6, ip.c_str(), &v6) != 1) return ip;
  char text[INET6_ADDRSTRLEN] = {};
  if (IN6_IS_ADDR_V4MAPPED(&v6)) {
    in_addr v4{};
    std::memcpy(&v4, &v6.s6_addr[12], sizeof v4);
    return ::inet_ntop(AF_INET, &v4, text, sizeof text) != nullptr ? text : ip;
  }
  std::memset(&v6.s6_addr[8], 0, 8);
  if (::inet_ntop(AF_INET6, &v6, text, sizeof text) == nullptr) return ip;
  return std::string(text) + "/64";
}

}  // namespace qmv::sandbox
