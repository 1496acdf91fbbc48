#pragma once
// The cookie store of the Linux client: libcurl's cookie engine on a share handle, which
// every transfer of the curl transport uses, so that what servers set is kept and sent
// by a browser's rules (a Domain attribute must domain-match the host that set it,
// cookies without one are host-only, no cookie for a public suffix, expiry), with
// libpsl's public-suffix list. The client's own cookies (a page's session) go through
// the same engine; cookies set here for a domain are checked against the list too.
#include <memory>

#include "platform/cookie_store.h"

namespace qmv {

class CurlCookieStore : public CookieStore {
 public:
  CurlCookieStore();
  // REQUIRES: no transfer handle is attached to the share any more.
  ~CurlCookieStore() override;
  CurlCookieStore(const CurlCookieStore&) = delete;
  CurlCookieStore& operator=(const CurlCookieStore&) = delete;

  bool setCookie(const Cookie& cookie) override;
  std::vector<Cookie> cookies() const override;
  // Expires the cookie: the engine no longer sends it and drops it at its next change.
  void deleteCookie(const Cookie& cookie) override;

  // The CURLSH* that transfers attach with CURLOPT_SHARE (kept as void* so that the
  // curl header stays in the adapter's sources).
  void* shareHandle() const;

 private:
  struct Engine;
  std::unique_ptr<Engine> engine_;
};

}  // namespace qmv
