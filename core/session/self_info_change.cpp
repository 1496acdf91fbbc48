#include "core/session/self_info_change.h"

#include "core/common/notification_names.h"
#include "core/session/global_data.h"
#include "platform/env.h"

namespace qmv {

void changeSelfInfo(std::shared_ptr<UserInfoModel> info) {
  auto& global = GlobalData::sharedInstance();
  const auto sessionOf = [](const std::shared_ptr<UserInfoModel>& member) {
    return member ? member->sessionId : std::string();
  };
  const bool changed =
      (global.selfInfo() != nullptr) != (info != nullptr) || sessionOf(global.selfInfo()) != sessionOf(info);
  global.setSelfInfo(std::move(info));
  if (changed && Env::current().notifications) Env::current().notifications->post(kSelfInfoChangedNotification);
}

SelfInfoChangeObserver::SelfInfoChangeObserver(std::function<void()> changed)
    : notifications_(Env::current().notifications) {
  if (!notifications_) return;
  token_ = notifications_->addObserver(kSelfInfoChangedNotification,
                                       [changed = std::move(changed)](const std::string&, const Json&) { changed(); });
}

SelfInfoChangeObserver::~SelfInfoChangeObserver() {
  if (notifications_ && token_ != 0) notifications_->removeObserver(token_);
}

}  // namespace qmv
