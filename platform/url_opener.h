#pragma once
// Hands a URL to whatever the platform opens it with: another application ("baidumap://"),
// the dialler ("tel:") or the browser. The core asks first whether a scheme can be opened
// when it offers a choice only for installed applications.
#include <string>

namespace qmv {

class UrlOpener {
 public:
  virtual ~UrlOpener() = default;

  // Whether some application would open `url` (on a phone: the scheme is registered).
  // REQUIRES: interface thread.
  virtual bool canOpenURL(const std::string& url) const = 0;
  // Opens `url`; false when nothing could open it. REQUIRES: interface thread.
  virtual bool openURL(const std::string& url) = 0;
};

}  // namespace qmv
