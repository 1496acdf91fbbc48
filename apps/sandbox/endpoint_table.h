#pragma once
// The table of application endpoints served under /qmv/app/v3/: for each name its method,
// how it treats the session, whether it writes, and its handler. Each feature's handlers file
// registers its endpoints here.
#include <functional>
#include <map>
#include <string>

#include "apps/sandbox/sandbox_call.h"

namespace qmv::sandbox {

enum class HttpMethod { kGet, kPost };

enum class SessionRule {
  kNone,      // the session is ignored
  kOptional,  // a known session fills the member; none or unknown is fine
  kRequired,  // none or unknown answers "2"
};

struct Endpoint {
  HttpMethod method = HttpMethod::kGet;
  SessionRule session = SessionRule::kNone;
  bool writes = false;
  std::function<Reply(Call&)> handler;
};

class EndpointTable {
 public:
  void add(const std::string& name, Endpoint endpoint) { endpoints_[name] = std::move(endpoint); }
  const Endpoint* find(const std::string& name) const {
    auto it = endpoints_.find(name);
    return it == endpoints_.end() ? nullptr : &it->second;
  }
  const std::map<std::string, Endpoint>& all() const { return endpoints_; }

 private:
  std::map<std::string, Endpoint> endpoints_;
};

// Registration of each feature's endpoints (one handlers file each).
void registerAccountHandlers(EndpointTable& table);
void registerDiscoveryHandlers(EndpointTable& table);
void registerOrderHandlers(EndpointTable& table);
void registerWalletHandlers(EndpointTable& table);
void registerReferralHandlers(EndpointTable& table);
void registerWheelHandlers(EndpointTable& table);

// Every feature's endpoints: what the server answers, and what the argument rules must cover.
inline void registerAllHandlers(EndpointTable& table) {
  registerAccountHandlers(table);
  registerDiscoveryHandlers(table);
  registerOrderHandlers(table);
  registerWalletHandlers(table);
  registerReferralHandlers(table);
  registerWheelHandlers(table);
}

}  // namespace qmv::sandbox
