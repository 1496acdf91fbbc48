#pragma once
// Seams of the closed vendor libraries that have no Linux build: crash reporting,
// analytics and social sharing. The client only hands them ids and keys; the default
// Linux adapters (LoggingVendorSdks) write what they were given to the debug log.
#include <string>
#include <vector>

namespace qmv {

class CrashReporter {
 public:
  virtual ~CrashReporter() = default;
  virtual void start(const std::string& appId) = 0;
};

class Analytics {
 public:
  virtual ~Analytics() = default;
  virtual void start(const std::string& appKey, int reportPolicy, const std::string& channelId) = 0;
};

class SocialSharing {
 public:
  virtual ~SocialSharing() = default;
  virtual void registerApp(const std::string& appKey, const std::vector<std::string>& activePlatforms) = 0;
  virtual void share(const std::string& url, const std::string& image, const std::string& title,
                     const std::string& text) = 0;
};

}  // namespace qmv
