#include "features/member/member_level_view_controller.h"

#include "core/session/global_data.h"
#include "core/session/member_texts.h"
#include "core/session/user_info_model.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

const UserInfoModel* MemberLevelViewController::member() const { return GlobalData::sharedInstance().selfInfo().get(); }

bool MemberLevelViewController::hasMember() const { return member() != nullptr; }

std::string MemberLevelViewController::levelText() const {
  const UserInfoModel* me = member();
  return me ? member_texts::level(*me) : std::string();
}

std::string MemberLevelViewController::experienceText() const {
  const UserInfoModel* me = member();
  return me ? member_texts::progress(*me) : std::string();
}

std::string MemberLevelViewController::remainingText() const {
  const UserInfoModel* me = member();
  return me ? member_texts::remainingExp(*me) : std::string();
}

double MemberLevelViewController::progress() const {
  const UserInfoModel* me = member();
  return me ? me->currentProgress : 0.0;
}

void MemberLevelViewController::openLevelPage() {
  Env::current().navigator->push(account_centre_texts::kH5Screen,
                                 Json{{account_centre_texts::kH5TypeKey, account_centre_texts::kLevelPageType}});
}

}  // namespace qmv
