#include "core/session/mobile_code_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

MobileCodeNetApi::MobileCodeNetApi(std::string mobile, std::int64_t type) : mobile(std::move(mobile)), type(type) {}

std::string MobileCodeNetApi::requestUrl() const { return type == 1 ? "getCheckCode4ChgMobile" : "getMobileCode"; }

Json MobileCodeNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, mobile, "mobile");
  return arguments;
}

std::string MobileCodeNetApi::getSessionId() const { return strForKey(responseData(), "sessionId"); }

}  // namespace qmv
