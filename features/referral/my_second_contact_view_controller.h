#pragma once
// The members one contact invited ("%@的邀请" with the contact's name), paged with its own
// counter. The tree ends here: rows open nothing further.
#include <cstddef>
#include <string>

#include "core/common/json.h"
#include "features/referral/contact_cell.h"
#include "features/referral/contact_list_controller.h"

namespace qmv {

class MySecondContactViewController : public ContactListController {
 public:
  explicit MySecondContactViewController(const UserInfoModel& contact);

  const std::string& title() const { return title_; }
  const UserInfoModel& contact() const { return contact_; }
  ContactCell cellAt(std::size_t index) const { return ContactCell::secondLevel(contactList.at(index)); }

  // The contact in the server's own keys, as the first-level screen opens this one with;
  // UserInfoModel(payload) reads it back.
  static Json payloadOf(const UserInfoModel& contact);

 private:
  UserInfoModel contact_;
  std::string title_;
};

}  // namespace qmv
