#include "shell/app_delegate.h"

#include <cctype>

#include "core/common/area_texts.h"
#include "core/common/dictionary.h"
#include "core/common/notification_names.h"
#include "core/common/settings_keys.h"
#include "core/common/url_parts.h"
#include "core/request/network_config.h"
#include "core/session/global_data.h"
#include "features/discovery/main_view_controller.h"
#include "features/discovery/nearby_view_controller.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/payment_failure_watch.h"
#include "features/orders/payment_results.h"
#include "platform/app_window.h"
#include "platform/env.h"
#include "platform/navigator.h"
#include "platform/payment_channels.h"
#include "platform/push_service.h"
#include "platform/reachability.h"
#include "platform/settings_store.h"
#include "platform/status_overlay.h"
#include "platform/vendor_sdks.h"
#include "shell/h5_texts.h"

namespace qmv {
namespace {

const std::vector<std::string> kSharePlatforms = {"wechat_session", "wechat_timeline", "sina_weibo"};

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

}  // namespace

AppDelegate::AppDelegate(AppConfig config) : config_(std::move(config)) {}

AppDelegate::~AppDelegate() {
  const Env& env = Env::current();
  if (changeBaseUrlToken_ != 0) env.notifications->removeObserver(changeBaseUrlToken_);
  if (launchTimer_ != 0) env.mainLoop->cancelTimer(launchTimer_);
  for (const MainLoop::TimerId timer : handOffTimers_) env.mainLoop->cancelTimer(timer);
}

bool AppDelegate::didFinishLaunchingWithOptions(const Json& launchOptions) {
  const Env& env = Env::current();
  env.crashReporter->start(config_.crashReporterAppId);
  initPush(launchOptions);
  env.window->setLooks(AppLooks{.background = Rgba{255, 255, 255, 1},
                                .barTint = Rgba{241, 161, 72, 1},
                                .tint = Rgba{255, 255, 255, 1},
                                .titleColor = Rgba{255, 255, 255, 1},
                                .titleFontSize = 18});
  changeBaseUrlToken_ = env.notifications->addObserver(
      kChangeBaseUrlNotification, [this](const std::string&, const Json& userInfo) { changeBaseUrl(userInfo); });
  NetworkConfig::sharedInstance().setBaseUrl(config_.serverBaseUrl);
  if (config_.maxResponseBytes > 0) NetworkConfig::sharedInstance().setMaxResponseBytes(config_.maxResponseBytes);
  NetworkConfig::sharedInstance().setWebHost(config_.webHost);
  env.reachability->startMonitoring();
  env.analytics->start(config_.analyticsAppKey, 1, "");
  initShare();
  if (env.payments->wechat) env.payments->wechat->registerApp(config_.wechatAppId, "qmv");

  if (env.settings->boolForKey(kIsLaunchedKey)) {
    showMainTabs();
  } else {
    env.navigator->setRoot("LaunchViewController");
    GlobalData::setCurrentCityName(kDefaultCity);
  }

  env.settings->setBool(true, kIsLaunchedKey);
  env.settings->synchronize();
  showLaunchImage();
  return true;
}

void AppDelegate::initPush(const Json& launchOptions) {
  const auto& push = Env::current().push;
  push->start(config_.pushAppKey, launchOptions);
  PushService::Category category{"category1", {{"action1_identifier", "Accept"}, {"action2_identifier", "Reject"}}};
  push->registerForNotifications(category);
  push->setLogEnabled(true);
}

void AppDelegate::initShare() { Env::current().sharing->registerApp(config_.shareAppKey, kSharePlatforms); }

void AppDelegate::showMainTabs() {
  std::vector<std::string> tabs = {"MainViewController", "NearbyViewController", "WealthViewController",
                                   "QXH5ViewController", "ZDMyViewController"};
  tabBarViewCtrl_.emplace(tabs);
  // The screens behind the first two tabs exist from here on, whichever front end draws
  // them: the home screen for its start, the nearby screen for the home's hand-offs.
  mainCtrl_ = std::make_unique<MainViewController>();
  // A nearby screen handed in by the front end is the one on screen: the hand-offs must
  // reach it, not a second one nobody sees.
  if (!nearbyCtrl_) nearbyCtrl_ = std::make_shared<NearbyViewController>();
  const Env& env = Env::current();
  // The community page is the H5 tab, opened with its page type.
  env.navigator->setRoot("TabBarViewController", Json{{"viewControllers", tabs}, {"h5Type", h5_texts::kCommunityType}});
}

void AppDelegate::showLaunchImage() {
  const Env& env = Env::current();
  // Dropping the cached copy first shows the newest server image on every start.
  const std::string welcome = config_.welcomeImage();
  env.window->removeCachedImage(welcome);
  env.window->showLaunchView("welcome_first", welcome);
  if (launchTimer_ != 0) env.mainLoop->cancelTimer(launchTimer_);
  launchTimer_ = env.mainLoop->postAfter(kLaunchImageDuration, [this] {
    launchTimer_ = 0;
    removeLaunchImage();
  });
}

void AppDelegate::removeLaunchImage() { Env::current().window->removeLaunchView(); }

void AppDelegate::changeBaseUrl(const Json& userInfo) {
  // A missing "type" leaves the base empty: relative endpoints then have no host.
  NetworkConfig::sharedInstance().setBaseUrl(strForKey(userInfo, "type"));
}

void AppDelegate::applicationWillEnterForeground() { Env::current().window->clearBadge(); }

bool AppDelegate::openURL(const std::string& url, const std::string& sourceApplication) {
  const auto& payments = Env::current().payments;
  if (sourceApplication == WeChatApi::kSourceApplication) {
    if (!payments->wechat) return false;
    return payments->wechat->handleOpenURL(url, [this](int errCode) { onResp(errCode); });
  }
  // Anything from outside may knock: only our own scheme and an exact host pass (both
  // compare without case, as URL schemes and hosts do).
  if (urlScheme(url) != lower(config_.urlScheme) || url.find('#') != std::string::npos) return false;
  const std::string host = lower(urlAuthority(url));
  if (host == "safepay") {
    if (!payments->alipay) return false;
    payments->alipay->processOrderWithPaymentResult(url, [](const Json& result) {
      handleAlipayResult(result, [] { Env::current().notifications->post(kPaySuccessNotification); });
    });
    return true;
  }
  if (host == "platformapi") {
    if (!payments->alipay) return false;
    payments->alipay->processAuthResult(url, handleAlipayAuthResult);
    return true;
  }
  if (host == "uppayresult") {
    UPPayUtil::handleURL(url, [this] { postPaySuccessLater(); });
    return true;
  }
  return false;
}

void AppDelegate::onResp(int errCode) {
  if (errCode == 0) {
    // A pay-now screen that waits for this payment says it on the notification.
    const bool screenSaysIt = PaymentFailureWatch::anyWaiting();
    Env::current().notifications->post(kPaySuccessNotification);
    if (!screenSaysIt) Env::current().overlay->showImage("", checkout_texts::kPaySuccess);
  } else {
    Env::current().overlay->showImage("", checkout_texts::kPayFailed);
    PaymentFailureWatch::report();
  }
}

void AppDelegate::postPaySuccessLater() {
  const Env& env = Env::current();
  env.mainLoop->postAfter(kPaySuccessDelay, [] { Env::current().notifications->post(kPaySuccessNotification); });
}

void AppDelegate::changeToCircles() {
  if (tabBarViewCtrl_) tabBarViewCtrl_->selectItem(TabBarViewController::kCirclesTab);
}

void AppDelegate::changeToNearWithType(const std::string& typeId) {
  if (tabBarViewCtrl_) tabBarViewCtrl_->selectItem(TabBarViewController::kNearbyTab);
  if (nearbyCtrl_ && nearbyCtrl_->isViewLoaded()) {
    nearbyCtrl_->selectedCategoryFromMain(typeId);
    return;
  }
  // The nearby view is being created by the tab switch; hand over once it exists.
  currentType_ = typeId;
  handOffLater(&AppDelegate::deliverNearbyCategory);
}

void AppDelegate::changeToNearWithKey(const std::string& keyword) {
  if (tabBarViewCtrl_) tabBarViewCtrl_->selectItem(TabBarViewController::kNearbyTab);
  if (nearbyCtrl_ && nearbyCtrl_->isViewLoaded()) {
    nearbyCtrl_->selectedKeyFromMain(keyword);
    return;
  }
  currentKey_ = keyword;
  handOffLater(&AppDelegate::deliverNearbyKeyword);
}

void AppDelegate::handOffLater(void (AppDelegate::*jump)()) {
  const auto& loop = Env::current().mainLoop;
  const auto timer = std::make_shared<MainLoop::TimerId>(0);
  *timer = loop->postAfter(kNearbyHandoffDelay, [this, jump, timer] {
    std::erase(handOffTimers_, *timer);
    (this->*jump)();
  });
  handOffTimers_.push_back(*timer);
}

void AppDelegate::deliverNearbyCategory() {
  if (nearbyCtrl_) nearbyCtrl_->selectedCategoryFromMain(currentType_);
}

void AppDelegate::deliverNearbyKeyword() {
  if (nearbyCtrl_) nearbyCtrl_->selectedKeyFromMain(currentKey_);
}

}  // namespace qmv
