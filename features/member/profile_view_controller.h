#pragma once
// The profile screen ("个人资料"), headless: the member record's editable fields, each
// changed on its own through "postChangeSelf" with the field's key and the new value.
//
// Choices: the fields and their rules are, in this order, nickName 昵称 (1-20 characters),
// name 真实姓名 (1-20), sex 性别 ("1" 男 or "2" 女), birthday 生日 (yyyy-MM-dd, a real
// date from 1900-01-01 to today by the device's clock, in UTC), email 邮箱 (the forms'
// e-mail rule, at most 50), address 收货地址 (1-100), address_name 收货人 (1-20),
// address_phone 收货电话 (the phone rule) and postcode 邮编 (6 digits). Characters are
// code points. A value is required: a correct answer updates the record with setWithDict,
// which keeps a field whose new value is empty, so a cleared field would still show the
// old value. Every value must be UTF-8 without control characters, and is sent as typed
// (no trimming: what is shown is what is stored). A key outside the table is refused with
// "不支持修改该资料". A refusal is shown and nothing is sent. A correct answer updates the
// signed-in member's record in place with setWithDict of the answer's "data" when it is an
// object, else of {key: value}; then "修改成功". While a change runs, another is refused.
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/session/base_view_controller.h"
#include "features/member/account_centre_texts.h"

namespace qmv {

class ChangeSelfNetApi;

class ProfileViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = account_centre_texts::kProfileTitle;
  static constexpr const char* kEndpoint = "postChangeSelf";

  struct Field {
    const char* key;
    const char* label;
  };

  ProfileViewController() = default;
  // Stops a change still running; its callbacks never arrive.
  ~ProfileViewController() override;
  ProfileViewController(const ProfileViewController&) = delete;
  ProfileViewController& operator=(const ProfileViewController&) = delete;

  const char* title() const { return kTitle; }
  bool hasData() const override;

  // The editable fields, in the order the screen lists them.
  static const std::vector<Field>& fields();
  // The signed-in member's value of `key` as the record holds it; "" without a member or
  // for a key outside the table.
  std::string valueOf(std::string_view key) const;
  // The value as shown: the sex as 男/女, others as held.
  std::string displayValue(std::string_view key) const;

  // The message of the rule `value` fails for `key`; nullptr when it passes.
  static const char* refusal(std::string_view key, std::string_view value);
  // Checks and sends the change. Returns whether it was sent.
  bool change(const std::string& key, const std::string& value);
  bool isSending() const;

  // After each change ends: whether the server took it (the record is then updated).
  std::function<void(bool changed)> onFinished;

 private:
  std::shared_ptr<ChangeSelfNetApi> request_;
};

}  // namespace qmv
