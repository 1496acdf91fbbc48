#pragma once
// End-to-end fixture of the account flows: an in-process sandbox on a free port and a
// client whose ports are the real Linux adapters where the flow touches the outside
// (curl transport, SQLite settings file, HTTP object storage, image-file camera) and
// recording fakes where the test reads what the member would see (overlay, alerts,
// push alias). The main loop is manual, so countdowns move only when the test advances
// its clock. installClient() models one application start: a fresh GlobalData over the
// same settings file.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

#include "apps/sandbox/demo_data.h"
#include "apps/sandbox/sandbox_server.h"
#include "apps/sandbox/sandbox_test_support.h"
#include "core/request/network_agent.h"
#include "core/request/network_config.h"
#include "core/session/global_data.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/file_locations.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/curl_transport.h"
#include "platform/linux/http_object_storage.h"
#include "platform/linux/image_file_camera.h"
#include "platform/linux/sqlite_settings_store.h"
#include "platform/manual_main_loop.h"
#include "platform/stack_navigator.h"
#include "platform/testing/recording_push_service.h"
#include "platform/testing/recording_status_overlay.h"
#include "platform/testing/scripted_alerts.h"
#include "platform/testing/test_env.h"

namespace qmv::testsupport {

class AccountE2ETest : public ::testing::Test {
 protected:
  void SetUp() override {
    home_ = sandbox::testing::freshHome();
    server_ = std::make_unique<sandbox::SandboxServer>(sandbox::SandboxOptions{home_ / "server", 0});
    ASSERT_TRUE(server_->start().ok());
    installClient();
  }

  void TearDown() override {
    NetworkAgent::sharedInstance().cancelAllRequests();
    GlobalData::resetSharedInstance();
    scopedEnv_.reset();
    server_.reset();
    std::filesystem::remove_all(home_);
  }

  // One application start: fresh ports over the same settings file, a fresh session.
  void installClient(std::filesystem::path cameraImage = {}) {
    scopedEnv_.reset();
    GlobalData::resetSharedInstance();
    loop_ = std::make_shared<ManualMainLoop>();
    overlay_ = std::make_shared<RecordingStatusOverlay>();
    navigator_ = std::make_shared<StackNavigator>();
    alerts_ = std::make_shared<ScriptedAlerts>();
    push_ = std::make_shared<RecordingPushService>();
    settings_.reset();  // the previous run has ended
    auto opened = SqliteSettingsStore::openInHome(home_ / "client");
    ASSERT_TRUE(opened.ok()) << opened.status().message();
    settings_ = std::shared_ptr<SqliteSettingsStore>(std::move(opened->store));
    Env env;
    env.mainLoop = loop_;
    env.cookies = std::make_shared<CurlCookieStore>();
    env.http = std::make_shared<CurlTransport>(loop_, env.cookies);
    env.files = std::make_shared<HomeFileLocations>(home_ / "client");
    env.settings = settings_;
    env.overlay = overlay_;
    env.navigator = navigator_;
    env.alerts = alerts_;
    env.push = push_;
    env.objectStorage = std::make_shared<HttpObjectStorage>(server_->rootUrl() + "/oss");
    env.camera = std::make_shared<ImageFileCamera>(std::move(cameraImage));
    scopedEnv_.emplace(completedForTesting(std::move(env)));
    NetworkConfig::sharedInstance().setBaseUrl(server_->baseUrl());
  }

  // Runs the loop (without moving its clock) until `done` or ten seconds of wall time.
  bool waitFor(const std::function<bool()>& done) { return loop_->runUntil(done, std::chrono::milliseconds(10000)); }

  // Waits for a callback of the form void(bool) and returns its value (nullopt: none came).
  struct Outcome {
    std::optional<bool> value;
    std::function<void(bool)> callback() {
      value.reset();
      return [this](bool v) { value = v; };
    }
  };
  std::optional<bool> await(Outcome& outcome) {
    waitFor([&] { return outcome.value.has_value(); });
    return outcome.value;
  }

  std::optional<std::string> stored(const char* key) const { return settings_->stringForKey(key); }

  std::filesystem::path home_;
  std::unique_ptr<sandbox::SandboxServer> server_;
  std::shared_ptr<ManualMainLoop> loop_;
  std::shared_ptr<RecordingStatusOverlay> overlay_;
  std::shared_ptr<StackNavigator> navigator_;
  std::shared_ptr<ScriptedAlerts> alerts_;
  std::shared_ptr<RecordingPushService> push_;
  std::shared_ptr<SqliteSettingsStore> settings_;
  std::optional<ScopedEnv> scopedEnv_;
};

}  // namespace qmv::testsupport
