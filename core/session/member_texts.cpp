#include "core/session/member_texts.h"

#include <cstdio>
#include <cstdlib>

namespace qmv::member_texts {

std::string balanceYuan(const UserInfoModel& me) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f", std::strtod(me.balance.c_str(), nullptr) / 100.0);
  return text;
}

std::string level(const UserInfoModel& me) {
  char text[32];
  std::snprintf(text, sizeof text, "LV%ld", static_cast<long>(me.level));
  return text;
}

std::string progress(const UserInfoModel& me) {
  char text[64];
  std::snprintf(text, sizeof text, "%s/%ld", me.nowEXP.c_str(), static_cast<long>(me.currentTotal));
  return text;
}

std::string remainingExp(const UserInfoModel& me) {
  char text[96];
  const long exp = std::strtol(me.nowEXP.c_str(), nullptr, 10);
  std::snprintf(text, sizeof text, "距离下一等级还需要%ld经验", static_cast<long>(me.currentTotal - exp));
  return text;
}

}  // namespace qmv::member_texts
