#pragma once
// Lists a page of the referral network: the member's own invitees when phone is empty
// ("getMyContacts"), else the invitees of the contact with that phone
// ("getIndirectContacts").
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "core/session/user_info_model.h"

namespace qmv {

class MyContactsNetApi : public NetApi<MyContactsNetApi> {
 public:
  MyContactsNetApi(std::string page, std::string phone);

  std::string requestUrl() const override;
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // One record per "data"."dataList" element; empty when either is missing.
  std::vector<UserInfoModel> getMyContacts() const;
  // "data"."oneContact" and "data"."twoContact" as text ("" when missing, never "0").
  std::string getFirstLevelCount() const;
  std::string getSecondLevelCount() const;

  std::string page;
  std::string phone;
};

}  // namespace qmv
