#pragma once
// Push service without a vendor library: the alias the client hands over is logged.
#include "platform/push_service.h"

namespace qmv {

class LoggingPushService : public PushService {
 public:
  void setAlias(const std::string& alias, const std::string& type) override;
};

}  // namespace qmv
