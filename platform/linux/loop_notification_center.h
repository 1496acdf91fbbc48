#pragma once
// Notification centre that delivers on the interface thread's main loop: post() queues
// one delivery task, which calls the observers registered for the name at that time.
#include <map>
#include <memory>
#include <mutex>

#include "platform/main_loop.h"
#include "platform/notification_center.h"

namespace qmv {

class LoopNotificationCenter : public NotificationCenter, public std::enable_shared_from_this<LoopNotificationCenter> {
 public:
  // REQUIRES: created with std::make_shared (deliveries hold it weakly).
  explicit LoopNotificationCenter(std::shared_ptr<MainLoop> loop);

  void post(const std::string& name, const Json& userInfo = nullptr) override;
  ObserverToken addObserver(const std::string& name, Callback callback) override;
  void removeObserver(ObserverToken token) override;

 private:
  struct Observer {
    std::string name;
    std::shared_ptr<Callback> callback;
  };

  void deliver(const std::string& name, const Json& userInfo);

  std::shared_ptr<MainLoop> loop_;
  mutable std::mutex mutex_;
  std::map<ObserverToken, Observer> observers_;
  ObserverToken nextToken_ = 1;
};

}  // namespace qmv
