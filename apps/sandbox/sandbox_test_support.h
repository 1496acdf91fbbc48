#pragma once
// Test support: a sandbox started in-process on a free port with a fresh temporary home,
// and a small JSON client over httplib for driving its endpoints.
#include <gtest/gtest.h>

#include "core/common/completion_signature.h"
// After the client's headers: httplib brings a DELETE macro.
#include <httplib.h>

#include <atomic>
#include <filesystem>
#include <map>
#include <string>

#include "apps/sandbox/demo_data.h"
#include "apps/sandbox/sandbox_server.h"
#include "apps/sandbox/sandbox_util.h"
#include "core/common/json.h"
#include "core/common/string_util.h"

namespace qmv::sandbox::testing {

using Args = std::map<std::string, std::string>;

inline std::filesystem::path freshHome() {
  static std::atomic<int> counter{0};
  auto home = std::filesystem::temp_directory_path() /
              ("qmv_sandbox_test_" + std::to_string(::getpid()) + "_" + std::to_string(counter++));
  std::filesystem::remove_all(home);
  return home;
}

class ApiClient {
 public:
  explicit ApiClient(int port) : http_("127.0.0.1", port) { http_.set_read_timeout(20, 0); }

  // The parsed envelope of a GET (query string) to /qmv/app/v3/<name>.
  Json get(const std::string& name, const Args& args = {}) {
    httplib::Params params(args.begin(), args.end());
    auto res = http_.Get(("/qmv/app/v3/" + name).c_str(), params, httplib::Headers{});
    return decode(res);
  }
  // The parsed envelope of a form POST to `path` (an endpoint name or an absolute path).
  Json post(const std::string& name, const Args& args = {}) {
    httplib::Params params(args.begin(), args.end());
    const std::string path = name.front() == '/' ? name : "/qmv/app/v3/" + name;
    auto res = http_.Post(path.c_str(), params);
    return decode(res);
  }
  httplib::Client& raw() { return http_; }

  // Reports a waiting payment's `result` as the payment applications do, signed with `key`.
  Json complete(const std::string& key, const std::string& prepayId, const std::string& result) {
    return post(
        "/sandbox/pay/complete",
        {{"prepay_id", prepayId}, {"result", result}, {"sign", sandboxCompletionSignature(key, prepayId, result)}});
  }

  // Signs in and returns the session id ("" when refused).
  std::string login(const std::string& phone = kDemoPhone, const std::string& password = kDemoPassword) {
    const Json reply = get("getUserLogin", {{"userName", phone}, {"userPassword", StringUtil::getmd5WithString(password)}});
    return reply.value("success", "") == "0" ? reply["data"].value("sessionId", "") : "";
  }
  long long balance(const std::string& session) {
    const Json info = get("getUserInfo", {{"sessionId", session}});
    return std::stoll(info["data"].value("balance", "-1"));
  }

 private:
  static Json decode(const httplib::Result& res) {
    if (!res) return Json{{"transport", "failed"}};
    if (res->status != 200) return Json{{"status", res->status}};
    return parseJson(res->body);
  }
  httplib::Client http_;
};

class SandboxTest : public ::testing::Test {
 protected:
  void SetUp() override {
    home_ = freshHome();
    server_ = std::make_unique<SandboxServer>(SandboxOptions{home_, 0, "127.0.0.1", true});
    ASSERT_TRUE(server_->start().ok());
    api_ = std::make_unique<ApiClient>(server_->port());
  }
  void TearDown() override {
    api_.reset();
    server_.reset();
    std::filesystem::remove_all(home_);
  }
  static std::string code(const Json& reply) { return reply.value("success", "<none>"); }
  // A payment application's report on a waiting payment.
  Json complete(const std::string& prepayId, const std::string& result) {
    return api_->complete(server_->paymentKey(), prepayId, result);
  }

  std::filesystem::path home_;
  std::unique_ptr<SandboxServer> server_;
  std::unique_ptr<ApiClient> api_;
};

}  // namespace qmv::sandbox::testing
