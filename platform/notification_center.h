#pragma once
// App-wide notifications ("changeBaseUrl", "pay_success_noti", "city_changed_noti").
// Posting never calls an observer directly: delivery happens later on the interface
// thread, so a poster never re-enters its own observers.
#include <cstdint>
#include <functional>
#include <string>

#include "core/common/json.h"

namespace qmv {

class NotificationCenter {
 public:
  using Callback = std::function<void(const std::string& name, const Json& userInfo)>;
  using ObserverToken = std::uint64_t;

  virtual ~NotificationCenter() = default;

  // Thread-safe. Every observer registered for `name` when the delivery runs is called
  // with `userInfo` (null when there is no payload).
  virtual void post(const std::string& name, const Json& userInfo = nullptr) = 0;

  // Thread-safe. The token stays valid until removeObserver; tokens are never reused.
  virtual ObserverToken addObserver(const std::string& name, Callback callback) = 0;

  // Thread-safe. After it returns, the observer is not called again, not even for
  // notifications posted earlier and not yet delivered. Unknown tokens are ignored.
  virtual void removeObserver(ObserverToken token) = 0;
};

}  // namespace qmv
