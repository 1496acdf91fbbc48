#include "features/referral/my_contacts_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

MyContactsNetApi::MyContactsNetApi(std::string page, std::string phone)
    : page(std::move(page)), phone(std::move(phone)) {}

std::string MyContactsNetApi::requestUrl() const { return phone.empty() ? "getMyContacts" : "getIndirectContacts"; }

Json MyContactsNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, phone, "phone");
  setCustomString(arguments, page, "page");
  return arguments;
}

std::vector<UserInfoModel> MyContactsNetApi::getMyContacts() const {
  std::vector<UserInfoModel> contacts;
  for (const auto& element : responseList()) contacts.emplace_back(element);
  return contacts;
}

std::string MyContactsNetApi::getFirstLevelCount() const { return strForKey(responseData(), "oneContact"); }

std::string MyContactsNetApi::getSecondLevelCount() const { return strForKey(responseData(), "twoContact"); }

}  // namespace qmv
