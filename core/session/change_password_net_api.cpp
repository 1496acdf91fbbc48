#include "core/session/change_password_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

ChangePasswordNetApi::ChangePasswordNetApi(std::string newPassword, std::string oldPassword)
    : newPassword(std::move(newPassword)), oldPassword(std::move(oldPassword)) {}

Json ChangePasswordNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, newPassword, "newPassword");
  setCustomString(arguments, oldPassword, "oldPassword");
  return arguments;
}

}  // namespace qmv
