// A municipality chosen through the CLI, run as separate starts against the sandbox behind
// a proxy that records what the client asks for: after the home screen has refreshed the
// area cache, the city row's id (not the province's of the same name), its districts, and
// searches and the map sent for that city.
#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "apps/sandbox/sandbox_server.h"
#include "core/common/json.h"
#include "platform/testing/loopback_server.h"
#include "platform/testing/temp_home.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

// Forwards every request to the sandbox and keeps each endpoint's last query arguments.
class RecordingProxy {
 public:
  explicit RecordingProxy(int sandboxPort) : sandboxPort_(sandboxPort) {
    // The flows below only read (GET), as signed-out members.
    server_.server().Get(".*", [this](const httplib::Request& req, httplib::Response& res) {
      {
        std::lock_guard lock(mutex_);
        calls_.emplace_back(req.path.substr(req.path.rfind('/') + 1), req.params);
      }
      httplib::Client sandbox("127.0.0.1", sandboxPort_);
      const auto answer = sandbox.Get(req.target);
      if (!answer) {
        res.status = 502;
        return;
      }
      res.status = answer->status;
      res.set_content(answer->body, answer->get_header_value("Content-Type"));
    });
    server_.start();
  }

  std::string baseUrl() const { return server_.url("/qmv/app/v3/"); }
  std::string rootUrl() const { return server_.url(""); }

  // The argument `key` of the last call of `endpoint`; "(not sent)" when there was none.
  std::string lastArgument(const std::string& endpoint, const std::string& key) {
    std::lock_guard lock(mutex_);
    for (auto call = calls_.rbegin(); call != calls_.rend(); ++call) {
      if (call->first != endpoint) continue;
      const auto found = call->second.find(key);
      return found == call->second.end() ? "(not sent)" : found->second;
    }
    return "(not sent)";
  }

 private:
  int sandboxPort_;
  std::mutex mutex_;
  std::vector<std::pair<std::string, httplib::Params>> calls_;
  testsupport::LoopbackServer server_;
};

TEST(MunicipalityCliTest, AMunicipalityEndToEnd) {
  TempHome serverHome;
  sandbox::SandboxServer sandbox(sandbox::SandboxOptions{serverHome.home(), 0});
  ASSERT_TRUE(sandbox.start().ok());
  RecordingProxy proxy(sandbox.port());
  TempHome home;
  const auto run = [&](std::vector<std::string> args) {
    args.insert(args.begin(), {"--server", proxy.baseUrl()});
    return testsupport::runQmv(home.home(), std::move(args));
  };

  // The home screen first: its area refresh puts the server's table in the cache, which
  // from then on answers every look-up by name.
  const auto shown = run({"home"});
  ASSERT_EQ(shown.status, 0) << shown.out;
  EXPECT_EQ(proxy.lastArgument("getAreaList", "ver"), "0");

  // Each municipality's name is its province's too; choosing it selects the city row.
  for (const auto& [name, cityId] :
       {std::pair{"天津市", "120100"}, {"上海市", "310100"}, {"重庆市", "500100"}, {"北京市", "110100"}}) {
    const auto chosen = run({"city", name});
    ASSERT_EQ(chosen.status, 0) << chosen.out;
    EXPECT_TRUE(chosen.has(std::string(name) + " " + cityId + "\n")) << chosen.out;
  }
  // The city picker's search names the same row.
  const auto listed = run({"--json", "cities", "beijing"});
  ASSERT_EQ(listed.status, 0) << listed.out;
  const Json cities = parseJson(listed.out)["data"]["cities"];
  ASSERT_EQ(cities.size(), 1u) << listed.out;
  EXPECT_EQ(cities[0]["id"], "110100");

  // Its districts are the ones the search offers, and a district is searched by its own id.
  const auto district = run({"search", "--district", "朝阳区"});
  ASSERT_EQ(district.status, 0) << district.out;
  EXPECT_EQ(proxy.lastArgument("getTypeSearchList", "area"), "110105");
  const auto keyword = run({"search", "烤鸭"});
  ASSERT_EQ(keyword.status, 0) << keyword.out;
  EXPECT_EQ(proxy.lastArgument("getSearchList", "area"), "110100");
  EXPECT_EQ(proxy.lastArgument("getSearchList", "keyword"), "烤鸭");

  // A server named by its root alone is asked at its application path.
  const auto byRoot = testsupport::runQmv(home.home(), {"--server", proxy.rootUrl(), "city"});
  ASSERT_EQ(byRoot.status, 0) << byRoot.out;
  EXPECT_TRUE(byRoot.has("北京市 110100\n")) << byRoot.out;

  const auto map = run({"--at", "39.9087,116.3975", "map"});
  ASSERT_EQ(map.status, 0) << map.out;
  EXPECT_EQ(proxy.lastArgument("getMapList", "area"), "110100");
  EXPECT_NE(proxy.lastArgument("getMapList", "coordinate"), "(not sent)");
}

}  // namespace
}  // namespace qmv
