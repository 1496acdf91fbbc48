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

  // What a correct answer changed, to merge into the member's record: the answer's "data"
  // when it is an object (the whole record), else {key: value}.
  Json changedFields() const;

  std::string url;
  std::string key;
  std::string value;
};

}  // namespace qmv
