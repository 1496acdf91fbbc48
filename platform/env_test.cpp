#include "platform/env.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "platform/app_window.h"
#include "platform/camera.h"
#include "platform/fixed_metrics_text_measurer.h"
#include "platform/location_source.h"
#include "platform/object_storage.h"
#include "platform/payment_channels.h"
#include "platform/qr_generator.h"
#include "platform/reachability.h"
#include "platform/reverse_geocoder.h"
#include "platform/text_measurer.h"
#include "platform/url_opener.h"
#include "platform/web_view.h"
#include "platform/testing/test_env.h"

namespace qmv {
namespace {

// Each null object answers as the code that asked "is the port there?" went on without it.
TEST(EnvTest, InstallingGivesEveryMissingOptionalPortItsNullObject) {
  ScopedEnv scoped(completedForTesting(Env{}));
  const Env& env = Env::current();
  ASSERT_TRUE(env.push && env.crashReporter && env.analytics && env.sharing);
  ASSERT_TRUE(env.reachability && env.location && env.geocoder && env.textMeasurer && env.qrGenerator);
  ASSERT_TRUE(env.urlOpener && env.webViews && env.payments && env.objectStorage && env.camera && env.window);

  EXPECT_TRUE(env.reachability->isReachable());
  EXPECT_FALSE(env.location->locationServicesEnabled());
  EXPECT_FALSE(env.geocoder->reverseGeocode(Coordinate{35.1, 118.3}).has_value());
  EXPECT_EQ(env.textMeasurer->measure("店铺地址", 14, 300), 0);
  EXPECT_FALSE(env.qrGenerator->encode("order").has_value());
  EXPECT_FALSE(env.urlOpener->canOpenURL("tel://10086"));
  EXPECT_FALSE(env.urlOpener->openURL("tel://10086"));
  EXPECT_EQ(env.webViews->makeWebView(), nullptr);
  EXPECT_FALSE(env.payments->wechat || env.payments->alipay || env.payments->uppay);
  EXPECT_FALSE(env.camera->isAvailable());
  env.window->showLaunchView("LaunchImage", "http://example.invalid/launch.png");
  EXPECT_FALSE(env.window->isLaunchViewShown());
}

TEST(EnvTest, PortsSetByTheCallerAreKeptAndTheOldEnvComesBack) {
  auto loop = std::make_shared<ManualMainLoop>();
  auto measurer = std::make_shared<FixedMetricsTextMeasurer>();
  {
    Env env;
    env.mainLoop = loop;
    env.textMeasurer = measurer;
    ScopedEnv scoped(completedForTesting(std::move(env)));
    EXPECT_EQ(Env::current().mainLoop, loop);
    EXPECT_EQ(Env::current().textMeasurer, measurer);
    {
      ScopedEnv inner(completedForTesting(Env{}));
      EXPECT_NE(Env::current().mainLoop, loop);
    }
    EXPECT_EQ(Env::current().mainLoop, loop);
  }
  EXPECT_NE(Env::current().mainLoop, loop);
}

// The screen that asked for the portrait goes on in the same turn, as it did when it never asked.
TEST(EnvTest, NullObjectStorageAnswersBeforeDownloadReturns) {
  ScopedEnv scoped(completedForTesting(Env{}));
  std::optional<bool> got;
  Env::current().objectStorage->download("someone.png", [&](std::optional<ObjectStorage::Bytes> bytes) {
    got = bytes.has_value();
  });
  ASSERT_TRUE(got.has_value());
  EXPECT_FALSE(*got);
  std::optional<bool> uploaded;
  Env::current().objectStorage->upload("someone.png", {1, 2}, [&](bool ok) { uploaded = ok; });
  EXPECT_EQ(uploaded, std::optional<bool>(false));
}

TEST(EnvDeathTest, AMissingEssentialPortIsRefusedByName) {
  const char* essentials[] = {"mainLoop", "http",      "cookies",   "settings", "files",
                              "clock",    "notifications", "navigator", "alerts",   "overlay"};
  for (const std::string name : essentials) {
    Env env = completedForTesting(Env{});
    if (name == "mainLoop") env.mainLoop.reset();
    if (name == "http") env.http.reset();
    if (name == "cookies") env.cookies.reset();
    if (name == "settings") env.settings.reset();
    if (name == "files") env.files.reset();
    if (name == "clock") env.clock.reset();
    if (name == "notifications") env.notifications.reset();
    if (name == "navigator") env.navigator.reset();
    if (name == "alerts") env.alerts.reset();
    if (name == "overlay") env.overlay.reset();
    EXPECT_DEATH(ScopedEnv scoped(env), "no " + name + " port") << name;
    EXPECT_DEATH(Env::install(env), "no " + name + " port") << name;
  }
}

}  // namespace
}  // namespace qmv
