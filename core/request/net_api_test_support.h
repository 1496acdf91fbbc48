#pragma once
// Test support for application endpoints: a loopback application server under
// "/qmv/app/v3/" that records what every endpoint receives (method, arguments in the
// order sent, cookies) and answers with a body chosen per endpoint, plus an Env of real
// main loop, transport and cookie store with recording fakes for the screen-facing ports.
#include <gtest/gtest.h>
#include <httplib.h>

#include <map>
#include <mutex>
#include <optional>

#include "core/request/network_agent.h"
#include "core/request/network_config.h"
#include "core/session/global_data.h"
#include "platform/clock.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/file_locations.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/curl_transport.h"
#include "platform/manual_main_loop.h"
#include "platform/settings_store.h"
#include "platform/stack_navigator.h"
#include "platform/testing/fixed_reachability.h"
#include "platform/testing/loopback_server.h"
#include "platform/testing/recording_push_service.h"
#include "platform/testing/recording_status_overlay.h"
#include "platform/testing/test_env.h"

namespace qmv::testsupport {

using Arguments = std::vector<std::pair<std::string, std::string>>;

struct Received {
  std::string method;
  std::string endpoint;
  Arguments arguments;  // in the order they were sent
  std::string cookie;
  // Multipart parts: name -> (file name, content); plain fields have no file name.
  std::map<std::string, std::pair<std::string, std::string>> parts;
};

inline Arguments parseForm(const std::string& text) {
  Arguments out;
  std::size_t start = 0;
  while (start <= text.size() && !text.empty()) {
    const std::size_t end = std::min(text.find('&', start), text.size());
    const std::string pair = text.substr(start, end - start);
    if (!pair.empty()) {
      const std::size_t eq = pair.find('=');
      const std::string key = pair.substr(0, eq);
      const std::string value = eq == std::string::npos ? "" : pair.substr(eq + 1);
      out.emplace_back(httplib::detail::decode_url(key, true), httplib::detail::decode_url(value, true));
    }
    start = end + 1;
  }
  return out;
}

class ApiServerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto handle = [this](const httplib::Request& req, httplib::Response& res) {
      Received r;
      r.method = req.method;
      r.endpoint = req.matches[1];
      const std::size_t q = req.target.find('?');
      if (req.method == "GET" && q != std::string::npos) r.arguments = parseForm(req.target.substr(q + 1));
      if (req.method == "POST" && !req.is_multipart_form_data()) r.arguments = parseForm(req.body);
      r.cookie = req.get_header_value("Cookie");
      for (const auto& [name, part] : req.files) r.parts[name] = {part.filename, part.content};
      std::lock_guard lock(mutex_);
      received_.push_back(r);
      const auto answer = answers_.find(r.endpoint);
      if (answer == answers_.end()) {
        res.set_content(R"({"success":"0","message":"","data":{}})", "application/json");
        return;
      }
      res.status = answer->second.status;
      for (const auto& cookie : answer->second.setCookies) res.headers.emplace("Set-Cookie", cookie);
      res.set_content(answer->second.body, "application/json");
    };
    server_.server().Get(R"(/qmv/app/v3/(\w+))", handle);
    server_.server().Post(R"(/qmv/app/v3/(\w+))", handle);
    server_.start();

    home_ = std::filesystem::temp_directory_path() / ("qmv_api_test_" + std::to_string(server_.port()));
    Env env;
    env.files = std::make_shared<HomeFileLocations>(home_, home_ / "resources");
    env.mainLoop = loop_;
    env.cookies = cookies_;
    env.http = std::make_shared<CurlTransport>(loop_, cookies_);
    env.settings = settings_;
    env.overlay = overlay_;
    env.navigator = navigator_;
    env.push = push_;
    env.reachability = reachability_;
    env.clock = std::make_shared<FixedClock>(1500000000);
    scopedEnv_.emplace(completedForTesting(std::move(env)));
    NetworkConfig::sharedInstance().setBaseUrl(server_.url("/qmv/app/v3/"));
    GlobalData::resetSharedInstance();
  }

  void TearDown() override {
    NetworkAgent::sharedInstance().cancelAllRequests();
    GlobalData::resetSharedInstance();
    scopedEnv_.reset();
    server_.shutdown();
    std::filesystem::remove_all(home_);
  }

  struct Answer {
    int status = 200;
    std::string body;
    std::vector<std::string> setCookies;
  };
  void answer(const std::string& endpoint, std::string body, int status = 200, std::vector<std::string> cookies = {}) {
    std::lock_guard lock(mutex_);
    answers_[endpoint] = Answer{status, std::move(body), std::move(cookies)};
  }

  std::vector<Received> received() {
    std::lock_guard lock(mutex_);
    return received_;
  }
  Received last() {
    std::lock_guard lock(mutex_);
    return received_.empty() ? Received{} : received_.back();
  }
  // The value `key` had in the last request ("<none>" when it was not sent).
  std::string sent(const std::string& key) {
    const Received request = last();
    for (const auto& [name, value] : request.arguments) {
      if (name == key) return value;
    }
    return "<none>";
  }

  // How many requests went to `endpoint`.
  std::size_t sentTo(const std::string& endpoint) {
    std::size_t n = 0;
    for (const auto& r : received()) n += r.endpoint == endpoint;
    return n;
  }
  // The name of the screen on top ("" when none).
  std::string topName() const { return navigator_->topScreen().value_or(Screen{}).name; }

  // Starts `request` with blocks and runs the loop until one of them ran.
  std::string run(const std::shared_ptr<BaseRequest>& request) {
    std::string outcome = "none";
    request->startWithCompletionBlockWithSuccess([&](BaseRequest&) { outcome = "success"; },
                                                 [&](BaseRequest&) { outcome = "failure"; });
    loop_->runUntil([&] { return outcome != "none"; }, std::chrono::milliseconds(15000));
    return outcome;
  }

  // Runs `start`, then the loop until the screen's next onLoaded: whether it was correct.
  template <class Screen, class Start>
  std::optional<bool> load(Screen& screen, Start start) {
    std::optional<bool> correct;
    screen.onLoaded = [&correct](bool c) { correct = c; };
    start();
    loop_->runUntil([&correct] { return correct.has_value(); }, std::chrono::milliseconds(15000));
    return correct;
  }
  template <class Screen>
  std::optional<bool> await(Screen& screen) {
    return load(screen, [] {});
  }

  void logIn(const std::string& sessionId) {
    GlobalData::sharedInstance().setSelfInfo(std::make_shared<UserInfoModel>(Json{{"sessionId", sessionId}}));
  }

  LoopbackServer server_;
  std::filesystem::path home_;
  std::shared_ptr<ManualMainLoop> loop_ = std::make_shared<ManualMainLoop>();
  std::shared_ptr<CurlCookieStore> cookies_ = std::make_shared<CurlCookieStore>();
  std::shared_ptr<MemorySettingsStore> settings_ = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<RecordingStatusOverlay> overlay_ = std::make_shared<RecordingStatusOverlay>();
  std::shared_ptr<StackNavigator> navigator_ = std::make_shared<StackNavigator>();
  std::shared_ptr<RecordingPushService> push_ = std::make_shared<RecordingPushService>();
  std::shared_ptr<FixedReachability> reachability_ = std::make_shared<FixedReachability>(true);
  std::optional<ScopedEnv> scopedEnv_;

 private:
  std::mutex mutex_;
  std::vector<Received> received_;
  std::map<std::string, Answer> answers_;
};

}  // namespace qmv::testsupport
