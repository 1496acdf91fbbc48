#pragma once
// The push-notification service. The client only names the device after the member
// ("QMV_User" alias type), or marks it as anonymous after a failed login or an expiry.
#include <string>
#include <vector>

#include "core/common/json.h"

namespace qmv {

class PushService {
 public:
  virtual ~PushService() = default;
  virtual void setAlias(const std::string& alias, const std::string& type) = 0;

  // Start-up: the push library with its key and the launch options, then registration
  // for remote and user notifications with one notification category.
  struct Action {
    std::string identifier;
    std::string title;
  };
  struct Category {
    std::string identifier;
    std::vector<Action> actions;
  };
  virtual void start(const std::string& /*appKey*/, const Json& /*launchOptions*/) {}
  virtual void registerForNotifications(const Category& /*category*/) {}
  virtual void setLogEnabled(bool /*enabled*/) {}
};

}  // namespace qmv
