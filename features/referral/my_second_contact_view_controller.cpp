#include "features/referral/my_second_contact_view_controller.h"

#include "features/referral/referral_texts.h"

namespace qmv {

MySecondContactViewController::MySecondContactViewController(const UserInfoModel& contact)
    : ContactListController(contact.phone),
      contact_(contact),
      title_(contact.name + referral_texts::kSecondContactTitleSuffix) {}

Json MySecondContactViewController::payloadOf(const UserInfoModel& contact) {
  return {{"name", contact.name},
          {"phone", contact.phone},
          {"imgUrl", contact.imgUrl},
          {"time", contact.time},
          {"num", contact.num}};
}

}  // namespace qmv
