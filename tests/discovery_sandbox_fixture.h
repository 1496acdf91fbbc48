#pragma once
// End-to-end fixture of the screens and endpoints: the sandbox server started in-process
// on a free port with a fresh home, the real libcurl transport and a manual main loop, a
// client home of its own (settings, shipped resources, caches), the HTTP object storage,
// and recording fakes for everything the member sees (overlay, alerts, navigator, URLs,
// push alias). The session object and the area managers are rebuilt per test and per
// installClient(), which models one application start. Requests are the client's own
// endpoint classes, sent through the process-wide agent.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "apps/sandbox/demo_data.h"
#include "apps/sandbox/sandbox_server.h"
#include "core/common/dictionary.h"
#include "core/common/string_util.h"
#include "core/request/base_net_api.h"
#include "core/request/network_agent.h"
#include "core/request/network_config.h"
#include "core/session/global_data.h"
#include "core/session/login_net_api.h"
#include "core/session/user_info_net_api.h"
#include "core/storage/db_util.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/curl_transport.h"
#include "platform/linux/http_object_storage.h"
#include "platform/linux/nearest_city_geocoder.h"
#include "platform/manual_main_loop.h"
#include "platform/stack_navigator.h"
#include "platform/synchronous_notification_center.h"
#include "platform/testing/fake_location_source.h"
#include "platform/testing/recording_push_service.h"
#include "platform/testing/recording_status_overlay.h"
#include "platform/testing/recording_url_opener.h"
#include "platform/testing/scripted_alerts.h"
#include "platform/testing/temp_home.h"
#include "platform/testing/test_env.h"

namespace qmv::testsupport {

class DiscoverySandboxTest : public ::testing::Test {
 protected:
  void SetUp() override {
    sandboxHome_ = home_.home() / "sandbox";
    server_ = std::make_unique<sandbox::SandboxServer>(sandbox::SandboxOptions{sandboxHome_, 0});
    ASSERT_TRUE(server_->start().ok());
    installClient();
  }

  // One application start: fresh ports and recorders over the same settings and home, a
  // fresh session.
  void installClient() {
    scopedEnv_.reset();
    loop_ = std::make_shared<ManualMainLoop>();
    overlay_ = std::make_shared<RecordingStatusOverlay>();
    alerts_ = std::make_shared<ScriptedAlerts>();
    navigator_ = std::make_shared<StackNavigator>();
    push_ = std::make_shared<RecordingPushService>();
    Env env;
    env.settings = std::shared_ptr<SettingsStore>(&home_.settings(), [](SettingsStore*) {});
    env.files = home_.files();
    env.mainLoop = loop_;
    env.cookies = std::make_shared<CurlCookieStore>();
    env.http = std::make_shared<CurlTransport>(loop_, env.cookies);
    env.notifications = std::make_shared<SynchronousNotificationCenter>();
    env.overlay = overlay_;
    env.alerts = alerts_;
    env.navigator = navigator_;
    env.urlOpener = urls_;
    env.location = location_;
    env.push = push_;
    env.geocoder = NearestCityGeocoder::fromResources(*home_.files());
    env.objectStorage = std::make_shared<HttpObjectStorage>(server_->rootUrl() + "/oss");
    scopedEnv_ = std::make_unique<ScopedEnv>(completedForTesting(std::move(env)));
    GlobalData::resetSharedInstance();
    DBUtil::resetManagersForTesting();
    NetworkConfig::sharedInstance().setBaseUrl(server_->baseUrl());
  }

  void TearDown() override {
    NetworkAgent::sharedInstance().cancelAllRequests();
    GlobalData::resetSharedInstance();
    DBUtil::resetManagersForTesting();
    scopedEnv_.reset();
    server_.reset();
  }

  // Runs the loop until `done` (true) or ten seconds pass (false).
  bool runUntil(const std::function<bool()>& done) { return loop_->runUntil(done, std::chrono::milliseconds(10000)); }
  // Waits for a callback of the form void(bool) and returns its value (nullopt: none came).
  struct Outcome {
    std::optional<bool> value;
    std::function<void(bool)> callback() {
      value.reset();
      return [this](bool v) { value = v; };
    }
  };
  std::optional<bool> await(Outcome& outcome) {
    runUntil([&] { return outcome.value.has_value(); });
    return outcome.value;
  }
  std::optional<std::string> stored(const char* key) { return home_.settings().stringForKey(key); }
  // Runs what is already queued on the loop, such as answers that arrived together.
  void drain() { loop_->runPending(); }
  // Runs `start`, then the loop until the screen's next onLoaded: whether the answer was
  // correct (false, and a failure, when none came).
  template <class Screen, class Start>
  bool load(Screen& screen, Start start) {
    std::optional<bool> outcome;
    screen.onLoaded = [&outcome](bool correct) { outcome = correct; };
    start();
    EXPECT_TRUE(runUntil([&outcome] { return outcome.has_value(); }));
    screen.onLoaded = nullptr;
    return outcome.value_or(false);
  }

  // Starts `request` and runs the loop until it completes: "success" (a transport success,
  // whatever the envelope says), "failure", or "none" when nothing arrived in time.
  std::string send(const std::shared_ptr<BaseRequest>& request) {
    std::string outcome = "none";
    request->startWithCompletionBlockWithSuccess([&](BaseRequest&) { outcome = "success"; },
                                                 [&](BaseRequest&) { outcome = "failure"; });
    runUntil([&] { return outcome != "none"; });
    return outcome;
  }
  // Sends `request` and returns whether the envelope said "success" "0".
  bool sendCorrect(const std::shared_ptr<BaseNetApi>& request) {
    return send(request) == "success" && request->isCorrectResult();
  }
  // "data" of a finished request's envelope (null when absent or not JSON).
  static Json dataOf(const BaseRequest& request) {
    const Json envelope = parseJson(request.responseString());
    return envelope.is_object() && envelope.contains("data") ? envelope["data"] : Json();
  }
  // Signs in as the screens do: the member record of the answer becomes the session's.
  std::shared_ptr<UserInfoModel> login(const std::string& phone = sandbox::kDemoPhone,
                                       const std::string& password = sandbox::kDemoPassword) {
    auto request = std::make_shared<LoginNetApi>(phone, StringUtil::getmd5WithString(password));
    if (!sendCorrect(request)) return nullptr;
    auto info = request->getUserInfo();
    GlobalData::sharedInstance().setSelfInfo(info);
    return info;
  }
  // The member's balance in fen as "getUserInfo" reports it, folded into the session's
  // record the way the wallet screens do; nullopt when the request is not correct.
  std::optional<long long> balance() {
    auto request = std::make_shared<UserInfoNetApi>();
    if (!sendCorrect(request)) return std::nullopt;
    const Json data = dataOf(*request);
    if (const auto& self = GlobalData::sharedInstance().selfInfo()) self->setWithDict(data);
    const std::string text = strForKey(data, "balance");
    if (text.empty()) return std::nullopt;
    return std::stoll(text);
  }
  std::vector<std::string> shown() const { return overlay_->statuses(); }

  // The member's position in the demo city (WGS-84, near the People's Square of Linyi).
  static constexpr Coordinate kLinyi{35.0610, 118.3430};
  static constexpr Coordinate kJinan{36.6610, 117.0200};

  TempHome home_;
  std::filesystem::path sandboxHome_;
  std::unique_ptr<sandbox::SandboxServer> server_;
  MemorySettingsStore* const settings_ = &home_.settings();
  std::shared_ptr<ManualMainLoop> loop_;
  std::shared_ptr<RecordingStatusOverlay> overlay_;
  std::shared_ptr<ScriptedAlerts> alerts_;
  std::shared_ptr<StackNavigator> navigator_;
  std::shared_ptr<RecordingPushService> push_;
  std::shared_ptr<RecordingUrlOpener> urls_ = std::make_shared<RecordingUrlOpener>();
  std::shared_ptr<FakeLocationSource> location_ = std::make_shared<FakeLocationSource>();
  std::unique_ptr<ScopedEnv> scopedEnv_;
};

}  // namespace qmv::testsupport
