#include "platform/cookie_store.h"

#include <algorithm>

namespace qmv {
namespace {

bool sameSlot(const Cookie& a, const Cookie& b) { return a.name == b.name && a.domain == b.domain && a.path == b.path; }

bool domainMatches(const std::string& domain, const std::string& host) {
  if (domain.empty() || domain == host) return true;
  std::string d = domain.front() == '.' ? domain.substr(1) : domain;
  return host.size() > d.size() && host.compare(host.size() - d.size(), d.size(), d) == 0 &&
         host[host.size() - d.size() - 1] == '.';
}

}  // namespace

void MemoryCookieStore::setCookie(const Cookie& cookie) {
  std::lock_guard lock(mutex_);
  const auto it = std::find_if(cookies_.begin(), cookies_.end(), [&](const Cookie& c) { return sameSlot(c, cookie); });
  if (it != cookies_.end()) {
    *it = cookie;
  } else {
    cookies_.push_back(cookie);
  }
}

std::vector<Cookie> MemoryCookieStore::cookies() const {
  std::lock_guard lock(mutex_);
  return cookies_;
}

std::vector<Cookie> MemoryCookieStore::cookiesFor(const std::string& host, const std::string& path) const {
  std::lock_guard lock(mutex_);
  std::vector<Cookie> out;
  for (const auto& c : cookies_) {
    if (domainMatches(c.domain, host) && path.rfind(c.path.empty() ? "/" : c.path, 0) == 0) out.push_back(c);
  }
  return out;
}

void MemoryCookieStore::deleteCookie(const Cookie& cookie) {
  std::lock_guard lock(mutex_);
  std::erase_if(cookies_, [&](const Cookie& c) { return sameSlot(c, cookie); });
}

}  // namespace qmv
