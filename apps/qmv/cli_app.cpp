#include "apps/qmv/cli_app.h"

#include <unistd.h>

#include <condition_variable>
#include <iostream>
#include <mutex>
#include <thread>

#include "apps/qmv/message_stream.h"
#include "apps/sandbox/sandbox_server.h"
#include "core/session/auto_login.h"
#include "platform/clock.h"
#include "platform/cookie_store.h"
#include "platform/file_locations.h"
#include "platform/fixed_location_source.h"
#include "platform/linux/asio_main_loop.h"
#include "platform/linux/curl_transport.h"
#include "platform/linux/headless_app_window.h"
#include "platform/linux/http_object_storage.h"
#include "platform/linux/interface_reachability.h"
#include "platform/linux/logging_push_service.h"
#include "platform/linux/logging_vendor_sdks.h"
#include "platform/linux/loop_notification_center.h"
#include "platform/linux/nearest_city_geocoder.h"
#include "platform/linux/pango_text_measurer.h"
#include "platform/linux/sandbox_payment_apps.h"
#include "platform/linux/printing_url_opener.h"
#include "platform/linux/qrencode_generator.h"
#include "platform/linux/sqlite_settings_store.h"
#include "platform/linux/stack_navigator.h"
#include "platform/linux/stream_alerts.h"
#include "platform/linux/stream_status_overlay.h"
#include "platform/linux/url_result_payment_channels.h"
#include "platform/main_loop.h"
#include "platform/payment_channels.h"
#include "shell/app_delegate.h"

namespace qmv::cli {

struct CliApp::LineReader {
  std::mutex mutex;
  std::condition_variable ready;
  std::deque<std::string> lines;
  bool eof = false;
};

CliApp::CliApp(GlobalOptions options, std::ostream& out, std::istream& in)
    : options_(std::move(options)),
      out_(out),
      in_(in),
      interactive_(&in == &std::cin && ::isatty(STDIN_FILENO) != 0),
      output_(std::make_unique<CliOutput>(options_.json, out)),
      answers_(options_.answers.begin(), options_.answers.end()) {
  messageStream_ = std::make_unique<MessageStream>([this](const std::string& line) { output_->message(line); });
}

CliApp::~CliApp() {
  // The delegate removes its observers through the installed ports, so it goes first;
  // the ports go before the sandbox that their last transfers may still be talking to.
  autoLogin_.reset();
  appDelegate_.reset();
  installed_.reset();
  env_ = Env{};
  if (sandbox_) sandbox_->stop();
}

std::string CliApp::boot() {
  home_ = options_.home.empty() ? HomeFileLocations::defaultHome() : std::filesystem::path(options_.home);
  std::error_code ec;
  std::filesystem::create_directories(home_, ec);
  if (ec) return "cannot create the home directory " + home_.string() + ": " + ec.message();

  std::vector<std::string> warnings;
  config_ = AppConfig::load(home_ / "qmv.conf", &warnings);
  for (const auto& w : warnings) std::cerr << "qmv: " << w << '\n';
  if (!options_.server.empty()) config_.serverBaseUrl = options_.server;
  if (config_.serverBaseUrl.empty()) {
    sandbox_ = std::make_unique<sandbox::SandboxServer>(sandbox::SandboxOptions{home_ / "sandbox"});
    if (std::string error = sandbox_->start(); !error.empty()) return "cannot start the embedded sandbox: " + error;
    config_.serverBaseUrl = sandbox_->baseUrl();
    if (config_.webHost.empty()) config_.webHost = sandbox_->rootUrl();
    if (config_.objectStorageHost.empty()) config_.objectStorageHost = sandbox_->rootUrl() + "/oss";
    if (config_.productionServer.empty()) config_.productionServer = sandbox_->baseUrl();
    if (config_.testServer.empty()) config_.testServer = sandbox_->baseUrl();
    // The sandbox's merchant with the messaging application; real ones come from qmv.conf.
    if (config_.wechatAppId.empty()) config_.wechatAppId = "wxqmvsandbox";
    if (config_.wechatPartnerId.empty()) config_.wechatPartnerId = "1000000001";
    if (config_.wechatApiKey.empty()) config_.wechatApiKey = "qmv-sandbox-merchant-api-key";
  }
  if (std::string error = buildEnv(); !error.empty()) return error;

  appDelegate_ = std::make_unique<AppDelegate>(config_);
  appDelegate_->didFinishLaunchingWithOptions();

  // The home screen signs in again with the stored phone and password at every start.
  autoLogin_ = std::make_unique<AutoLogin>();
  bool finished = false;
  autoLogin_->onFinished = [&finished](bool) { finished = true; };
  if (autoLogin_->autoLoginNet()) waitUntil([&finished] { return finished; });
  autoLogin_->onFinished = nullptr;
  return {};
}

std::string CliApp::buildEnv() {
  auto loop = std::make_shared<AsioMainLoop>();
  env_.mainLoop = loop;
  env_.cookies = std::make_shared<MemoryCookieStore>();
  env_.http = std::make_shared<CurlTransport>(loop, env_.cookies);
  auto opened = SqliteSettingsStore::openInHome(home_);
  if (!opened.store) return "cannot open the settings store: " + opened.error;
  if (!opened.keptAside.empty()) {
    std::cerr << "qmv: an unreadable settings file was kept aside as " << opened.keptAside << '\n';
  }
  env_.settings = std::move(opened.store);
  env_.files = std::make_shared<HomeFileLocations>(home_);
  env_.clock = std::make_shared<SystemClock>();
  env_.notifications = std::make_shared<LoopNotificationCenter>(loop);
  env_.overlay = std::make_shared<StreamStatusOverlay>(*messageStream_);
  env_.navigator = std::make_shared<StackNavigator>();
  env_.urlOpener = std::make_shared<PrintingUrlOpener>(*messageStream_);
  alerts_ = std::make_shared<StreamAlerts>(
      *messageStream_, loop, [this](const AlertSpec& alert) -> std::optional<AlertAnswer> {
        if (!answers_.empty()) {
          const std::string given = answers_.front();
          answers_.pop_front();
          if (auto index = answerIndex(given, alert.buttons)) return AlertAnswer{*index, {}};
          std::cerr << "qmv: \"" << given << "\" is not one of this alert's buttons\n";
          return std::nullopt;
        }
        if (!interactive_ || lineReader_ || alert.buttons.size() < 2) return std::nullopt;
        for (std::size_t i = 0; i < alert.buttons.size(); ++i)
          out_ << "  [" << i + 1 << "] " << alert.buttons[i] << '\n';
        while (auto line = readLine("> ")) {
          if (auto index = answerIndex(*line, alert.buttons)) return AlertAnswer{*index, {}};
        }
        return std::nullopt;
      });
  env_.alerts = alerts_;
  env_.push = std::make_shared<LoggingPushService>();
  env_.reachability = std::make_shared<InterfaceReachability>();
  std::optional<Coordinate> at;
  if (!options_.at.empty()) {
    at = FixedLocationSource::parsePosition(options_.at);
    if (!at) return "--at expects LAT,LON in degrees, e.g. --at 35.05,118.33";
  }
  env_.location = std::make_shared<FixedLocationSource>(loop, at);
  env_.geocoder = std::make_shared<NearestCityGeocoder>(env_.files->resourceDirectory() / "area.db");
  env_.textMeasurer = std::make_shared<PangoTextMeasurer>();
  env_.qrGenerator = std::make_shared<QrencodeGenerator>();
  env_.window = std::make_shared<HeadlessAppWindow>();
  if (!config_.objectStorageHost.empty()) {
    env_.objectStorage = std::make_shared<HttpObjectStorage>(config_.objectStorageHost, env_.http);
  }
  env_.crashReporter = std::make_shared<LoggingCrashReporter>();
  env_.analytics = std::make_shared<LoggingAnalytics>();
  env_.sharing = std::make_shared<LoggingSocialSharing>();
  env_.payments = paymentChannels();
  installed_ = std::make_unique<ScopedEnv>(env_);
  return {};
}

std::shared_ptr<PaymentChannels> CliApp::paymentChannels() {
  auto channels = std::make_shared<PaymentChannels>();
  channels->scheme = config_.urlScheme;
  channels->wechatAppId = config_.wechatAppId;
  channels->wechatPartnerId = config_.wechatPartnerId;
  channels->wechatApiKey = config_.wechatApiKey;
  if (!sandbox_) {
    // A real server's payments are completed by the vendors' applications, which return
    // through "qmv open".
    channels->wechat = std::make_shared<UrlResultWeChatApi>();
    channels->alipay = std::make_shared<UrlResultAlipayService>();
    channels->uppay = std::make_shared<UrlResultUPPayControl>();
    return channels;
  }
  SandboxPaymentSetup setup;
  setup.http = env_.http;
  setup.completeUrl = sandbox_->rootUrl() + "/sandbox/pay/complete";
  setup.outcome = options_.payOutcome == "cancel" ? PayOutcome::Cancel
                  : options_.payOutcome == "fail" ? PayOutcome::Fail
                                                  : PayOutcome::Success;
  // The application is brought back by its inbound URL, as the system does on a phone.
  setup.openURL = [this](const std::string& url, const std::string& source) {
    if (appDelegate_) appDelegate_->openURL(url, source);
  };
  channels->wechat = std::make_shared<SandboxWeChatApp>(setup, config_.wechatApiKey);
  channels->alipay = std::make_shared<SandboxAlipayApp>(setup);
  channels->uppay = std::make_shared<SandboxUPPayApp>(setup);
  return channels;
}

std::optional<int> CliApp::answerIndex(const std::string& answer, const std::vector<std::string>& buttons) const {
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (buttons[i] == answer) return static_cast<int>(i);
  }
  if (!answer.empty() && answer.find_first_not_of("0123456789") == std::string::npos && answer.size() < 4) {
    const int n = std::stoi(answer);
    if (n >= 1 && n <= static_cast<int>(buttons.size())) return n - 1;
  }
  return std::nullopt;
}

bool CliApp::answerAlert(const std::string& answer) {
  if (!alerts_ || alerts_->pendingCount() == 0) return false;
  if (answer.empty() || answer.size() > 3 || answer.find_first_not_of("0123456789") != std::string::npos) return false;
  const int number = std::stoi(answer);
  return number >= 1 && alerts_->answer(AlertAnswer{number - 1, {}});
}

bool CliApp::waitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  if (done()) return true;
  return env_.mainLoop->runUntil(done, timeout);
}

void CliApp::runFor(std::chrono::milliseconds duration) {
  env_.mainLoop->runUntil([] { return false; }, duration);
}

void CliApp::beginCommand(bool json) { output_ = std::make_unique<CliOutput>(json, out_); }

void CliApp::startLineReader() {
  if (lineReader_) return;
  lineReader_ = std::make_shared<LineReader>();
  std::thread([reader = lineReader_, &in = in_] {
    std::string line;
    while (std::getline(in, line)) {
      std::lock_guard lock(reader->mutex);
      reader->lines.push_back(line);
    }
    std::lock_guard lock(reader->mutex);
    reader->eof = true;
  }).detach();
}

std::optional<std::string> CliApp::readLine(const std::string& prompt) {
  if (interactive_ && !prompt.empty()) out_ << prompt << std::flush;
  if (!lineReader_) {
    std::string line;
    if (!std::getline(in_, line)) return std::nullopt;
    return line;
  }
  auto reader = lineReader_;
  const auto available = [&] {
    std::lock_guard lock(reader->mutex);
    return !reader->lines.empty() || reader->eof;
  };
  // The loop keeps running while the user types, so timers fire on time.
  while (!available()) {
    if (env_.mainLoop) {
      env_.mainLoop->runUntil(available, std::chrono::milliseconds(50));
    } else {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  }
  std::lock_guard lock(reader->mutex);
  if (reader->lines.empty()) return std::nullopt;
  std::string line = std::move(reader->lines.front());
  reader->lines.pop_front();
  return line;
}

}  // namespace qmv::cli
