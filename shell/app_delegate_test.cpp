#include "shell/app_delegate.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/request/network_agent.h"
#include "core/request/network_config.h"
#include "core/session/global_data.h"
#include "core/session/login_net_api.h"
#include "features/discovery/main_view_controller.h"
#include "features/discovery/nearby_view_controller.h"
#include "features/orders/payment_failure_watch.h"
#include "platform/env.h"
#include "platform/linux/headless_app_window.h"
#include "platform/manual_main_loop.h"
#include "platform/push_service.h"
#include "platform/settings_store.h"
#include "platform/stack_navigator.h"
#include "platform/synchronous_notification_center.h"
#include "platform/testing/fake_location_source.h"
#include "platform/testing/fixed_reachability.h"
#include "platform/testing/recording_payment_channels.h"
#include "platform/testing/recording_status_overlay.h"
#include "platform/testing/scripted_alerts.h"
#include "platform/testing/test_env.h"
#include "platform/vendor_sdks.h"
#include "shell/launch_view_controller.h"
#include "shell/server_switch.h"
#include "shell/shell_texts.h"

namespace qmv {
namespace {

using Log = std::shared_ptr<std::vector<std::string>>;

// Every port appends to one log so that the start-up order is visible across ports.
struct LoggedCrashReporter : CrashReporter {
  Log log;
  void start(const std::string& appId) override { log->push_back("crash " + appId); }
};
struct LoggedAnalytics : Analytics {
  Log log;
  void start(const std::string& key, int policy, const std::string& channel) override {
    log->push_back("analytics " + key + " " + std::to_string(policy) + " [" + channel + "]");
  }
};
struct LoggedSharing : SocialSharing {
  Log log;
  void registerApp(const std::string& key, const std::vector<std::string>&) override { log->push_back("share " + key); }
  void share(const std::string&, const std::string&, const std::string&, const std::string&) override {}
};
struct LoggedPush : PushService {
  Log log;
  std::vector<std::string> aliases;
  void setAlias(const std::string& alias, const std::string& type) override { aliases.push_back(alias + "/" + type); }
  void start(const std::string& key, const Json&) override { log->push_back("push " + key); }
  void registerForNotifications(const Category& c) override {
    std::string text = "pushCategory " + c.identifier;
    for (const auto& a : c.actions) text += " " + a.identifier + "=" + a.title;
    log->push_back(text);
  }
  void setLogEnabled(bool) override { log->push_back("pushLog"); }
};
struct LoggedReachability : FixedReachability {
  Log log;
  void startMonitoring() override { log->push_back("reachability"); }
};
struct LoggedWeChat : RecordingWeChatApi {
  Log log;
  void registerApp(const std::string& id, const std::string& description) override {
    log->push_back("wechat " + id + " " + description);
  }
};
struct LoggedWindow : HeadlessAppWindow {
  Log log;
  void setLooks(const AppLooks& looks) override { log->push_back("looks"), HeadlessAppWindow::setLooks(looks); }
  void showLaunchView(const std::string& p, const std::string& u) override {
    log->push_back("launch " + p), HeadlessAppWindow::showLaunchView(p, u);
  }
};
struct LoggedNotifications : NotificationCenter {
  Log log;
  std::shared_ptr<NotificationCenter> real;
  void post(const std::string& name, const Json& info) override { real->post(name, info); }
  ObserverToken addObserver(const std::string& name, Callback cb) override {
    log->push_back("observe " + name);
    return real->addObserver(name, std::move(cb));
  }
  void removeObserver(ObserverToken t) override { real->removeObserver(t); }
};

class FakeNearby : public NearbyHandoff {
 public:
  bool loaded = false;
  std::vector<std::string> received;
  bool isViewLoaded() const override { return loaded; }
  void selectedCategoryFromMain(const std::string& id) override { received.push_back("type " + id); }
  void selectedKeyFromMain(const std::string& key) override { received.push_back("key " + key); }
};

struct ShellFixture : ::testing::Test {
  Log log = std::make_shared<std::vector<std::string>>();
  std::shared_ptr<ManualMainLoop> loop = std::make_shared<ManualMainLoop>();
  std::shared_ptr<MemorySettingsStore> settings = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<StackNavigator> navigator = std::make_shared<StackNavigator>();
  std::shared_ptr<LoggedWindow> window = std::make_shared<LoggedWindow>();
  std::shared_ptr<LoggedPush> push = std::make_shared<LoggedPush>();
  std::shared_ptr<RecordingStatusOverlay> overlay = std::make_shared<RecordingStatusOverlay>();
  std::shared_ptr<ScriptedAlerts> alerts = std::make_shared<ScriptedAlerts>();
  std::shared_ptr<LoggedWeChat> wechat = std::make_shared<LoggedWeChat>();
  std::shared_ptr<RecordingAlipayService> alipay = std::make_shared<RecordingAlipayService>();
  std::shared_ptr<RecordingUPPayControl> uppay = std::make_shared<RecordingUPPayControl>();
  std::shared_ptr<SynchronousNotificationCenter> notifications = std::make_shared<SynchronousNotificationCenter>();
  std::shared_ptr<FakeLocationSource> location = std::make_shared<FakeLocationSource>();
  std::vector<std::string> posted;
  std::unique_ptr<ScopedEnv> scope;
  AppConfig config;

  void SetUp() override {
    Env env;
    env.mainLoop = loop;
    env.settings = settings;
    env.navigator = navigator;
    env.window = window;
    env.push = push;
    env.overlay = overlay;
    env.alerts = alerts;
    env.location = location;
    auto crash = std::make_shared<LoggedCrashReporter>();
    auto analytics = std::make_shared<LoggedAnalytics>();
    auto sharing = std::make_shared<LoggedSharing>();
    auto reach = std::make_shared<LoggedReachability>();
    auto logged = std::make_shared<LoggedNotifications>();
    for (Log* l : {&crash->log, &analytics->log, &sharing->log, &reach->log, &logged->log, &push->log, &wechat->log,
                   &window->log}) {
      *l = log;
    }
    logged->real = notifications;
    env.crashReporter = crash;
    env.analytics = analytics;
    env.sharing = sharing;
    env.reachability = reach;
    env.notifications = logged;
    env.payments = std::make_shared<PaymentChannels>(PaymentChannels{wechat, alipay, uppay});
    scope = std::make_unique<ScopedEnv>(completedForTesting(std::move(env)));
    for (const char* name : {"pay_success_noti", "changeBaseUrl"}) {
      notifications->addObserver(name, [this](const std::string& n, const Json&) { posted.push_back(n); });
    }
    config.serverBaseUrl = "http://127.0.0.1:1/qmv/app/v3/";
    config.crashReporterAppId = "crash-id";
    config.pushAppKey = "push-key";
    config.analyticsAppKey = "analytics-key";
    config.shareAppKey = "share-key";
    config.wechatAppId = "wx-id";
    config.objectStorageHost = "http://oss.test/";
  }
  void TearDown() override { NetworkConfig::sharedInstance().setBaseUrl(""); }
};

TEST_F(ShellFixture, FirstRunStartsInOrderWithTheGuideAndLaterRunsGoToTheTabs) {
  {
    AppDelegate app(config);
    ASSERT_TRUE(app.didFinishLaunchingWithOptions());
    const std::vector<std::string> expected = {
        "crash crash-id",
        "push push-key",
        "pushCategory category1 action1_identifier=Accept action2_identifier=Reject",
        "pushLog",
        "looks",
        "observe changeBaseUrl",
        "reachability",
        "analytics analytics-key 1 []",
        "share share-key",
        "wechat wx-id qmv",
        "launch welcome_first"};
    EXPECT_EQ(*log, expected);
    // The looks themselves; the welcome image lives on the object-storage host.
    const std::vector<std::string> looks = {"looks background=255,255,255,1 barTint=241,161,72,1 font=18",
                                            "imageCache remove http://oss.test/welcome.png",
                                            "launchView placeholder=welcome_first url=http://oss.test/welcome.png"};
    EXPECT_EQ(window->events(), looks);
    EXPECT_EQ(NetworkConfig::sharedInstance().baseUrl(), config.serverBaseUrl);
    EXPECT_EQ(navigator->topScreen()->name, "LaunchViewController");
    EXPECT_EQ(settings->stringForKey("select_city"), "临沂市");
    EXPECT_EQ(settings->stringForKey("select_city_dis"), "临沂市");
    EXPECT_TRUE(settings->boolForKey("isLaunched"));
    EXPECT_GE(settings->synchronizeCount(), 1);
    EXPECT_EQ(app.tabBarViewCtrl(), nullptr);

    // The launch view covers the root for exactly three seconds.
    loop->advance(std::chrono::milliseconds(2999));
    EXPECT_TRUE(window->isLaunchViewShown());
    loop->advance(std::chrono::milliseconds(1));
    EXPECT_FALSE(window->isLaunchViewShown());
  }

  settings->setString("济南市", "select_city");
  log->clear();
  AppDelegate again(config);
  again.didFinishLaunchingWithOptions();
  ASSERT_NE(again.tabBarViewCtrl(), nullptr);
  ASSERT_NE(again.mainCtrl(), nullptr);
  EXPECT_FALSE(again.mainCtrl()->isViewLoaded()) << "the front end loads it when it shows the tab";
  EXPECT_NE(dynamic_cast<NearbyViewController*>(again.nearbyCtrl()), nullptr) << "the home's hand-offs reach the tab";
  EXPECT_EQ(navigator->topScreen()->name, "TabBarViewController");
  EXPECT_EQ(again.tabBarViewCtrl()->viewControllers().at(3), "QXH5ViewController");
  EXPECT_EQ(settings->stringForKey("select_city"), "济南市");  // the guide's default city is first-run only
}

TEST_F(ShellFixture, TheGuideAsksForOnePositionOpensTheCityPickerAndLeavesTheHomeItsOwnLocate) {
  AppDelegate app(config);
  ASSERT_TRUE(app.didFinishLaunchingWithOptions());
  LaunchViewController guide;
  int changes = 0;
  guide.onChanged = [&] { ++changes; };
  location->setEnabled(false);
  guide.askForLocation();
  EXPECT_EQ(guide.locationText(), shell_texts::kGuideServicesOff);
  EXPECT_EQ(location->startCount(), 0);

  location->setEnabled(true);
  guide.askForLocation();
  EXPECT_EQ(guide.locationText(), shell_texts::kGuideLocating);
  ASSERT_TRUE(location->deliver({35.06, 118.34}));
  EXPECT_EQ(guide.location(), LaunchViewController::Location::Located);
  EXPECT_FALSE(location->updating()) << "one position is all the guide asks for";
  ASSERT_TRUE(GlobalData::sharedInstance().userLocation().has_value());
  EXPECT_DOUBLE_EQ(GlobalData::sharedInstance().userLocation()->latitude, 35.06);
  EXPECT_EQ(changes, 3);

  EXPECT_EQ(LaunchViewController::cityText(), "当前城市：临沂市");
  LaunchViewController::chooseCity();
  EXPECT_EQ(navigator->topScreen()->name, shell_texts::kCityScreen);
  navigator->pop();

  // Asked again and left unanswered: leaving stops it before the home starts its locate,
  // and nothing the guide asked for arrives afterwards.
  guide.askForLocation();
  guide.finish(app);
  EXPECT_FALSE(location->updating());
  EXPECT_EQ(navigator->topScreen()->name, "TabBarViewController");
  EXPECT_EQ(guide.locationText(), "");
}

TEST_F(ShellFixture, ChangeBaseUrlTakesEffectBeforeThePostReturns) {
  AppDelegate app(config);
  app.didFinishLaunchingWithOptions();
  LoginNetApi login("13800000000", "x");
  notifications->post("changeBaseUrl", Json{{"type", "http://10.1.2.3/qmv/app/v3/"}});
  // A request built right after the post already goes to the new server.
  EXPECT_EQ(NetworkAgent::sharedInstance().buildRequestUrl(login), "http://10.1.2.3/qmv/app/v3/getUserLogin");
  notifications->post("changeBaseUrl");
  EXPECT_EQ(NetworkAgent::sharedInstance().buildRequestUrl(login), "getUserLogin") << "no type: no host";

  // The server switch posts what the sheet or the typed host names.
  config.productionServer = "http://prod.test/qmv/app/v3/";
  ServerSwitch serverSwitch(config);
  std::vector<std::string> switched;
  const auto onSwitched = [&](const std::string& base) {
    switched.push_back(NetworkAgent::sharedInstance().buildRequestUrl(login));
    EXPECT_EQ(base + "getUserLogin", switched.back());
  };
  serverSwitch.showAlert(onSwitched);
  ASSERT_EQ(alerts->shown().back().buttons, (std::vector<std::string>{"正式环境", "测试环境", "手动输入"}));
  alerts->script({0, {}});
  alerts->flush();
  serverSwitch.showAlert(onSwitched);
  alerts->script({2, {}});
  alerts->script({0, {"192.168.1.9:8080"}});
  alerts->flush();
  alerts->flush();
  EXPECT_EQ(alerts->shown().back().textFields, std::vector<std::string>{"IP:"});
  EXPECT_EQ(switched, (std::vector<std::string>{"http://prod.test/qmv/app/v3/getUserLogin",
                                                "http://192.168.1.9:8080/qmv/app/v3/getUserLogin"}));
  EXPECT_EQ(posted, (std::vector<std::string>{"changeBaseUrl", "changeBaseUrl", "changeBaseUrl", "changeBaseUrl"}));
}

TEST_F(ShellFixture, InboundUrlsRouteBySourceFirstThenHost) {
  AppDelegate app(config);
  // The messaging application's source wins even over a wallet host.
  EXPECT_TRUE(app.openURL("qqqmmmvvv://safepay/?x=1", "com.tencent.xin"));
  EXPECT_EQ(wechat->handledUrls.size(), 1u);
  EXPECT_TRUE(alipay->paymentUrls.empty());
  EXPECT_EQ(posted, std::vector<std::string>{"pay_success_noti"});
  EXPECT_EQ(overlay->statuses().back(), "支付成功");

  wechat->nextErrCode = -2;
  app.openURL("wxapp://pay/", "com.tencent.xin");
  EXPECT_EQ(overlay->statuses().back(), "支付失败");

  EXPECT_TRUE(app.openURL("qqqmmmvvv://safepay/?resultStatus=9000", "com.alipay.iphoneclient"));
  EXPECT_EQ(alipay->paymentUrls.size(), 1u);
  EXPECT_EQ(posted, (std::vector<std::string>{"pay_success_noti", "pay_success_noti"}));  // "9000" succeeded
  // An authorisation is not a payment, granted or not.
  EXPECT_TRUE(app.openURL("qqqmmmvvv://platformapi/auth", ""));
  EXPECT_EQ(alipay->authUrls.size(), 1u);
  EXPECT_EQ(posted.size(), 2u) << "a granted authorisation posts no payment success";
  alipay->nextResult = Json{{"resultStatus", "6001"}, {"memo", "\\u7528\\u6237\\u53d6\\u6d88"}};
  EXPECT_TRUE(app.openURL("QQQMMMVVV://PlatformAPI/auth", ""));
  EXPECT_EQ(overlay->statuses().back(), "用户取消");

  uppay->nextCode = "cancel";
  EXPECT_TRUE(app.openURL("qqqmmmvvv://uppayresult?code=cancel", ""));
  EXPECT_EQ(overlay->statuses().back(), "支付取消");
  uppay->nextCode = "success";
  posted.clear();
  app.openURL("qqqmmmvvv://uppayresult?code=success", "");
  EXPECT_EQ(overlay->statuses().back(), "支付成功");
  loop->advance(AppDelegate::kPaySuccessDelay);
  EXPECT_EQ(posted, std::vector<std::string>{"pay_success_noti"});

  // Only our scheme with an exact host: no other scheme, user information, port,
  // look-alike host or fragment reaches a payment library.
  const auto before = overlay->statuses().size();
  EXPECT_FALSE(app.openURL("qqqmmmvvv://unknownhost/x", "com.example.other"));
  EXPECT_FALSE(app.openURL("not a url", ""));
  for (const char* url : {"http://uppayresult?code=success", "qqqmmmvvv://evil.test@uppayresult?code=success",
                          "qqqmmmvvv://uppayresult:80?code=success", "qqqmmmvvv://uppayresult.evil.test?code=success",
                          "qqqmmmvvv://uppayresult#?code=success", "qqqmmmvvv://x#@uppayresult?code=success",
                          "qqqmmmvvvx://safepay/?resultStatus=9000", "qqqmmmvvv:/safepay/?resultStatus=9000"}) {
    EXPECT_FALSE(app.openURL(url, "")) << url;
  }
  EXPECT_EQ(overlay->statuses().size(), before);
  EXPECT_EQ(alipay->paymentUrls.size(), 1u);
  EXPECT_EQ(uppay->handledUrls.size(), 2u);
  loop->advance(AppDelegate::kPaySuccessDelay);
  EXPECT_EQ(posted, std::vector<std::string>{"pay_success_noti"});

  // A pay-now screen waiting for the payment says its success on the notification: the
  // returns only post it, so that it is said once.
  PaymentFailureWatch waiting([] {});
  wechat->nextErrCode = 0;
  EXPECT_TRUE(app.openURL("wxapp://pay/", "com.tencent.xin"));
  EXPECT_TRUE(app.openURL("qqqmmmvvv://uppayresult?code=success", ""));
  loop->advance(AppDelegate::kPaySuccessDelay);
  EXPECT_EQ(posted, (std::vector<std::string>{"pay_success_noti", "pay_success_noti", "pay_success_noti"}));
  EXPECT_EQ(overlay->statuses().size(), before);
}

TEST_F(ShellFixture, HomeJumpsToNearbyDeliverAtOnceOrAfterTheTabLoads) {
  settings->setBool(true, "isLaunched");
  AppDelegate app(config);
  app.didFinishLaunchingWithOptions();
  auto nearby = std::make_shared<FakeNearby>();
  app.setNearbyCtrl(nearby);

  app.changeToNearWithType("45");
  EXPECT_EQ(app.tabBarViewCtrl()->selectedIndex(), 1);
  EXPECT_TRUE(nearby->received.empty());  // never shown yet: delivered 0.1 s later
  loop->advance(std::chrono::milliseconds(99));
  EXPECT_TRUE(nearby->received.empty());
  loop->advance(std::chrono::milliseconds(1));
  EXPECT_EQ(nearby->received, std::vector<std::string>{"type 45"});

  nearby->loaded = true;
  app.changeToNearWithKey("火锅");
  EXPECT_EQ(nearby->received.back(), "key 火锅");

  app.changeToCircles();
  EXPECT_EQ(app.tabBarViewCtrl()->selectedIndex(), 3);

  app.applicationWillEnterForeground();
  EXPECT_EQ(window->events().back(), "badge cleared");

  // A jump still waiting when the delegate goes away never runs.
  nearby->loaded = false;
  const auto received = nearby->received.size();
  {
    AppDelegate leaving(config);
    leaving.didFinishLaunchingWithOptions();
    leaving.setNearbyCtrl(nearby);
    leaving.changeToNearWithKey("烧烤");
  }
  loop->advance(AppDelegate::kNearbyHandoffDelay);
  EXPECT_EQ(nearby->received.size(), received);
}

}  // namespace
}  // namespace qmv
