#include "core/session/login_net_api.h"

#include <utility>

#include "core/common/dictionary.h"
#include "core/session/settings_keys.h"
#include "platform/env.h"
#include "platform/settings_store.h"

namespace qmv {

LoginNetApi::LoginNetApi(std::string userName, std::string userPassword)
    : userName(std::move(userName)), userPassword(std::move(userPassword)) {}

Json LoginNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, userName, "userName");
  setCustomString(arguments, userPassword, "userPassword");
  return arguments;
}

Json LoginNetApi::userPhone() const {
  const Json& data = responseData();
  Json phone;
  if (data.is_object() && data.contains("phone")) phone = data["phone"];
  // A number is kept as its text so that the login screen can read it back.
  if (phone.is_number()) phone = textOf(phone);
  return phone;
}

std::shared_ptr<UserInfoModel> LoginNetApi::userInfo() const {
  const Json& data = responseData();
  if (!data.is_object()) return nullptr;
  return std::make_shared<UserInfoModel>(data);
}

std::shared_ptr<UserInfoModel> LoginNetApi::getUserInfo() const {
  if (const auto& settings = Env::current().settings) settings->setObject(userPhone(), kUserPhoneKey);
  return userInfo();
}

}  // namespace qmv
