#pragma once
// Cookies shared by the HTTP transport (which stores what servers set and sends what
// matches, by a browser's rules), the web views (which get the store's cookies before a
// page loads) and the client (which sets a page's session cookies and deletes them when
// a session expires). Thread-safe: the transport's worker and the interface thread both
// use it.
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace qmv {

struct Cookie {
  std::string name;
  std::string value;
  std::string domain;  // the host (host-only) or the domain (with subdomains), no dot
  std::string path = "/";
  // Sent to `domain` alone; otherwise to its subdomains as well.
  bool hostOnly = true;
  bool secure = false;
  bool httpOnly = false;
  std::int64_t expires = 0;  // seconds since the epoch; 0: ends with the session
};

class CookieStore {
 public:
  virtual ~CookieStore() = default;
  // Stores `cookie`, replacing one of the same name, domain and path. Returns false,
  // storing nothing, for a cookie no browser would take: no name or domain, a domain
  // cookie for a public suffix ("com", "co.uk") or an address, or a name, value or path
  // that would break the Cookie header.
  virtual bool setCookie(const Cookie& cookie) = 0;
  // Every cookie that has not expired.
  virtual std::vector<Cookie> cookies() const = 0;
  // Removes the cookie of the same name, domain and path, if any.
  virtual void deleteCookie(const Cookie& cookie) = 0;
};

// A plain list, for tests that send nothing over HTTP (the transport keeps its cookies
// in libcurl's cookie engine: CurlCookieStore). Refuses only what has no name or domain.
class MemoryCookieStore : public CookieStore {
 public:
  bool setCookie(const Cookie& cookie) override;
  std::vector<Cookie> cookies() const override;
  void deleteCookie(const Cookie& cookie) override;

 private:
  mutable std::mutex mutex_;
  std::vector<Cookie> cookies_;
};

}  // namespace qmv
