#pragma once
// What the member screens show of the member record: the balance in yuan and the level
// line with the experience still missing for the next level.
#include <string>

#include "core/session/user_info_model.h"

namespace qmv::member_texts {

// The balance (fen) in yuan, "%.2f"; an unreadable balance reads as 0.
std::string balanceYuan(const UserInfoModel& me);
// "LV%ld".
std::string level(const UserInfoModel& me);
// "%@/%ld": experience points over the current level's total.
std::string progress(const UserInfoModel& me);
// "距离下一等级还需要%ld经验".
std::string remainingExp(const UserInfoModel& me);

}  // namespace qmv::member_texts
