#include "core/session/user_info_model.h"

#include <array>
#include <cctype>
#include <limits>

namespace qmv {
namespace {

// Field and the key each reader takes it from.
struct FieldKeys {
  std::string UserInfoModel::*field;
  const char* fullKey;
  const char* updateKey;
};

const std::array<FieldKeys, 19>& fieldKeys() {
  static const std::array<FieldKeys, 19> keys = {{
      {&UserInfoModel::sessionId, "sessionId", "sessionId"},
      {&UserInfoModel::phone, "phone", "phone"},
      {&UserInfoModel::nickName, "nickName", "nickName"},
      {&UserInfoModel::sex, "sex", "sex"},
      {&UserInfoModel::birthday, "birthday", "birthday"},
      {&UserInfoModel::email, "email", "email"},
      {&UserInfoModel::inviterID, "inviterID", "inviterId"},
      {&UserInfoModel::balance, "balance", "balance"},
      {&UserInfoModel::bankCardNum, "bankCardNum", "bankCardNum"},
      {&UserInfoModel::imgUrl, "imgUrl", "imgUrl"},
      {&UserInfoModel::address, "address", "address"},
      {&UserInfoModel::address_name, "address_name", "address_name"},
      {&UserInfoModel::address_phone, "address_phone", "address_phone"},
      {&UserInfoModel::postcode, "postcode", "postcode"},
      {&UserInfoModel::nowEXP, "nowExp", "nowExp"},
      {&UserInfoModel::name, "name", "name"},
      {&UserInfoModel::num, "num", "num"},
      {&UserInfoModel::time, "time", "time"},
      {&UserInfoModel::userName, "userName", "userName"},
  }};
  return keys;
}

// Integer value of a text the way the platform reads it: leading blanks, an optional
// sign and the digits that follow; anything unreadable is 0, overflow saturates.
std::int64_t integerValue(const std::string& text) {
  std::size_t i = 0;
  while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  std::int64_t value = 0;
  constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
  for (; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i) {
    const int digit = text[i] - '0';
    if (value > (kMax - digit) / 10) return negative ? std::numeric_limits<std::int64_t>::min() : kMax;
    value = value * 10 + digit;
  }
  return negative ? -value : value;
}

}  // namespace

UserInfoModel::UserInfoModel(const Json& dic) : BaseModel(dic) {
  for (const auto& f : fieldKeys()) this->*f.field = strForKey(dic, f.fullKey);
  setLevels();
}

void UserInfoModel::setWithDict(const Json& dic) {
  if (dic.is_object()) {
    for (const auto& f : fieldKeys()) {
      const auto it = dic.find(f.updateKey);
      if (it == dic.end() || it->is_null()) continue;
      const std::string text = textOf(*it);
      if (!text.empty()) this->*f.field = text;
    }
  }
  setLevels();
}

void UserInfoModel::setLevels() {
  const std::int64_t e = integerValue(nowEXP);
  totalProgress = 1.0;
  if (e < 0) return;
  // The first eight levels double their span; level 8 always shows a full bar and the
  // levels above it leave progress and total as they were.
  std::int64_t start = 0;
  std::int64_t end = 100;
  for (std::int64_t lv = 0; lv <= 7; ++lv) {
    if (e < end) {
      level = lv;
      currentProgress = static_cast<double>(e - start) / static_cast<double>(end - start);
      currentTotal = end;
      return;
    }
    start = end;
    end *= 2;
  }
  if (e < 25600) {
    level = 8;
    currentProgress = 1.0;
    currentTotal = 25600;
  } else if (e < 51200) {
    level = 9;
  } else if (e < 102400) {
    level = 10;
  } else {
    level = 11;
  }
}

}  // namespace qmv
