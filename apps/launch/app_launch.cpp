#include "apps/launch/app_launch.h"

#include <sys/stat.h>

#include <iostream>

#include "apps/sandbox/map_tiles.h"
#include "apps/sandbox/sandbox_server.h"
#include "core/common/settings_keys.h"
#include "core/common/url_parts.h"
#include "platform/clock.h"
#include "platform/cookie_store.h"
#include "platform/file_locations.h"
#include "platform/fixed_location_source.h"
#include "platform/keyring_settings_store.h"
#include "platform/linux/codec_image_decoder.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/curl_transport.h"
#include "platform/linux/home_files.h"
#include "platform/linux/http_object_storage.h"
#include "platform/linux/interface_reachability.h"
#include "platform/linux/libsecret_store.h"
#include "platform/linux/logging_push_service.h"
#include "platform/linux/logging_vendor_sdks.h"
#include "platform/linux/nearest_city_geocoder.h"
#include "platform/linux/pango_text_measurer.h"
#include "platform/linux/qrencode_generator.h"
#include "platform/linux/sandbox_payment_apps.h"
#include "platform/linux/sqlite_settings_store.h"
#include "platform/linux/transport_web_view.h"
#include "platform/linux/url_result_payment_channels.h"
#include "platform/payment_channels.h"
#include "platform/synchronous_notification_center.h"
#include "shell/server_switch.h"

namespace qmv {
namespace {

// What a run reads or writes directly in the home.
const std::vector<std::string> kHomeFiles = {"settings.db",         "settings.db-wal", "settings.db-shm",
                                             "settings.db-journal", "shell_history",   "qmv.conf"};
const std::vector<std::string> kHomeDirectories = {"Library", "Library/Caches", "sandbox"};
// A configuration is a few dozen lines; anything far larger is not one.
constexpr std::size_t kMaxConfigBytes = 64 * 1024;
// The embedded sandbox's page cache (see SandboxOptions::pageCacheKiB): the demo data's
// pages that a request reads again come from the system's file cache.
constexpr int kEmbeddedSandboxCacheKiB = 128;

}  // namespace

AppLaunch::AppLaunch(LaunchOptions options) : options_(std::move(options)) {}

std::shared_ptr<SecretStore>& AppLaunch::keyringForTesting() {
  static std::shared_ptr<SecretStore> keyring;
  return keyring;
}

AppLaunch::~AppLaunch() {
  if (sandbox_) sandbox_->stop();
}

Status AppLaunch::prepare() {
  // Everything a run writes (settings, sandbox data, caches, downloads) is the member's
  // alone.
  ::umask(077);
  home_ = options_.home.empty() ? HomeFileLocations::defaultHome() : std::filesystem::path(options_.home);
  std::error_code ec;
  // The home holds the password and the session. A directory given with --home that
  // already existed may be shared (/tmp), so only one made here, or the default home,
  // is narrowed.
  const bool created = std::filesystem::create_directories(home_, ec);
  if (ec) return Status::ioError("cannot create the home directory " + home_.string() + ": " + ec.message());
  if (created || options_.home.empty()) {
    std::filesystem::permissions(home_, std::filesystem::perms::owner_all, std::filesystem::perm_options::replace, ec);
  }
  // Before anything reads or writes in the home (the embedded sandbox starts below).
  if (std::string why = home_files::firstRefusal(home_, kHomeFiles, kHomeDirectories); !why.empty()) {
    return Status::invalidArgument(std::move(why));
  }

  // Read through the descriptor that was checked, so that a link put in its place after
  // the check above is not followed either.
  const auto conf = home_files::readPrivate(home_ / "qmv.conf", kMaxConfigBytes);
  if (!conf.error.empty()) return Status::ioError(conf.error);
  std::vector<std::string> warnings;
  config_ = AppConfig::parse(conf.bytes, "qmv.conf", &warnings);
  for (const auto& w : warnings) std::cerr << "qmv: " << w << '\n';
  if (!options_.server.empty()) config_.serverBaseUrl = options_.server;
  config_.serverBaseUrl = ServerSwitch::withApplicationPath(config_.serverBaseUrl);
  // Every request would fail on such a base, each saying only that it could not connect.
  const std::string scheme = urlScheme(config_.serverBaseUrl);
  if (!config_.serverBaseUrl.empty() &&
      ((scheme != "http" && scheme != "https") || urlHost(config_.serverBaseUrl).empty())) {
    return Status::invalidArgument("the server URL \"" + config_.serverBaseUrl + "\" (" +
                                   (options_.server.empty() ? "qmv.conf" : "--server") +
                                   ") is not an http or https URL with a host");
  }
  if (config_.serverBaseUrl.empty()) {
    sandbox::SandboxOptions sandboxOptions{home_ / "sandbox"};
    sandboxOptions.pageCacheKiB = kEmbeddedSandboxCacheKiB;
    sandbox_ = std::make_unique<sandbox::SandboxServer>(std::move(sandboxOptions));
    if (const Status started = sandbox_->start(); !started.ok()) {
      return Status::unavailable("cannot start the embedded sandbox: " + started.message());
    }
    config_.serverBaseUrl = sandbox_->baseUrl();
    if (config_.webHost.empty()) config_.webHost = sandbox_->rootUrl();
    if (config_.objectStorageHost.empty()) config_.objectStorageHost = sandbox_->rootUrl() + "/oss";
    // The sandbox draws its own map, so that the map has a base layer offline; a credit
    // configured alone was meant for other tiles.
    if (config_.mapTileUrl.empty()) {
      config_.mapTileUrl = sandbox_->rootUrl() + sandbox::kTileRoute;
      config_.mapTileAttribution = sandbox::kTileAttribution;
      config_.mapTileCacheName = "qmv-sandbox";
    }
    if (config_.productionServer.empty()) config_.productionServer = sandbox_->baseUrl();
    if (config_.testServer.empty()) config_.testServer = sandbox_->baseUrl();
    // The sandbox's merchant with the messaging application; real ones come from qmv.conf.
    if (config_.wechatAppId.empty()) config_.wechatAppId = "wxqmvsandbox";
    if (config_.wechatPartnerId.empty()) config_.wechatPartnerId = "1000000001";
    if (config_.wechatApiKey.empty()) config_.wechatApiKey = "qmv-sandbox-merchant-api-key";
  }
  return {};
}

Status AppLaunch::buildEnv(const std::shared_ptr<MainLoop>& loop, Env& env) {
  env.mainLoop = loop;
  env.cookies = std::make_shared<CurlCookieStore>();  // the web views take theirs from it too
  env.http = std::make_shared<CurlTransport>(loop, env.cookies);
  auto opened = SqliteSettingsStore::openInHome(home_);
  if (!opened.ok()) return Status::ioError("cannot open the settings store: " + opened.status().message());
  if (!opened->keptAside.empty()) {
    std::cerr << "qmv: an unreadable settings file was kept aside as " << opened->keptAside << '\n';
  }
  // The keyring tells homes apart by their full path.
  std::error_code ec;
  std::string homeName = std::filesystem::weakly_canonical(home_, ec).string();
  if (ec) homeName = home_.string();
  std::shared_ptr<SecretStore> keyring = keyringForTesting();
  if (!keyring) keyring = std::make_shared<LibsecretStore>(homeName);
  auto settings = std::make_shared<KeyringSettingsStore>(
      std::move(opened->store), std::move(keyring), std::vector<std::string>{kPasswordKey}, "qmv (" + homeName + ") ");
  // A password kept in the file while no keyring answered moves in once one does.
  settings->moveSecretsToKeyring();
  env.settings = std::move(settings);
  env.files = std::make_shared<HomeFileLocations>(home_);
  env.clock = std::make_shared<SystemClock>();
  env.notifications = std::make_shared<SynchronousNotificationCenter>();
  env.push = std::make_shared<LoggingPushService>();
  env.reachability = std::make_shared<InterfaceReachability>();
  if (!options_.at.empty()) {
    at_ = FixedLocationSource::parsePosition(options_.at);
    if (!at_) return Status::invalidArgument("--at expects LAT,LON in degrees, e.g. --at 35.05,118.33");
  }
  env.location = std::make_shared<FixedLocationSource>(loop, at_);
  env.geocoder = std::make_shared<NearestCityGeocoder>(env.files->resourceDirectory() / "area.db");
  env.textMeasurer = std::make_shared<PangoTextMeasurer>();
  env.qrGenerator = std::make_shared<QrencodeGenerator>();
  env.imageDecoder = std::make_shared<CodecImageDecoder>();
  if (!config_.objectStorageHost.empty()) {
    env.objectStorage = std::make_shared<HttpObjectStorage>(config_.objectStorageHost, env.http);
  }
  env.crashReporter = std::make_shared<LoggingCrashReporter>();
  env.analytics = std::make_shared<LoggingAnalytics>();
  env.sharing = std::make_shared<LoggingSocialSharing>();
  env.payments = paymentChannels(env.http);
  env.webViews = std::make_shared<TransportWebViewFactory>(env.http);
  return {};
}

std::shared_ptr<PaymentChannels> AppLaunch::paymentChannels(const std::shared_ptr<HttpTransport>& http) const {
  auto channels = std::make_shared<PaymentChannels>();
  channels->scheme = config_.urlScheme;
  channels->wechatAppId = config_.wechatAppId;
  channels->wechatPartnerId = config_.wechatPartnerId;
  channels->wechatApiKey = config_.wechatApiKey;
  if (!sandbox_) {
    // A real server's payments are completed by the vendors' applications, which return
    // through the inbound URL.
    channels->wechat = std::make_shared<UrlResultWeChatApi>();
    channels->alipay = std::make_shared<UrlResultAlipayService>();
    channels->uppay = std::make_shared<UrlResultUPPayControl>();
    return channels;
  }
  SandboxPaymentSetup setup;
  setup.http = http;
  setup.completeUrl = sandbox_->rootUrl() + "/sandbox/pay/complete";
  setup.paymentKey = sandbox_->paymentKey();
  setup.outcome = options_.payOutcome == "cancel" ? PayOutcome::Cancel
                  : options_.payOutcome == "fail" ? PayOutcome::Fail
                                                  : PayOutcome::Success;
  // The application is brought back by its inbound URL, as the system does on a phone.
  setup.openURL = [open = options_.openURL](const std::string& url, const std::string& source) {
    if (open) open(url, source);
  };
  channels->wechat = std::make_shared<SandboxWeChatApp>(
      setup, WeChatMerchant{config_.wechatAppId, config_.wechatPartnerId, config_.wechatApiKey});
  channels->alipay = std::make_shared<SandboxAlipayApp>(setup);
  channels->uppay = std::make_shared<SandboxUPPayApp>(setup);
  return channels;
}

}  // namespace qmv
