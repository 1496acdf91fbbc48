#pragma once
// Contract fixture: the sandbox started in-process on a free port with a fresh home, and a
// client environment of real adapters on the wire (Asio main loop, libcurl transport,
// cookie store) with memory settings and a recording status overlay. Requests are the
// client's own endpoint classes, sent through the process-wide agent; send() runs the
// interface loop until the request has completed.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/sandbox/demo_data.h"
#include "apps/sandbox/sandbox_server.h"
#include "core/common/dictionary.h"
#include "core/common/json.h"
#include "core/common/string_util.h"
#include "core/request/base_net_api.h"
#include "core/request/network_agent.h"
#include "core/request/network_config.h"
#include "core/session/global_data.h"
#include "core/session/login_net_api.h"
#include "core/session/user_info_model.h"
#include "core/session/user_info_net_api.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/file_locations.h"
#include "platform/linux/asio_main_loop.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/curl_transport.h"
#include "platform/settings_store.h"
#include "platform/testing/recording_status_overlay.h"
#include "platform/testing/test_env.h"
// Last: httplib brings a DELETE macro that must not reach the request headers above.
#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::contract {

class SandboxContractTest : public ::testing::Test {
 protected:
  void SetUp() override {
    home_ = sandbox::testing::freshHome();
    server_ = std::make_unique<sandbox::SandboxServer>(sandbox::SandboxOptions{home_ / "server", 0});
    ASSERT_TRUE(server_->start().ok());

    Env env;
    env.mainLoop = loop_;
    env.cookies = std::make_shared<CurlCookieStore>();
    env.http = std::make_shared<CurlTransport>(loop_, env.cookies);
    env.settings = settings_;
    env.files = std::make_shared<HomeFileLocations>(home_ / "client");
    env.overlay = overlay_;
    scopedEnv_.emplace(completedForTesting(std::move(env)));
    GlobalData::resetSharedInstance();
    NetworkConfig::sharedInstance().setBaseUrl(server_->baseUrl());
  }

  void TearDown() override {
    NetworkAgent::sharedInstance().cancelAllRequests();
    GlobalData::resetSharedInstance();
    // The transport goes first: its kept-alive connections would hold the server's threads.
    scopedEnv_.reset();
    server_.reset();
    std::filesystem::remove_all(home_);
  }

  // Starts `request` and runs the loop until it completes: "success" (a transport success,
  // whatever the envelope says), "failure", or "none" when nothing arrived in time.
  std::string send(const std::shared_ptr<BaseRequest>& request) {
    std::string outcome = "none";
    request->startWithCompletionBlockWithSuccess([&](BaseRequest&) { outcome = "success"; },
                                                 [&](BaseRequest&) { outcome = "failure"; });
    loop_->runUntil([&] { return outcome != "none"; }, std::chrono::seconds(20));
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

  std::filesystem::path home_;
  std::unique_ptr<sandbox::SandboxServer> server_;
  std::shared_ptr<AsioMainLoop> loop_ = std::make_shared<AsioMainLoop>();
  std::shared_ptr<MemorySettingsStore> settings_ = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<RecordingStatusOverlay> overlay_ = std::make_shared<RecordingStatusOverlay>();
  std::optional<ScopedEnv> scopedEnv_;
};

}  // namespace qmv::contract
