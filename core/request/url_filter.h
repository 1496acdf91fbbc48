#pragma once
// Rewrites the path of every request whose requestUrl is not absolute, before the base
// URL is put in front (for example to add common parameters). Installed on NetworkConfig.
#include <string>

namespace qmv {

class BaseRequest;

class UrlFilter {
 public:
  virtual ~UrlFilter() = default;
  // Returns the URL text to use instead of `originUrl`. Runs on the interface thread.
  virtual std::string filterUrl(const std::string& originUrl, const BaseRequest& request) = 0;
};

}  // namespace qmv
