#pragma once
// What a row of the contacts lists shows. First-level rows also show how many members
// the contact invited and the arrow to that contact's own list; second-level rows end
// the tree and show neither.
#include <string>

#include "core/session/user_info_model.h"

namespace qmv {

struct ContactCell {
  std::string portraitUrl;
  std::string placeholderImage;
  std::string name;
  std::string phoneText;
  std::string timeText;
  std::string invitedText;  // "" on the second level
  std::string arrowImage;   // "" on the second level

  static ContactCell firstLevel(const UserInfoModel& contact);
  static ContactCell secondLevel(const UserInfoModel& contact);
};

}  // namespace qmv
