#pragma once
// Rewrites the directory in which a cached request keeps its files (for example to give
// each user a directory of his own). Installed on NetworkConfig.
#include <string>

namespace qmv {

class BaseRequest;

class CacheDirPathFilter {
 public:
  virtual ~CacheDirPathFilter() = default;
  // Returns the directory path to use instead of `originPath`.
  virtual std::string filterCacheDirPath(const std::string& originPath, const BaseRequest& request) = 0;
};

}  // namespace qmv
