#include "features/referral/my_contact_view_controller.h"

#include "features/referral/my_contacts_net_api.h"
#include "features/referral/my_second_contact_view_controller.h"
#include "features/referral/referral_texts.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

const char* MyContactViewController::title() const { return referral_texts::kMyContactTitle; }

void MyContactViewController::setNum(const std::string& num, const std::string& subNum) {
  num_ = num;
  subNum_ = subNum;
}

void MyContactViewController::answered(const MyContactsNetApi& request) {
  setNum(request.getFirstLevelCount(), request.getSecondLevelCount());
}

void MyContactViewController::selectRow(std::size_t index) {
  if (index >= contactList.size()) return;
  Env::current().navigator->push(referral_texts::kSecondContactScreen,
                                 MySecondContactViewController::payloadOf(contactList[index]));
}

}  // namespace qmv
