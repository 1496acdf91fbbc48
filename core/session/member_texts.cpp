#include "core/session/member_texts.h"

#include <cstdio>
#include <cstdlib>
#include <limits>

#include "core/common/string_util.h"

namespace qmv::member_texts {

// Exact for a balance of any length; text that is not a number reads as 0, as the
// platform's number parsing does.
std::string balanceYuan(const UserInfoModel& me) {
  std::string yuan = StringUtil::divideDecimalTexts(me.balance, "100", 2).value_or("0");
  const auto point = yuan.find('.');
  const std::size_t decimals = point == std::string::npos ? 0 : yuan.size() - point - 1;
  if (point == std::string::npos) yuan += '.';
  return yuan + std::string(2 - decimals, '0');
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
  // Saturated: both numbers come from the server and may be anything.
  const long exp = std::strtol(me.nowEXP.c_str(), nullptr, 10);
  long remaining = 0;
  if (__builtin_sub_overflow(static_cast<long>(me.currentTotal), exp, &remaining)) {
    remaining = exp < 0 ? std::numeric_limits<long>::max() : std::numeric_limits<long>::min();
  }
  std::snprintf(text, sizeof text, "距离下一等级还需要%ld经验", remaining);
  return text;
}

}  // namespace qmv::member_texts
