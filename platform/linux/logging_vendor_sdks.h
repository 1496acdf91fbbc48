#pragma once
// Default Linux adapters of the closed vendor libraries: they write what the client
// hands them to the debug log and do nothing else.
#include "platform/vendor_sdks.h"

namespace qmv {

class LoggingCrashReporter : public CrashReporter {
 public:
  void start(const std::string& appId) override;
};

class LoggingAnalytics : public Analytics {
 public:
  void start(const std::string& appKey, int reportPolicy, const std::string& channelId) override;
};

class LoggingSocialSharing : public SocialSharing {
 public:
  void registerApp(const std::string& appKey, const std::vector<std::string>& activePlatforms) override;
  void share(const std::string& url, const std::string& image, const std::string& title,
             const std::string& text) override;
};

}  // namespace qmv
