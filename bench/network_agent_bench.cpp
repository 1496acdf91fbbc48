// Cost of the request agent per small GET against a loopback server, next to raw libcurl
// (one multi handle driving four reused easy handles) doing the same four GETs at a time.
// Prints the ratio agent/raw at the end.
#include <benchmark/benchmark.h>
#include <curl/curl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <memory>
#include <string_view>

#include "core/request/base_request.h"
#include "core/request/network_config.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/linux/asio_main_loop.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/curl_transport.h"
#include "platform/testing/loopback_server.h"
#include "platform/testing/test_env.h"

namespace {

constexpr int kParallel = 4;
constexpr const char* kBody = R"({"success":"0","message":"","data":{"id":"1","name":"shop"}})";

qmv::testsupport::LoopbackServer& server() {
  static auto* s = [] {
    auto* srv = new qmv::testsupport::LoopbackServer;
    srv->server().Get(
        "/small", [](const httplib::Request&, httplib::Response& res) { res.set_content(kBody, "application/json"); });
    srv->start();
    return srv;
  }();
  return *s;
}

// CPU time of the whole process (client, worker and server threads) in microseconds:
// unlike wall time, it does not depend on how busy the rest of the machine is.
double processCpuMicros() {
  timespec ts{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
  return static_cast<double>(ts.tv_sec) * 1e6 + static_cast<double>(ts.tv_nsec) / 1e3;
}

void reportCpu(benchmark::State& state, double startCpu) {
  state.counters["cpu_us_per_get"] =
      (processCpuMicros() - startCpu) / static_cast<double>(state.iterations() * kParallel);
}

class SmallGet : public qmv::BaseRequest {
 public:
  std::string requestUrl() const override { return "small"; }
};

// The agent's side: four requests sent together and waited for, one round per call.
class AgentSide {
 public:
  AgentSide() : loop_(std::make_shared<qmv::AsioMainLoop>()), scoped_(makeEnv(loop_)) {
    qmv::NetworkConfig::sharedInstance().setBaseUrl(server().url("/"));
    for (int i = 0; i < kParallel; ++i) requests_.push_back(std::make_shared<SmallGet>());
  }

  void round() {
    int done = 0;
    for (auto& r : requests_) {
      r->setCompletionBlockWithSuccess(
          [&](qmv::BaseRequest& req) {
            bytes_ += req.responseString().size();
            ++done;
          },
          [&](qmv::BaseRequest&) { ++done; });
      r->start();
    }
    loop_->runUntil([&] { return done == kParallel; }, std::chrono::milliseconds(10000));
  }

  std::size_t bytes() const { return bytes_; }

 private:
  static qmv::Env makeEnv(const std::shared_ptr<qmv::AsioMainLoop>& loop) {
    qmv::Env env;
    env.mainLoop = loop;
    env.cookies = std::make_shared<qmv::CurlCookieStore>();
    env.http = std::make_shared<qmv::CurlTransport>(loop, env.cookies);
    return qmv::completedForTesting(std::move(env));
  }

  std::shared_ptr<qmv::AsioMainLoop> loop_;
  qmv::ScopedEnv scoped_;
  std::vector<std::shared_ptr<SmallGet>> requests_;
  std::size_t bytes_ = 0;
};

size_t collect(char* data, size_t size, size_t count, void* out) {
  static_cast<std::string*>(out)->append(data, size * count);
  return size * count;
}

// Raw libcurl: one multi handle driving four reused easy handles, one round per call.
class RawSide {
 public:
  RawSide() : url_(server().url("/small")), bodies_(kParallel) {
    curl_global_init(CURL_GLOBAL_DEFAULT);
    multi_ = curl_multi_init();
    for (int i = 0; i < kParallel; ++i) {
      CURL* easy = curl_easy_init();
      curl_easy_setopt(easy, CURLOPT_URL, url_.c_str());
      curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
      curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, 10000L);
      curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &collect);
      curl_easy_setopt(easy, CURLOPT_WRITEDATA, &bodies_[i]);
      handles_.push_back(easy);
    }
  }
  ~RawSide() {
    for (CURL* easy : handles_) curl_easy_cleanup(easy);
    curl_multi_cleanup(multi_);
  }
  RawSide(const RawSide&) = delete;
  RawSide& operator=(const RawSide&) = delete;

  void round() {
    for (int i = 0; i < kParallel; ++i) {
      bodies_[i].clear();
      curl_multi_add_handle(multi_, handles_[i]);
    }
    int running = kParallel;
    while (running > 0) {
      curl_multi_perform(multi_, &running);
      if (running > 0) curl_multi_poll(multi_, nullptr, 0, 1000, nullptr);
    }
    int left = 0;
    while (CURLMsg* msg = curl_multi_info_read(multi_, &left)) {
      if (msg->msg == CURLMSG_DONE) curl_multi_remove_handle(multi_, msg->easy_handle);
    }
    for (const auto& b : bodies_) bytes_ += b.size();
  }

  std::size_t bytes() const { return bytes_; }

 private:
  std::string url_;
  CURLM* multi_ = nullptr;
  std::vector<CURL*> handles_;
  std::vector<std::string> bodies_;
  std::size_t bytes_ = 0;
};

template <typename Side>
void measureGets(benchmark::State& state) {
  Side side;
  const double startCpu = processCpuMicros();
  for (auto _ : state) side.round();
  reportCpu(state, startCpu);
  benchmark::DoNotOptimize(side.bytes());
  state.SetItemsProcessed(state.iterations() * kParallel);
}

void BM_AgentGet(benchmark::State& state) { measureGets<AgentSide>(state); }
void BM_RawCurlGet(benchmark::State& state) { measureGets<RawSide>(state); }

// For counting instructions (bench/instructions_per_get): warm connections first, then
// `rounds` rounds inside countedRounds, the one function a profiler is told to collect in.
template <typename Side>
[[gnu::noinline]] void countedRounds(Side& side, int rounds) {
  for (int i = 0; i < rounds; ++i) side.round();
}

template <typename Side>
void countSide(int rounds) {
  Side side;
  for (int i = 0; i < 20; ++i) side.round();
  countedRounds(side, rounds);
  benchmark::DoNotOptimize(side.bytes());
}

// Repetitions are interleaved at random (see main) and compared by their medians, so
// that load from other processes falls on both sides alike. Sixty of them: the medians of
// thirty moved the ratio by up to 0.1 between the two halves of one run, as much as the
// agent's whole margin, so a figure from thirty said more about the draw than the code.
BENCHMARK(BM_AgentGet)->UseRealTime()->MinTime(0.2)->Repetitions(60)->ReportAggregatesOnly(true);
BENCHMARK(BM_RawCurlGet)->UseRealTime()->MinTime(0.2)->Repetitions(60)->ReportAggregatesOnly(true);

// Remembers each benchmark's median real time per iteration to print the ratio.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  // A reporter given to the library does not follow --benchmark_color; colour only where
  // someone reads it, so that scripts parsing the ratio line get plain text.
  RatioReporter() : ConsoleReporter(isatty(STDOUT_FILENO) != 0 ? OO_Defaults : OO_Tabular) {}
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& run : runs) {
      if (run.aggregate_name != "median") continue;
      times_[run.run_name.function_name] = run.GetAdjustedRealTime();
      if (const auto cpu = run.counters.find("cpu_us_per_get"); cpu != run.counters.end()) {
        cpu_[run.run_name.function_name] = cpu->second.value;
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }
  void printRatio() const {
    const auto agent = times_.find("BM_AgentGet");
    const auto raw = times_.find("BM_RawCurlGet");
    if (agent == times_.end() || raw == times_.end() || raw->second <= 0) return;
    std::printf("agent / raw libcurl per GET (4 at a time, medians): %.3fx wall time", agent->second / raw->second);
    if (cpu_.contains("BM_AgentGet") && cpu_.contains("BM_RawCurlGet") && cpu_.at("BM_RawCurlGet") > 0) {
      std::printf(", %.3fx process CPU", cpu_.at("BM_AgentGet") / cpu_.at("BM_RawCurlGet"));
    }
    std::printf("\n");
  }

 private:
  std::map<std::string, double> times_;
  std::map<std::string, double> cpu_;
};

}  // namespace

int main(int argc, char** argv) {
  // --count=agent|raw ROUNDS: no benchmark, only the rounds to be counted.
  if (argc == 4 && std::string_view(argv[1]) == "--count") {
    const int rounds = std::atoi(argv[3]);
    if (std::string_view(argv[2]) == "agent") {
      countSide<AgentSide>(rounds);
    } else {
      countSide<RawSide>(rounds);
    }
    return 0;
  }
  std::vector<char*> args(argv, argv + argc);
  static char interleave[] = "--benchmark_enable_random_interleaving=true";
  args.insert(args.begin() + 1, interleave);
  argc = static_cast<int>(args.size());
  argv = args.data();
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.printRatio();
  benchmark::Shutdown();
  return 0;
}
