#include "core/session/change_self_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

ChangeSelfNetApi::ChangeSelfNetApi(std::string url, std::string key, std::string value)
    : url(std::move(url)), key(std::move(key)), value(std::move(value)) {}

Json ChangeSelfNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  if (!key.empty()) setCustomString(arguments, value, key);
  return arguments;
}

Json ChangeSelfNetApi::changedFields() const {
  const Json& data = responseData();
  return data.is_object() ? data : Json{{key, value}};
}

}  // namespace qmv
