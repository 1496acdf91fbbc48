#include "features/member/profile_view_controller.h"

#include <chrono>

#include "core/common/control_util.h"
#include "core/common/utf8.h"
#include "core/session/account_texts.h"
#include "core/session/change_self_net_api.h"
#include "core/session/global_data.h"
#include "core/session/user_info_model.h"
#include "platform/clock.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

namespace texts = account_centre_texts;

struct Rule {
  const char* key;
  const char* label;
  std::string UserInfoModel::*field;
  std::size_t maxLength;  // characters; 0 when the rule below bounds the value
  const char* refusal;
  bool (*valid)(std::string_view value);  // nullptr: only the length counts
};

bool allDigits(std::string_view value) {
  for (const char c : value) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

bool isSex(std::string_view value) { return value == "1" || value == "2"; }

bool isPostcode(std::string_view value) { return value.size() == 6 && allDigits(value); }

bool isBirthday(std::string_view value) {
  if (value.size() != 10 || value[4] != '-' || value[7] != '-') return false;
  const auto number = [&](std::size_t at, std::size_t length) {
    const std::string_view part = value.substr(at, length);
    return allDigits(part) ? std::stoi(std::string(part)) : -1;
  };
  const int year = number(0, 4), month = number(5, 2), day = number(8, 2);
  if (year < 1900 || month < 1 || day < 1) return false;
  using namespace std::chrono;
  const year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return false;
  const auto today = floor<days>(sys_seconds(seconds(Env::current().clock->unixSeconds())));
  return sys_days(date) <= today;
}

bool isEmail(std::string_view value) { return ControlUtil::validateEmail(value); }
bool isPhone(std::string_view value) { return ControlUtil::validatePhone(value); }

const Rule kRules[] = {
    {"nickName", texts::kNickNameLabel, &UserInfoModel::nickName, 20, texts::kBadNickName, nullptr},
    {"name", texts::kNameLabel, &UserInfoModel::name, 20, texts::kBadName, nullptr},
    {"sex", texts::kSexLabel, &UserInfoModel::sex, 0, texts::kBadSex, isSex},
    {"birthday", texts::kBirthdayLabel, &UserInfoModel::birthday, 0, texts::kBadBirthday, isBirthday},
    {"email", texts::kEmailLabel, &UserInfoModel::email, 50, texts::kBadEmail, isEmail},
    {"address", texts::kAddressLabel, &UserInfoModel::address, 100, texts::kBadAddress, nullptr},
    {"address_name", texts::kAddressNameLabel, &UserInfoModel::address_name, 20, texts::kBadAddressName, nullptr},
    {"address_phone", texts::kAddressPhoneLabel, &UserInfoModel::address_phone, 0, account_texts::kBadPhone,
     isPhone},
    {"postcode", texts::kPostcodeLabel, &UserInfoModel::postcode, 0, texts::kBadPostcode, isPostcode},
};

const Rule* ruleOf(std::string_view key) {
  for (const Rule& rule : kRules) {
    if (key == rule.key) return &rule;
  }
  return nullptr;
}

}  // namespace

ProfileViewController::~ProfileViewController() { detachRequest(request_); }

bool ProfileViewController::hasData() const { return GlobalData::sharedInstance().selfInfo() != nullptr; }

const std::vector<ProfileViewController::Field>& ProfileViewController::fields() {
  static const std::vector<Field> kFields = [] {
    std::vector<Field> list;
    for (const Rule& rule : kRules) list.push_back({rule.key, rule.label});
    return list;
  }();
  return kFields;
}

std::string ProfileViewController::valueOf(std::string_view key) const {
  const auto& me = GlobalData::sharedInstance().selfInfo();
  const Rule* rule = ruleOf(key);
  return me && rule ? (*me).*rule->field : std::string();
}

std::string ProfileViewController::displayValue(std::string_view key) const {
  const std::string value = valueOf(key);
  if (key != "sex") return value;
  return value == "1" ? texts::kMale : value == "2" ? texts::kFemale : value;
}

const char* ProfileViewController::refusal(std::string_view key, std::string_view value) {
  const Rule* rule = ruleOf(key);
  if (rule == nullptr) return texts::kUnknownField;
  const auto length = utf8::typedLength(value, false);
  if (!length) return texts::kBadCharacters;
  if (*length == 0 || (rule->maxLength > 0 && *length > rule->maxLength)) return rule->refusal;
  if (rule->valid != nullptr && !rule->valid(value)) return rule->refusal;
  return nullptr;
}

bool ProfileViewController::isSending() const { return request_ && request_->isExecuting(); }

bool ProfileViewController::change(const std::string& key, const std::string& value) {
  if (isSending()) return false;
  if (const char* refused = refusal(key, value)) {
    Env::current().overlay->showImage("", refused);
    return false;
  }
  detachRequest(request_);
  request_ = std::make_shared<ChangeSelfNetApi>(kEndpoint, key, value);
  attachRequest(*request_);
  request_->startWithCompletionBlockWithSuccess(
      [this](ChangeSelfNetApi& api) {
        const bool correct = api.isCorrectResult();
        if (correct) {
          if (const auto& me = GlobalData::sharedInstance().selfInfo()) me->setWithDict(api.changedFields());
          Env::current().overlay->showImage("", texts::kProfileChanged);
        }
        if (onFinished) onFinished(correct);
      },
      [this](BaseRequest&) {
        if (onFinished) onFinished(false);
      });
  return true;
}

}  // namespace qmv
