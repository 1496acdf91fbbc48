#pragma once
// Notification centre for tests: records every post and delivers queued posts when the
// test calls flush() (standing in for the main loop's turn).
#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/notification_center.h"

namespace qmv {

class RecordingNotificationCenter : public NotificationCenter {
 public:
  void post(const std::string& name, const Json& userInfo = nullptr) override {
    posted_.emplace_back(name, userInfo);
    queue_.emplace_back(name, userInfo);
  }
  ObserverToken addObserver(const std::string& name, Callback callback) override {
    const ObserverToken token = nextToken_++;
    observers_[token] = {name, std::move(callback)};
    return token;
  }
  void removeObserver(ObserverToken token) override { observers_.erase(token); }

  // Delivers every queued post to the observers registered at delivery time.
  void flush() {
    while (!queue_.empty()) {
      auto [name, info] = std::move(queue_.front());
      queue_.pop_front();
      const auto snapshot = observers_;
      for (const auto& [token, observer] : snapshot) {
        if (observer.first == name && observers_.contains(token)) observer.second(name, info);
      }
    }
  }

  const std::vector<std::pair<std::string, Json>>& posted() const { return posted_; }

 private:
  std::vector<std::pair<std::string, Json>> posted_;
  std::deque<std::pair<std::string, Json>> queue_;
  std::map<ObserverToken, std::pair<std::string, Callback>> observers_;
  ObserverToken nextToken_ = 1;
};

}  // namespace qmv
