#pragma once
// Changes one field of the member's profile. Each profile row has its own endpoint and
// argument key, so both are given per instance.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class ChangeSelfNetApi : public NetApi<ChangeSelfNetApi> {
 public:
  ChangeSelfNetApi(std::string url, std::string key, std::string value);

  std::string requestUrl() const override { return url; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string url;
  std::string key;
  std::string value;
};

}  // namespace qmv
