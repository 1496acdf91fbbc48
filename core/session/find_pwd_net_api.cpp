#include "core/session/find_pwd_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

FindPwdNetApi::FindPwdNetApi(std::string phone, std::string newPassword)
    : phone(std::move(phone)), newPassword(std::move(newPassword)) {}

Json FindPwdNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, phone, "phone");
  setCustomString(arguments, newPassword, "newPassword");
  return arguments;
}

}  // namespace qmv
