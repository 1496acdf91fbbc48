#include "platform/linux/logging_push_service.h"

#include "core/common/log.h"

namespace qmv {

void LoggingPushService::setAlias(const std::string& alias, const std::string& type) {
  logLine("push alias " + alias + " (" + type + ")");
}

}  // namespace qmv
