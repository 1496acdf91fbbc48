#pragma once
// What the fuzz targets share: an environment of in-memory ports, built once per process,
// in which requests are answered from memory on a manual main loop, so that one input
// costs no socket, no thread and no file.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "core/common/log.h"
#include "core/request/network_config.h"
#include "platform/clock.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/http_transport.h"
#include "platform/manual_main_loop.h"
#include "platform/settings_store.h"
#include "platform/status_overlay.h"
#include "platform/testing/test_env.h"

namespace qmv::fuzz {

// Answers every transfer with `status` and `body`, on the loop, as the curl transport does.
class AnsweringTransport : public HttpTransport {
 public:
  explicit AnsweringTransport(std::shared_ptr<MainLoop> loop) : loop_(std::move(loop)) {}

  TransferId send(HttpRequest&& /*request*/, Completion completion) override {
    HttpResponse response;
    response.status = status;
    response.body = body;
    loop_->post([completion = std::move(completion), response = std::move(response)]() mutable {
      completion(std::move(response));
    });
    return ++lastId_;
  }
  void cancel(TransferId /*id*/) override {}

  long status = 200;
  std::string body;

 private:
  std::shared_ptr<MainLoop> loop_;
  TransferId lastId_ = 0;
};

// Keeps only the last status shown: a fuzzer runs millions of inputs in one process.
class LastStatusOverlay : public StatusOverlay {
 public:
  void showImage(const std::string& /*image*/, const std::string& status) override { last = status; }
  std::string last;
};

struct FuzzEnv {
  std::shared_ptr<ManualMainLoop> loop = std::make_shared<ManualMainLoop>();
  std::shared_ptr<AnsweringTransport> http = std::make_shared<AnsweringTransport>(loop);
  std::shared_ptr<MemorySettingsStore> settings = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<LastStatusOverlay> overlay = std::make_shared<LastStatusOverlay>();

  FuzzEnv() {
    Env env;
    env.mainLoop = loop;
    env.http = http;
    env.settings = settings;
    env.overlay = overlay;
    env.cookies = std::make_shared<MemoryCookieStore>();
    env.clock = std::make_shared<FixedClock>(1500000000);
    Env::install(completedForTesting(std::move(env)));
    NetworkConfig::sharedInstance().setBaseUrl("http://127.0.0.1:1/qmv/app/v3/");
    setWarningsOnStderr(false);
  }

  // The one environment of the process.
  static FuzzEnv& get() {
    static FuzzEnv* instance = new FuzzEnv;  // never destroyed: targets exit without tearing down
    return *instance;
  }
};

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// The first line of `input` (without its "\n") and what follows it.
inline std::pair<std::string_view, std::string_view> splitFirstLine(std::string_view input) {
  const std::size_t end = input.find('\n');
  if (end == std::string_view::npos) return {input, {}};
  return {input.substr(0, end), input.substr(end + 1)};
}

}  // namespace qmv::fuzz
