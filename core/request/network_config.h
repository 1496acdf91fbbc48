#pragma once
// Process-wide settings of the request layer: the base URL every relative request is
// joined to, the CDN base, the ordered lists of URL filters and cache-directory filters,
// and the size beyond which an answer is refused. Read and written on the interface
// thread.
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "core/request/cache_dir_path_filter.h"
#include "core/request/url_filter.h"
#include "platform/http_transport.h"

namespace qmv {

class NetworkConfig {
 public:
  static NetworkConfig& sharedInstance();

  const std::string& baseUrl() const { return baseUrl_; }
  void setBaseUrl(std::string url) { baseUrl_ = std::move(url); }
  const std::string& cdnUrl() const { return cdnUrl_; }
  void setCdnUrl(std::string url) { cdnUrl_ = std::move(url); }
  // Root of the server-hosted pages (scheme and host, no trailing path).
  const std::string& webHost() const { return webHost_; }
  void setWebHost(std::string url) { webHost_ = std::move(url); }

  // Header and body bytes an answer may take before its request fails as a connection
  // failure; applies to requests sent afterwards (not to buildCustomUrlRequest ones).
  std::size_t maxResponseBytes() const { return maxResponseBytes_; }
  void setMaxResponseBytes(std::size_t bytes) { maxResponseBytes_ = bytes; }

  const std::vector<std::shared_ptr<UrlFilter>>& urlFilters() const { return urlFilters_; }
  const std::vector<std::shared_ptr<CacheDirPathFilter>>& cacheDirPathFilters() const { return cacheDirPathFilters_; }
  // Appends; filters run in the order they were added.
  void addUrlFilter(std::shared_ptr<UrlFilter> filter);
  void addCacheDirPathFilter(std::shared_ptr<CacheDirPathFilter> filter);
  // Removes every filter (tests and a server switch start from a clean list).
  void clearUrlFilters() { urlFilters_.clear(); }
  void clearCacheDirPathFilters() { cacheDirPathFilters_.clear(); }

 private:
  NetworkConfig() = default;
  std::string baseUrl_;
  std::string cdnUrl_;
  std::size_t maxResponseBytes_ = HttpRequest::kDefaultMaxResponseBytes;
  std::string webHost_;
  std::vector<std::shared_ptr<UrlFilter>> urlFilters_;
  std::vector<std::shared_ptr<CacheDirPathFilter>> cacheDirPathFilters_;
};

}  // namespace qmv
