// The page hosts over a scripted site: cookies, titles, back, the application links and
// sharing; the plain page screen; the community tab.
#include "shell/qx_h5_view_controller.h"

#include <gtest/gtest.h>

#include "core/request/network_config.h"
#include "core/session/global_data.h"
#include "platform/manual_main_loop.h"
#include "platform/settings_store.h"
#include "platform/stack_navigator.h"
#include "platform/testing/fake_web_view.h"
#include "platform/testing/test_env.h"
#include "platform/vendor_sdks.h"
#include "shell/h5_texts.h"
#include "shell/tab_bar_view_controller.h"
#include "shell/web_view_controller.h"

namespace qmv {
namespace {

constexpr const char* kHost = "http://pages.example";
const std::string kCoin = std::string(kHost) + "/static/coinone/index.html";
const std::string kOther = std::string(kHost) + "/static/other.html";

class RecordingSharing : public SocialSharing {
 public:
  void registerApp(const std::string&, const std::vector<std::string>&) override {}
  void share(const std::string& url, const std::string& image, const std::string& title,
             const std::string& text) override {
    shared.push_back({url, image, title, text});
  }
  std::vector<ShareContent> shared;
};

class QXH5ViewControllerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Env env;
    env.mainLoop = loop_;
    env.cookies = cookies_;
    env.settings = settings_;
    env.navigator = navigator_;
    env.webViews = webViews_;
    env.sharing = sharing_;
    scoped_.emplace(completedForTesting(std::move(env)));
    GlobalData::resetSharedInstance();
    NetworkConfig::sharedInstance().setWebHost(std::string(kHost) + "/");
    site().pages[kCoin] = WebPage{"", "", {}, "夺宝"};  // a page without a title
    site().pages[kOther] = WebPage{"", "其他", {}, ""};
    navigator_->setRoot("TabBarViewController");
  }
  void TearDown() override {
    NetworkConfig::sharedInstance().setWebHost("");
    GlobalData::resetSharedInstance();
  }

  FakeSite& site() { return *webViews_->site; }
  void logIn(const std::string& sessionId) {
    GlobalData::sharedInstance().setSelfInfo(std::make_shared<UserInfoModel>(Json{{"sessionId", sessionId}}));
  }
  // Loads `screen` and runs the loop until the load has ended.
  template <typename Screen>
  void settle(Screen& screen) {
    bool ended = false;
    screen.onLoadEnded = [&ended] { ended = true; };
    loop_->runUntil([&ended] { return ended; }, std::chrono::milliseconds(1000));
    screen.onLoadEnded = nullptr;
    ASSERT_TRUE(ended);
  }
  // The coin page with the given links, shown.
  std::unique_ptr<QXH5ViewController> coinPageWithLinks(std::vector<std::string> targets) {
    for (const auto& target : targets) site().pages[kCoin].links.push_back({target, target});
    auto screen = std::make_unique<QXH5ViewController>(0);
    navigator_->push("QXH5ViewController");
    screen->viewDidLoad();
    settle(*screen);
    return screen;
  }

  std::shared_ptr<ManualMainLoop> loop_ = std::make_shared<ManualMainLoop>();
  std::shared_ptr<MemoryCookieStore> cookies_ = std::make_shared<MemoryCookieStore>();
  std::shared_ptr<MemorySettingsStore> settings_ = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<StackNavigator> navigator_ = std::make_shared<StackNavigator>();
  std::shared_ptr<FakeWebViewFactory> webViews_ = std::make_shared<FakeWebViewFactory>();
  std::shared_ptr<RecordingSharing> sharing_ = std::make_shared<RecordingSharing>();
  std::optional<ScopedEnv> scoped_;
};

TEST_F(QXH5ViewControllerTest, PagesGetTheSessionAndDeviceAsCookiesAndTheirOwnTitles) {
  logIn("S1");
  auto screen = coinPageWithLinks({kOther});
  EXPECT_EQ(screen->pageUrl(), kCoin) << "one slash between host and path";
  ASSERT_EQ(site().fetches.size(), 1u);
  std::map<std::string, std::string> sent;
  for (const Cookie& cookie : site().fetches[0].cookies) sent[cookie.name] = cookie.value;
  const auto deviceId = settings_->stringForKey("device_id");
  ASSERT_TRUE(deviceId);
  EXPECT_EQ(sent, (std::map<std::string, std::string>{{"sessionID", "S1"},
                                                      {"sessionId", "S1"},
                                                      {"appVersion", sent["appVersion"]},
                                                      {"clientType", "linux"},
                                                      {"deviceType", "linux"},
                                                      {"deviceId", *deviceId}}));
  EXPECT_FALSE(sent["appVersion"].empty());
  EXPECT_EQ(screen->cookies().front().domain, "pages.example");
  EXPECT_EQ(screen->title(), "一元夺宝") << "an untitled page shows the type's title";
  EXPECT_TRUE(screen->shareShown);
  EXPECT_EQ(screen->backImage, "back_3");

  ASSERT_TRUE(screen->webView()->tapLink(0));
  settle(*screen);
  EXPECT_EQ(screen->title(), "其他");
  EXPECT_DOUBLE_EQ(screen->progress(), 1.0);
  screen->goBack();
  EXPECT_EQ(screen->title(), "其他") << "at the start of a load the shown page still names it";
  settle(*screen);
  EXPECT_EQ(screen->webView()->page().url, kCoin);
  EXPECT_EQ(screen->title(), "一元夺宝");
  // A new page after going back replaces what lay ahead.
  ASSERT_TRUE(screen->webView()->tapLink(0));
  settle(*screen);
  screen->goBack();
  settle(*screen);
  EXPECT_EQ(screen->webView()->page().url, kCoin);
  screen->goBack();  // no history left: the screen goes
  EXPECT_EQ(navigator_->history().back(), "pop QXH5ViewController");

  // The device keeps its identity; a damaged one is replaced; a session that would break
  // the Cookie header, or none, is not sent and an old one is removed.
  settings_->setString("x\r\nInjected: 1", "device_id");
  logIn("bad;id");
  QXH5ViewController again(2);
  again.setCookie();
  std::map<std::string, std::string> stored;
  for (const Cookie& cookie : cookies_->cookies()) stored[cookie.name] = cookie.value;
  EXPECT_EQ(stored.count("sessionId") + stored.count("sessionID"), 0u);
  EXPECT_EQ(stored["deviceId"].size(), 36u);
  EXPECT_NE(stored["deviceId"], *deviceId);
  EXPECT_EQ(settings_->stringForKey("device_id"), stored["deviceId"]);
  EXPECT_FALSE(again.shareShown);
}

TEST_F(QXH5ViewControllerTest, AppLinksOpenNativeScreensAndNeverLoad) {
  auto screen = coinPageWithLinks({"qmv://pay?productId=1&series=12&acount=5", "QMV://LOGIN", "qmv://pay?productId=9",
                                   "qmv://pay?series=1&acount=3&series=2&acount="});
  EXPECT_FALSE(screen->webView()->tapLink(0));
  EXPECT_EQ(navigator_->topScreen()->name, "LoginViewController") << "no session: log in first";
  navigator_->dismiss();
  EXPECT_FALSE(screen->webView()->tapLink(1)) << "schemes and hosts compare without case";
  EXPECT_EQ(navigator_->topScreen()->name, "LoginViewController");
  navigator_->dismiss();

  logIn("S1");
  const auto payNow = [&](std::size_t link) {
    EXPECT_FALSE(screen->webView()->tapLink(link));
    const auto shown = navigator_->topScreen();
    EXPECT_EQ(shown->name, "QXPayNowViewController");
    navigator_->pop();
    return shown->payload;
  };
  EXPECT_EQ(payNow(0), (Json{{"productId", "1"}, {"series", "12"}, {"acount", "5"}, {"name", "一元夺宝-第12期"}}));
  EXPECT_EQ(payNow(2), (Json{{"productId", "9"}, {"name", "一元夺宝-第期"}})) << "absent keys stay unset";
  EXPECT_EQ(payNow(3), (Json{{"series", "2"}, {"name", "一元夺宝-第2期"}})) << "the last of a repeated key counts";
  EXPECT_EQ(site().fetches.size(), 1u) << "only the page itself was fetched";
  EXPECT_EQ(screen->webView()->page().url, kCoin);
  EXPECT_FALSE(screen->webView()->canGoBack());

  screen->shareAction();
  ASSERT_EQ(sharing_->shared.size(), 1u);
  EXPECT_EQ(sharing_->shared[0].url, kCoin);
  EXPECT_EQ(sharing_->shared[0].image, "一元夺宝_03");
  EXPECT_EQ(sharing_->shared[0].title, "乐夺宝\n妙趣无穷");
  QXH5ViewController address(3);
  address.shareAction();
  address.publishAction();
  EXPECT_EQ(sharing_->shared.size(), 1u);
  EXPECT_EQ(navigator_->topScreen()->name, "QXH5ViewController");
}

TEST_F(QXH5ViewControllerTest, PlainPagesAndTheCommunityTab) {
  // The plain screen gives no cookies and lets an application link load like any other:
  // it fails, in the client's words, and its screen opens only when asked.
  site().pages[kOther].links = {{"登录", "qmv://login"}};
  WebViewController plain("帮助", kOther);
  plain.viewDidLoad();
  settle(plain);
  EXPECT_EQ(plain.title(), "帮助");
  EXPECT_TRUE(cookies_->cookies().empty());
  EXPECT_TRUE(plain.webView()->tapLink(0));
  settle(plain);
  EXPECT_EQ(plain.loadError(), "no such page");
  EXPECT_STREQ(plain.loadErrorText(), h5_texts::kAppLinkOnPlainPage);
  EXPECT_EQ(plain.failedAppLink(), "qmv://login");
  EXPECT_EQ(navigator_->topScreen()->name, "TabBarViewController");
  EXPECT_TRUE(plain.openFailedAppLink());
  EXPECT_EQ(navigator_->topScreen()->name, "LoginViewController");
  navigator_->dismiss();
  plain.loadURL();
  settle(plain);
  EXPECT_TRUE(plain.failedAppLink().empty()) << "a load that ended well forgets the link";
  EXPECT_FALSE(plain.openFailedAppLink());

  TabBarViewController tabs({"MainViewController", "NearbyViewController", "WealthViewController", "QXH5ViewController",
                             "ZDMyViewController"});
  EXPECT_EQ(tabs.communityViewController(), nullptr);
  tabs.selectItem(TabBarViewController::kCirclesTab);
  QXH5ViewController* community = tabs.communityViewController();
  ASSERT_NE(community, nullptr);
  EXPECT_EQ(community->h5Type(), 1);
  EXPECT_TRUE(community->whiteBackground && community->refreshHeader && community->shareShown);
  EXPECT_EQ(site().fetches.back().url, std::string(kHost) + "/static/lebbs/index.html");
  community->publishAction();
  EXPECT_EQ(navigator_->topScreen()->name, "QXPublishViewController");
}

}  // namespace
}  // namespace qmv
