#include "core/session/login_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

LoginNetApi::LoginNetApi(std::string userName, std::string userPassword)
    : userName(std::move(userName)), userPassword(std::move(userPassword)) {}

Json LoginNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, userName, "userName");
  setCustomString(arguments, userPassword, "userPassword");
  return arguments;
}

std::shared_ptr<UserInfoModel> LoginNetApi::getUserInfo() const {
  const Json& data = responseData();
  if (!data.is_object()) return nullptr;
  return std::make_shared<UserInfoModel>(data);
}

}  // namespace qmv
