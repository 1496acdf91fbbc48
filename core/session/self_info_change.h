#pragma once
// The session's member changes through here, so that open screens whose content depends
// on who is signed in (an offer's first-purchase price, a bookmark) hear of a sign-in, a
// sign-out or an ended session and load again.
#include <functional>
#include <memory>

#include "core/session/user_info_model.h"
#include "platform/notification_center.h"

namespace qmv {

// Sets GlobalData's selfInfo and, when the session is another than before (signed in or
// out, or a new session), posts kSelfInfoChangedNotification. REQUIRES: interface thread.
void changeSelfInfo(std::shared_ptr<UserInfoModel> info);

// Calls `changed` on every such change while it lives (on the interface thread, before
// changeSelfInfo returns).
class SelfInfoChangeObserver {
 public:
  explicit SelfInfoChangeObserver(std::function<void()> changed);
  ~SelfInfoChangeObserver();
  SelfInfoChangeObserver(const SelfInfoChangeObserver&) = delete;
  SelfInfoChangeObserver& operator=(const SelfInfoChangeObserver&) = delete;

 private:
  std::shared_ptr<NotificationCenter> notifications_;  // the one observed, whatever Env is later
  NotificationCenter::ObserverToken token_ = 0;
};

}  // namespace qmv
