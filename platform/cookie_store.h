#pragma once
// Cookies shared by the HTTP transport (which stores what servers set and sends what
// matches) and the client (which deletes session cookies when a session expires).
// Thread-safe: the transport's worker and the interface thread both use it.
#include <mutex>
#include <string>
#include <vector>

namespace qmv {

struct Cookie {
  std::string name;
  std::string value;
  std::string domain;  // host the cookie belongs to; empty matches every host
  std::string path = "/";
};

class CookieStore {
 public:
  virtual ~CookieStore() = default;
  // Replaces a cookie of the same name, domain and path.
  virtual void setCookie(const Cookie& cookie) = 0;
  virtual std::vector<Cookie> cookies() const = 0;
  // Cookies to send to `host` for `path`.
  virtual std::vector<Cookie> cookiesFor(const std::string& host, const std::string& path) const = 0;
  virtual void deleteCookie(const Cookie& cookie) = 0;
};

// The in-memory store of one process (the platform's shared cookie storage).
class MemoryCookieStore : public CookieStore {
 public:
  void setCookie(const Cookie& cookie) override;
  std::vector<Cookie> cookies() const override;
  std::vector<Cookie> cookiesFor(const std::string& host, const std::string& path) const override;
  void deleteCookie(const Cookie& cookie) override;

 private:
  mutable std::mutex mutex_;
  std::vector<Cookie> cookies_;
};

}  // namespace qmv
