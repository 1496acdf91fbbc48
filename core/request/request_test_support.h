#pragma once
// Test support for the request layer: a loopback server with named routes (including
// deliberate failures), an environment whose main loop and transport are real but owned
// by the test, and a request whose every property and callback is configurable and
// recorded.
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>

#include "core/common/log.h"
#include "core/request/base_request.h"
#include "core/request/network_agent.h"
#include "core/request/network_config.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/file_locations.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/curl_transport.h"
#include "platform/manual_main_loop.h"
#include "platform/testing/loopback_server.h"
#include "platform/testing/test_env.h"

namespace qmv::testsupport {

using Events = std::vector<std::string>;

class RecordingAccessory : public RequestAccessory {
 public:
  explicit RecordingAccessory(Events& events) : events_(events) {}
  void requestWillStart(BaseRequest&) override { events_.push_back("willStart"); }
  void requestWillStop(BaseRequest&) override { events_.push_back("willStop"); }
  void requestDidStop(BaseRequest&) override { events_.push_back("didStop"); }

 private:
  Events& events_;
};

class RecordingDelegate : public RequestDelegate {
 public:
  explicit RecordingDelegate(Events& events) : events_(events) {}
  void requestFinished(BaseRequest&) override { events_.push_back("delegateFinished"); }
  void requestFailed(BaseRequest&) override { events_.push_back("delegateFailed"); }

 private:
  Events& events_;
};

// Every overridable property is a field.
class TestRequest : public BaseRequest {
 public:
  std::string url;
  std::string ownBaseUrl;
  std::string ownCdnUrl;
  bool cdn = false;
  RequestMethod method = RequestMethod::GET;
  RequestSerializerType serializer = RequestSerializerType::HTTP;
  Json argument;
  Json auth;
  Json headerFields;
  Json validator;
  double timeout = 10.0;
  ConstructingBodyBlock bodyBlock;
  std::string downloadPath;
  ProgressBlock progress;
  std::optional<HttpRequest> custom;
  Events* events = nullptr;

  std::string requestUrl() const override { return url; }
  std::string baseUrl() const override { return ownBaseUrl; }
  std::string cdnUrl() const override { return ownCdnUrl; }
  bool useCDN() const override { return cdn; }
  RequestMethod requestMethod() const override { return method; }
  RequestSerializerType requestSerializerType() const override { return serializer; }
  Json requestArgument() const override { return argument; }
  Json requestAuthorizationHeaderFieldArray() const override { return auth; }
  Json requestHeaderFieldValueDictionary() const override { return headerFields; }
  Json jsonValidator() const override { return validator; }
  double requestTimeoutInterval() const override { return timeout; }
  ConstructingBodyBlock constructingBodyBlock() const override { return bodyBlock; }
  std::string resumableDownloadPath() const override { return downloadPath; }
  ProgressBlock resumableDownloadProgressBlock() const override { return progress; }
  std::optional<HttpRequest> buildCustomUrlRequest() const override { return custom; }
  void requestCompleteFilter() override {
    if (events) events->push_back("completeFilter");
  }
  void requestFailedFilter() override {
    if (events) events->push_back("failedFilter");
  }
};

inline std::string hex(const std::string& bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string out;
  for (const unsigned char c : bytes) {
    out += kDigits[c >> 4];
    out += kDigits[c & 0xF];
  }
  return out;
}

// Loopback server + main loop + curl transport installed in Env, and the configuration's
// base URL pointed at the server ("http://127.0.0.1:<port>/", with the slash).
class RequestTest : public ::testing::Test {
 protected:
  void SetUp() override {
    auto& s = server_.server();
    s.Get("/json", [](const httplib::Request&, httplib::Response& res) {
      res.set_content(R"({"name":"qmv","items":[1,2],"nested":{"ok":true}})", "application/json");
    });
    s.Get(R"(/status/(\d+))", [](const httplib::Request& req, httplib::Response& res) {
      res.status = std::stoi(req.matches[1]);
      res.set_content(R"({"success":"0"})", "application/json");
    });
    s.Get("/malformed", [](const httplib::Request&, httplib::Response& res) {
      res.set_content(R"({"success": "0", "data": [1, 2)", "application/json");
    });
    s.Get("/slow", [this](const httplib::Request&, httplib::Response& res) {
      server_.sleepUnlessStopping(std::chrono::milliseconds(3000));
      res.set_content("{}", "application/json");
    });
    s.Get("/counter", [this](const httplib::Request&, httplib::Response& res) {
      res.set_content(Json{{"n", ++counter_}}.dump(), "application/json");
    });
    s.Get("/concurrent", [this](const httplib::Request&, httplib::Response& res) {
      const int now = ++active_;
      int seen = maxActive_.load();
      while (now > seen && !maxActive_.compare_exchange_weak(seen, now)) {
      }
      server_.sleepUnlessStopping(std::chrono::milliseconds(150));
      --active_;
      res.set_content("{}", "application/json");
    });
    const auto echo = [](const httplib::Request& req, httplib::Response& res) {
      Json out = {{"method", req.method},
                  {"target", req.target},
                  {"body", req.body},
                  {"contentType", req.get_header_value("Content-Type")},
                  {"authorization", req.get_header_value("Authorization")},
                  {"x-one", req.get_header_value("X-One")},
                  {"x-two", req.get_header_value("X-Two")}};
      Json files = Json::object();
      for (const auto& [name, file] : req.files) {
        files[name] = {
            {"filename", file.filename}, {"contentType", file.content_type}, {"contentHex", hex(file.content)}};
      }
      out["files"] = files;
      res.set_content(out.dump(), "application/json");
    };
    s.Get("/echo", echo);
    s.Post("/echo", echo);
    s.Put("/echo", echo);
    s.Patch("/echo", echo);
    s.Delete("/echo", echo);
    s.Get("/file", [this](const httplib::Request& req, httplib::Response& res) {
      std::lock_guard lock(targetMutex_);
      lastFileTarget_ = req.target;
      res.set_content(kFileContent, "application/octet-stream");
    });
    s.set_exception_handler([](const httplib::Request&, httplib::Response& res, std::exception_ptr e) {
      res.status = 500;
      try {
        std::rethrow_exception(e);
      } catch (const std::exception& ex) {
        res.set_content(ex.what(), "text/plain");
      }
    });
    server_.start();

    home_ = std::filesystem::temp_directory_path() / ("qmv_request_test_" + std::to_string(server_.port()));
    std::filesystem::remove_all(home_);
    Env env;
    env.files = std::make_shared<HomeFileLocations>(home_, home_ / "resources");
    env.mainLoop = loop_;
    env.cookies = std::make_shared<CurlCookieStore>();
    env.http = std::make_shared<CurlTransport>(loop_, env.cookies);
    scopedEnv_.emplace(completedForTesting(std::move(env)));
    NetworkConfig::sharedInstance().setBaseUrl(server_.url("/"));
    NetworkConfig::sharedInstance().setCdnUrl("");
  }

  void TearDown() override {
    NetworkConfig::sharedInstance().clearUrlFilters();
    NetworkConfig::sharedInstance().clearCacheDirPathFilters();
    NetworkAgent::sharedInstance().cancelAllRequests();
    // The transport goes first: closing its kept-alive connections frees the server's threads.
    scopedEnv_.reset();
    server_.shutdown();
    std::filesystem::remove_all(home_);
  }

  std::shared_ptr<TestRequest> makeRequest(const std::string& url, Events* events = nullptr) {
    auto r = std::make_shared<TestRequest>();
    r->url = url;
    r->events = events;
    return r;
  }

  // Starts `request` with blocks that count the outcome and runs the loop until it ends.
  // Returns "success" or "failure" ("none" when nothing arrived in time).
  std::string run(const std::shared_ptr<BaseRequest>& request,
                  std::chrono::milliseconds limit = std::chrono::milliseconds(10000)) {
    std::string outcome = "none";
    request->startWithCompletionBlockWithSuccess([&](BaseRequest&) { outcome = "success"; },
                                                 [&](BaseRequest&) { outcome = "failure"; });
    loop_->runUntil([&] { return outcome != "none"; }, limit);
    return outcome;
  }

  void spin(std::chrono::milliseconds duration) {
    loop_->runUntil([] { return false; }, duration);
  }

  std::filesystem::path home_;
  static constexpr const char* kFileContent = "0123456789abcdefghijklmnopqrstuvwxyz";
  LoopbackServer server_;
  std::shared_ptr<ManualMainLoop> loop_ = std::make_shared<ManualMainLoop>();
  std::optional<ScopedEnv> scopedEnv_;
  std::atomic<int> active_{0};
  std::atomic<int> maxActive_{0};
  std::atomic<int> counter_{0};
  std::string lastFileTarget() {
    std::lock_guard lock(targetMutex_);
    return lastFileTarget_;
  }
  std::mutex targetMutex_;
  std::string lastFileTarget_;
};

// Collects the log lines written while it lives.
class LogCapture {
 public:
  LogCapture()
      : sink_([this](const std::string& line) {
          std::lock_guard lock(mutex_);
          lines_.push_back(line);
        }) {}
  bool contains(const std::string& line) const {
    std::lock_guard lock(mutex_);
    return std::find(lines_.begin(), lines_.end(), line) != lines_.end();
  }
  std::size_t count(const std::string& line) const {
    std::lock_guard lock(mutex_);
    return static_cast<std::size_t>(std::count(lines_.begin(), lines_.end(), line));
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
  ScopedLogSink sink_;
};

}  // namespace qmv::testsupport
