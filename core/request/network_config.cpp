#include "core/request/network_config.h"

namespace qmv {

NetworkConfig& NetworkConfig::sharedInstance() {
  static NetworkConfig config;
  return config;
}

void NetworkConfig::addUrlFilter(std::shared_ptr<UrlFilter> filter) {
  if (filter) urlFilters_.push_back(std::move(filter));
}

void NetworkConfig::addCacheDirPathFilter(std::shared_ptr<CacheDirPathFilter> filter) {
  if (filter) cacheDirPathFilters_.push_back(std::move(filter));
}

}  // namespace qmv
