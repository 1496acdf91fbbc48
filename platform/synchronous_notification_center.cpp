#include "platform/synchronous_notification_center.h"

#include <utility>
#include <vector>

namespace qmv {

void SynchronousNotificationCenter::post(const std::string& name, const Json& userInfo) {
  std::vector<std::pair<ObserverToken, std::shared_ptr<Callback>>> targets;
  {
    std::lock_guard lock(mutex_);
    for (const auto& [token, observer] : observers_) {
      if (observer.name == name) targets.emplace_back(token, observer.callback);
    }
  }
  // The lock is not held while an observer runs: it may post, add or remove.
  for (const auto& [token, callback] : targets) {
    {
      std::lock_guard lock(mutex_);
      if (!observers_.contains(token)) continue;
    }
    (*callback)(name, userInfo);
  }
}

NotificationCenter::ObserverToken SynchronousNotificationCenter::addObserver(const std::string& name,
                                                                             Callback callback) {
  std::lock_guard lock(mutex_);
  const ObserverToken token = nextToken_++;
  observers_[token] = Observer{name, std::make_shared<Callback>(std::move(callback))};
  return token;
}

void SynchronousNotificationCenter::removeObserver(ObserverToken token) {
  std::lock_guard lock(mutex_);
  observers_.erase(token);
}

}  // namespace qmv
