// The longest single callback of the interface loop while the search list receives a page
// of 100 stores: a loopback server answers the list's request with bench/search_page.h,
// the real Asio loop and libcurl transport carry it, and the loop-stall probe times every
// callback. Prints the longest of each run and their median and maximum.
//
// usage: loop_stall_bench [runs]   (default 15)
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "bench/search_page.h"
#include "core/common/loop_stall_probe.h"
#include "core/request/network_agent.h"
#include "core/request/network_config.h"
#include "core/session/global_data.h"
#include "features/discovery/nearby_view.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/linux/asio_main_loop.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/curl_transport.h"
#include "platform/synchronous_notification_center.h"
#include "platform/testing/loopback_server.h"
#include "platform/testing/recording_status_overlay.h"
#include "platform/testing/temp_home.h"
#include "platform/testing/test_env.h"

int main(int argc, char** argv) {
  using namespace qmv;
  const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 15;
  const std::string page = bench::searchPage();
  testsupport::LoopbackServer server;
  const auto answer = [&page](const httplib::Request&, httplib::Response& res) {
    res.set_content(page, "application/json");
  };
  server.server().Get(R"(/qmv/app/v3/\w+)", answer);
  server.server().Post(R"(/qmv/app/v3/\w+)", answer);
  server.start();

  TempHome home;
  auto loop = std::make_shared<AsioMainLoop>();
  Env env;
  env.settings = std::shared_ptr<SettingsStore>(&home.settings(), [](SettingsStore*) {});
  env.files = home.files();
  env.mainLoop = loop;
  env.cookies = std::make_shared<CurlCookieStore>();
  env.http = std::make_shared<CurlTransport>(loop, env.cookies);
  env.notifications = std::make_shared<SynchronousNotificationCenter>();
  env.overlay = std::make_shared<RecordingStatusOverlay>();
  ScopedEnv scoped(completedForTesting(std::move(env)));
  GlobalData::resetSharedInstance();
  NetworkConfig::sharedInstance().setBaseUrl(server.url("/qmv/app/v3/"));

  LoopStallProbe::setEnabled(true);
  std::vector<double> longest;
  std::vector<double> longestCpu;
  for (int run = 0; run < runs; ++run) {
    NearbyView view;
    std::optional<bool> loaded;
    view.onLoaded = [&loaded](bool correct) { loaded = correct; };
    LoopStallProbe::reset();
    view.startSearchNet();
    if (!loop->runUntil([&loaded] { return loaded.has_value(); }, std::chrono::seconds(10)) || !*loaded ||
        view.storeList.size() != 100) {
      std::fprintf(stderr, "run %d: the page did not load as 100 stores\n", run + 1);
      return 1;
    }
    const auto summary = LoopStallProbe::summary();
    longest.push_back(std::chrono::duration<double, std::milli>(summary.longest).count());
    longestCpu.push_back(std::chrono::duration<double, std::milli>(summary.longestCpu).count());
    std::printf("run %d: %s\n", run + 1, LoopStallProbe::describe().c_str());
  }
  NetworkAgent::sharedInstance().cancelAllRequests();
  std::sort(longest.begin(), longest.end());
  std::sort(longestCpu.begin(), longestCpu.end());
  std::printf("100-store search page, longest loop callback over %d runs: median %.3f ms wall, %.3f ms CPU; "
              "max %.3f ms wall, %.3f ms CPU\n",
              runs, longest[longest.size() / 2], longestCpu[longestCpu.size() / 2], longest.back(), longestCpu.back());
  return 0;
}
