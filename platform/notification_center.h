#pragma once
// App-wide notifications ("changeBaseUrl", "pay_success_noti", "city_changed_noti").
// Delivery is synchronous, as the platform has it: post() calls the observers before it
// returns, so whatever the poster does next (a request right after "changeBaseUrl")
// already sees what the observers changed.
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

  // Calls, on the posting thread and before returning, every observer registered for
  // `name` when the post began, with `userInfo` (null when there is no payload). An
  // observer removed meanwhile (by an earlier observer) is skipped; one added meanwhile
  // waits for the next post. Observers may post, add and remove.
  virtual void post(const std::string& name, const Json& userInfo = nullptr) = 0;

  // Thread-safe. The token stays valid until removeObserver; tokens are never reused.
  virtual ObserverToken addObserver(const std::string& name, Callback callback) = 0;

  // Thread-safe. After it returns, the observer is not called again. Unknown tokens are
  // ignored.
  virtual void removeObserver(ObserverToken token) = 0;
};

}  // namespace qmv
