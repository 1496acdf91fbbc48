#pragma once
// The member's own contacts ("我的人脉"): a header with the counts of first- and
// second-level contacts, as the server gave them ("" when it did not, never "0"), and
// the paged list of the members he invited. Choosing one opens that contact's invitees.
#include <cstddef>
#include <string>

#include "features/referral/contact_cell.h"
#include "features/referral/contact_list_controller.h"

namespace qmv {

class MyContactViewController : public ContactListController {
 public:
  MyContactViewController() : ContactListController("") {}

  const char* title() const;
  // The header's two count labels.
  const std::string& num() const { return num_; }
  const std::string& subNum() const { return subNum_; }
  void setNum(const std::string& num, const std::string& subNum);

  // Stops a running request and asks for page pageNum of the member's own contacts.
  void myContactNet() { sendPage(); }
  ContactCell cellAt(std::size_t index) const { return ContactCell::firstLevel(contactList.at(index)); }
  // Pushes the second-level screen for row `index` (the contact in the server's own
  // keys as payload). Out of range: nothing happens.
  void selectRow(std::size_t index);

 protected:
  void answered(const MyContactsNetApi& request) override;

 private:
  std::string num_;
  std::string subNum_;
};

}  // namespace qmv
