#include "platform/cookie_store.h"

#include <algorithm>

namespace qmv {
namespace {

bool sameSlot(const Cookie& a, const Cookie& b) { return a.name == b.name && a.domain == b.domain && a.path == b.path; }

}  // namespace

bool MemoryCookieStore::setCookie(const Cookie& cookie) {
  if (cookie.name.empty() || cookie.domain.empty()) return false;
  std::lock_guard lock(mutex_);
  const auto it = std::find_if(cookies_.begin(), cookies_.end(), [&](const Cookie& c) { return sameSlot(c, cookie); });
  if (it != cookies_.end()) {
    *it = cookie;
  } else {
    cookies_.push_back(cookie);
  }
  return true;
}

std::vector<Cookie> MemoryCookieStore::cookies() const {
  std::lock_guard lock(mutex_);
  return cookies_;
}

void MemoryCookieStore::deleteCookie(const Cookie& cookie) {
  std::lock_guard lock(mutex_);
  std::erase_if(cookies_, [&](const Cookie& c) { return sameSlot(c, cookie); });
}

}  // namespace qmv
