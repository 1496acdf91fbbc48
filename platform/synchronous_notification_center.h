#pragma once
// The notification centre of every platform build: an observer table behind a lock,
// with delivery on the posting thread (see NotificationCenter).
#include <map>
#include <memory>
#include <mutex>

#include "platform/notification_center.h"

namespace qmv {

class SynchronousNotificationCenter : public NotificationCenter {
 public:
  void post(const std::string& name, const Json& userInfo = nullptr) override;
  ObserverToken addObserver(const std::string& name, Callback callback) override;
  void removeObserver(ObserverToken token) override;

 private:
  struct Observer {
    std::string name;
    std::shared_ptr<Callback> callback;
  };

  std::mutex mutex_;
  std::map<ObserverToken, Observer> observers_;
  ObserverToken nextToken_ = 1;
};

}  // namespace qmv
