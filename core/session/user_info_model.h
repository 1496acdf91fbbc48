#pragma once
// The member record: the "data" object of the login and profile endpoints, every field
// text. The level fields are derived from the experience points (nowEXP) by setLevels.
// The full reader and the in-place update deliberately read the inviter under
// different keys ("inviterID" and "inviterId"), as the server sends them.
#include <cstdint>
#include <string>

#include "core/common/base_model.h"

namespace qmv {

class UserInfoModel : public BaseModel {
 public:
  UserInfoModel() = default;
  // Reads every field with strForKey (missing or null gives ""), then setLevels.
  explicit UserInfoModel(const Json& dic);

  // Replaces only the fields whose key holds a non-null, non-empty value (inviter under
  // "inviterId"), then setLevels.
  void setWithDict(const Json& dic);

  // Recomputes level, totalProgress, currentProgress and currentTotal from nowEXP. The
  // top levels keep their earlier progress on purpose; a negative value matches no level.
  void setLevels();

  std::string sessionId;
  std::string phone;
  std::string nickName;
  std::string sex;
  std::string birthday;
  std::string email;
  std::string inviterID;
  std::string balance;
  std::string bankCardNum;
  std::string imgUrl;
  std::string address;
  std::string address_name;
  std::string address_phone;
  std::string postcode;
  std::string nowEXP;
  std::string name;
  std::string num;
  std::string time;
  std::string userName;

  std::int64_t level = 0;
  double totalProgress = 0;
  double currentProgress = 0;
  std::int64_t currentTotal = 0;
  std::int64_t currentExp = 0;  // reserved
};

}  // namespace qmv
