#include "platform/linux/loop_notification_center.h"

#include <utility>
#include <vector>

namespace qmv {

LoopNotificationCenter::LoopNotificationCenter(std::shared_ptr<MainLoop> loop) : loop_(std::move(loop)) {}

void LoopNotificationCenter::post(const std::string& name, const Json& userInfo) {
  // A weak reference: a centre torn down before its loop drains simply drops the delivery.
  loop_->post([weak = weak_from_this(), name, userInfo] {
    if (auto self = weak.lock()) self->deliver(name, userInfo);
  });
}

NotificationCenter::ObserverToken LoopNotificationCenter::addObserver(const std::string& name, Callback callback) {
  std::lock_guard lock(mutex_);
  const ObserverToken token = nextToken_++;
  observers_[token] = Observer{name, std::make_shared<Callback>(std::move(callback))};
  return token;
}

void LoopNotificationCenter::removeObserver(ObserverToken token) {
  std::lock_guard lock(mutex_);
  observers_.erase(token);
}

void LoopNotificationCenter::deliver(const std::string& name, const Json& userInfo) {
  std::vector<std::pair<ObserverToken, std::shared_ptr<Callback>>> targets;
  {
    std::lock_guard lock(mutex_);
    for (const auto& [token, observer] : observers_) {
      if (observer.name == name) targets.emplace_back(token, observer.callback);
    }
  }
  for (const auto& [token, callback] : targets) {
    // An observer removed by an earlier observer of the same delivery is skipped.
    {
      std::lock_guard lock(mutex_);
      if (!observers_.contains(token)) continue;
    }
    (*callback)(name, userInfo);
  }
}

}  // namespace qmv
