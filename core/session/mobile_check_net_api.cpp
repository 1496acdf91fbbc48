#include "core/session/mobile_check_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

MobileCheckNetApi::MobileCheckNetApi(std::string mobile, std::string code, std::string sessionId)
    : mobile(std::move(mobile)), code(std::move(code)), sessionId(std::move(sessionId)) {}

Json MobileCheckNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, mobile, "mobile");
  setCustomString(arguments, code, "code");
  setCustomString(arguments, sessionId, "sessionId");
  return arguments;
}

}  // namespace qmv
