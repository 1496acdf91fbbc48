#include "platform/linux/logging_vendor_sdks.h"

#include "core/common/log.h"

namespace qmv {

void LoggingCrashReporter::start(const std::string& appId) { logLine("crash reporter: start " + appId); }

void LoggingAnalytics::start(const std::string& appKey, int reportPolicy, const std::string& channelId) {
  logLine("analytics: start " + appKey + " policy=" + std::to_string(reportPolicy) + " channel=" + channelId);
}

void LoggingSocialSharing::registerApp(const std::string& appKey, const std::vector<std::string>& activePlatforms) {
  std::string platforms;
  for (const auto& p : activePlatforms) platforms += (platforms.empty() ? "" : ",") + p;
  logLine("sharing: register " + appKey + " platforms=" + platforms);
}

void LoggingSocialSharing::share(const std::string& url, const std::string& image, const std::string& title,
                                 const std::string& text) {
  logLine("sharing: share " + url + " image=" + image + " title=" + title + " text=" + text);
}

}  // namespace qmv
