#pragma once
// The key under which the sandbox counts a peer (connections, login failures): an IPv4
// address as it is, and an IPv6 address by its /64 network, since one host is handed a
// whole /64 and could otherwise take a fresh address for every attempt. IPv4-mapped IPv6
// addresses count as their IPv4 address.
#include <string>

namespace qmv::sandbox {

// `ip` as written by inet_ntop; text that is no address is its own key.
std::string peerKey(const std::string& ip);

}  // namespace qmv::sandbox
