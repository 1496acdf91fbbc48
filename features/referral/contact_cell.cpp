#include "features/referral/contact_cell.h"

#include "core/common/display_mask.h"
#include "features/referral/referral_texts.h"

namespace qmv {

namespace texts = referral_texts;

ContactCell ContactCell::secondLevel(const UserInfoModel& contact) {
  ContactCell cell;
  cell.portraitUrl = contact.imgUrl;
  cell.placeholderImage = texts::kPortraitPlaceholder;
  cell.name = contact.name;
  // Another member's number: masked on every screen.
  cell.phoneText = texts::kPhonePrefix + display_mask::phone(contact.phone);
  cell.timeText = texts::kJoinTimePrefix + contact.time;
  return cell;
}

ContactCell ContactCell::firstLevel(const UserInfoModel& contact) {
  ContactCell cell = secondLevel(contact);
  cell.invitedText = texts::kInvitedPrefix + contact.num + texts::kInvitedSuffix;
  cell.arrowImage = texts::kInviteArrowImage;
  return cell;
}

}  // namespace qmv
