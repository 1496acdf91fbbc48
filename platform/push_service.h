#pragma once
// The push-notification service. The client only names the device after the member
// ("QMV_User" alias type), or marks it as anonymous after a failed login or an expiry.
#include <string>

namespace qmv {

class PushService {
 public:
  virtual ~PushService() = default;
  virtual void setAlias(const std::string& alias, const std::string& type) = 0;
};

}  // namespace qmv
