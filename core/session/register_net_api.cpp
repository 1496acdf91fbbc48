#include "core/session/register_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

RegisterNetApi::RegisterNetApi(std::string password, std::string phone, std::string inviteId, std::string userName,
                               std::string code, std::string sessionId)
    : password(std::move(password)),
      phone(std::move(phone)),
      inviteId(std::move(inviteId)),
      userName(std::move(userName)),
      code(std::move(code)),
      sessionId(std::move(sessionId)) {}

Json RegisterNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, password, "password");
  setCustomString(arguments, phone, "phone");
  setCustomString(arguments, userName, "userName");
  setCustomString(arguments, inviteId, "inviteId");
  setCustomString(arguments, code, "code");
  setCustomString(arguments, sessionId, "sessionId");
  return arguments;
}

}  // namespace qmv
