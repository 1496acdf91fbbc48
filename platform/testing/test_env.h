#pragma once
// For fixtures that set up only the ports a test is about: the essential ports they leave
// null get portable fakes, so that the Env can be installed.
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/clock.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/file_locations.h"
#include "platform/manual_main_loop.h"
#include "platform/settings_store.h"
#include "platform/stack_navigator.h"
#include "platform/synchronous_notification_center.h"
#include "platform/testing/recording_status_overlay.h"
#include "platform/testing/scripted_alerts.h"
#include "platform/testing/unreachable_transport.h"

namespace qmv {

namespace test_env_detail {

// One scratch home per test process, removed when the process ends.
inline const std::filesystem::path& scratchHome() {
  struct Home {
    std::filesystem::path path;
    Home() {
      std::string pattern = (std::filesystem::temp_directory_path() / "qmv-env-XXXXXX").string();
      if (mkdtemp(pattern.data()) == nullptr) std::abort();
      path = pattern;
    }
    ~Home() {
      std::error_code ec;
      std::filesystem::remove_all(path, ec);
    }
  };
  static const Home home;
  return home.path;
}

}  // namespace test_env_detail

inline void completeForTesting(Env& env) {
  if (!env.mainLoop) env.mainLoop = std::make_shared<ManualMainLoop>();
  if (!env.http) env.http = std::make_shared<UnreachableTransport>(env.mainLoop);
  if (!env.cookies) env.cookies = std::make_shared<MemoryCookieStore>();
  if (!env.settings) env.settings = std::make_shared<MemorySettingsStore>();
  if (!env.files) env.files = std::make_shared<HomeFileLocations>(test_env_detail::scratchHome());
  if (!env.clock) env.clock = std::make_shared<SystemClock>();
  if (!env.notifications) env.notifications = std::make_shared<SynchronousNotificationCenter>();
  if (!env.navigator) env.navigator = std::make_shared<StackNavigator>();
  if (!env.alerts) env.alerts = std::make_shared<ScriptedAlerts>();
  if (!env.overlay) env.overlay = std::make_shared<RecordingStatusOverlay>();
}

inline Env completedForTesting(Env env) {
  completeForTesting(env);
  return env;
}

}  // namespace qmv
