#include "core/request/base_net_api.h"

#include <gtest/gtest.h>

#include "core/request/net_api.h"
#include "core/request/net_api_test_support.h"
#include "core/session/base_view_controller.h"
#include "core/session/login_net_api.h"
#include "core/session/user_info_net_api.h"

namespace qmv {
namespace {

using testsupport::ApiServerTest;

// A screen that counts its reactions and keeps the base class's behaviour.
class TestScreen : public BaseViewController {
 public:
  int expired = 0, started = 0, stopped = 0, noNetwork = 0;
  bool data = false;
  void sessionExpired(BaseNetApi& request) override {
    ++expired;
    BaseViewController::sessionExpired(request);
  }
  void startLoading() override {
    ++started;
    BaseViewController::startLoading();
  }
  void stopLoading() override {
    ++stopped;
    BaseViewController::stopLoading();
  }
  void networkFailed() override {
    ++noNetwork;
    BaseViewController::networkFailed();
  }
  bool hasData() const override { return data; }

  void attach(BaseNetApi& api) {
    api.sessionDelegate = this;
    api.netLoadingDelegate = this;
    api.networkFailedDelegate = this;
  }
};

class BaseNetApiTest : public ApiServerTest {};

TEST_F(BaseNetApiTest, CorrectAnswerAndTheSessionItCarriesAfterwards) {
  answer(
      "getUserLogin",
      R"({"success":"0","message":"","data":{"sessionId":"S-42","phone":"13800000000","userName":"u42","nowExp":"150"}})");
  TestScreen screen;
  auto login = std::make_shared<LoginNetApi>("13800000000", "e10adc3949ba59abbe56e057f20f883e");
  screen.attach(*login);
  ASSERT_EQ(run(login), "success");
  EXPECT_TRUE(login->isCorrectResult());
  EXPECT_EQ(screen.started, 1);
  EXPECT_EQ(screen.stopped, 1);
  EXPECT_FALSE(screen.isLoadingShown());
  EXPECT_EQ(screen.noNetwork, 0);
  EXPECT_TRUE(overlay_->shown().empty());
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"userName", "13800000000"},
                                                      {"userPassword", "e10adc3949ba59abbe56e057f20f883e"}}));

  auto user = login->getUserInfo();
  ASSERT_TRUE(user);
  EXPECT_EQ(user->userName, "u42");
  EXPECT_EQ(user->level, 1);
  EXPECT_FALSE(settings_->stringForKey("user_phone")) << "the answer's phone is not kept";
  GlobalData::sharedInstance().setSelfInfo(user);

  // The session travels with every request that acts for the member, and first.
  ASSERT_EQ(run(std::make_shared<UserInfoNetApi>()), "success");
  EXPECT_EQ(last().endpoint, "getUserInfo");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S-42"}}));
}

TEST_F(BaseNetApiTest, ExpiredSessionLogsOutAndPresentsLogin) {
  navigator_->push("MainViewController");
  logIn("S-old");
  cookies_->setCookie({"sessionID", "a", "127.0.0.1", "/"});
  cookies_->setCookie({"sessionId", "b", "pages.example", "/"});
  cookies_->setCookie({"theme", "dark", "127.0.0.1", "/"});
  answer("getUserInfo", R"({"success":"2","message":"会话已过期"})");

  TestScreen screen;
  auto api = std::make_shared<UserInfoNetApi>();
  screen.attach(*api);
  ASSERT_EQ(run(api), "success");  // an envelope verdict is a transport success
  EXPECT_FALSE(api->isCorrectResult());
  EXPECT_EQ(screen.expired, 1);
  EXPECT_EQ(last().cookie.find("sessionID=a") != std::string::npos,
            true);  // sent before it expired
  EXPECT_EQ(GlobalData::sharedInstance().selfInfo(), nullptr);
  ASSERT_EQ(push_->aliases().size(), 1u);
  EXPECT_EQ(push_->aliases()[0], (std::pair<std::string, std::string>{"un_valid_Alias", "QMV_User"}));
  ASSERT_EQ(cookies_->cookies().size(), 1u);
  EXPECT_EQ(cookies_->cookies()[0].name, "theme");
  ASSERT_TRUE(navigator_->topScreen());
  EXPECT_EQ(navigator_->topScreen()->name, "LoginViewController");
  EXPECT_EQ(navigator_->layers().size(), 2u);
  EXPECT_TRUE(overlay_->shown().empty());  // expiry shows no message

  // A second expiry while the login screen is up does not stack another one.
  ASSERT_EQ(run(api), "success");
  EXPECT_EQ(screen.expired, 2);
  EXPECT_EQ(navigator_->layers().size(), 2u);

  // Without a session, the next request carries no "sessionId" at all.
  answer("getUserInfo", R"({"success":"0","data":{}})");
  ASSERT_EQ(run(std::make_shared<UserInfoNetApi>()), "success");
  EXPECT_TRUE(last().arguments.empty());
}

TEST_F(BaseNetApiTest, FailureShowsTheDecodedMessageAndNeverResetsAnEarlierVerdict) {
  answer("getUserLogin", R"({"success":"1","message":"\\u5bc6\\u7801\\u9519\\u8bef"})");
  auto login = std::make_shared<LoginNetApi>("13800000000", "x");
  ASSERT_EQ(run(login), "success");
  EXPECT_FALSE(login->isCorrectResult());
  EXPECT_EQ(overlay_->shown(), (std::vector<std::pair<std::string, std::string>>{{"", "密码错误"}}));

  // A message already decoded by JSON, a failure without message, a null message.
  answer("getUserLogin", R"({"success":"9","message":"\u8d26\u53f7\u4e0d\u5b58\u5728"})");
  ASSERT_EQ(run(login), "success");
  answer("getUserLogin", R"({"success":"1"})");
  ASSERT_EQ(run(login), "success");
  answer("getUserLogin", R"({"success":"1","message":null})");
  ASSERT_EQ(run(login), "success");
  EXPECT_EQ(overlay_->statuses(), (std::vector<std::string>{"密码错误", "账号不存在"}));

  // A correct answer, then a failing one: the verdict stays YES.
  answer("getUserLogin", R"({"success":0,"data":{}})");
  ASSERT_EQ(run(login), "success");
  EXPECT_TRUE(login->isCorrectResult());
  answer("getUserLogin", R"({"success":"1","message":"再试"})");
  ASSERT_EQ(run(login), "success");
  EXPECT_TRUE(login->isCorrectResult());
}

TEST_F(BaseNetApiTest, BodiesThatAreNotEnvelopes) {
  TestScreen screen;
  for (const char* body : {"<html>502 Bad Gateway</html>", "", "[1,2,3]", R"("0")", R"({"success":"0")"}) {
    answer("getUserInfo", body);
    auto api = std::make_shared<UserInfoNetApi>();
    screen.attach(*api);
    ASSERT_EQ(run(api), "success") << body;
    EXPECT_FALSE(api->isCorrectResult()) << body;
  }
  EXPECT_TRUE(overlay_->shown().empty());
  EXPECT_EQ(screen.expired + screen.noNetwork, 0);
}

TEST_F(BaseNetApiTest, ConnectionFailureShowsTheMessageThenTheNoNetworkView) {
  TestScreen screen;
  answer("getUserInfo", R"({"success":"0","data":{}})", 500);
  auto api = std::make_shared<UserInfoNetApi>();
  screen.attach(*api);
  ASSERT_EQ(run(api), "failure");
  EXPECT_EQ(overlay_->statuses(), std::vector<std::string>{"连接服务器失败,请稍后再试"});
  EXPECT_EQ(screen.noNetwork, 1);
  EXPECT_EQ(screen.stopped, 1);
  EXPECT_EQ(screen.warning(), BaseViewController::Warning::NoData);  // reachable: the no-data view

  // Nobody listening at all, and the device offline.
  testsupport::LoopbackServer closed;
  closed.start();
  const std::string deadUrl = closed.url("/qmv/app/v3/");
  closed.shutdown();
  NetworkConfig::sharedInstance().setBaseUrl(deadUrl);
  reachability_->set(false);
  ASSERT_EQ(run(api), "failure");
  EXPECT_EQ(overlay_->statuses().size(), 2u);
  EXPECT_EQ(screen.warning(), BaseViewController::Warning::NoNetwork);

  // A screen that has data keeps it: no warning over it.
  screen.data = true;
  ASSERT_EQ(run(api), "failure");
  EXPECT_EQ(screen.warning(), BaseViewController::Warning::None);
  // Loading replaces a warning.
  screen.data = false;
  screen.networkFailed();
  screen.startLoading();
  EXPECT_EQ(screen.warning(), BaseViewController::Warning::None);
  EXPECT_TRUE(screen.isLoadingShown());
}

TEST_F(BaseNetApiTest, NeedShowErrorOffSilencesMessagesButNotDelegates) {
  TestScreen screen;
  auto api = std::make_shared<UserInfoNetApi>();
  api->needShowError = false;
  screen.attach(*api);
  answer("getUserInfo", R"({"success":"1","message":"服务器维护中"})");
  ASSERT_EQ(run(api), "success");
  answer("getUserInfo", "{}", 404);
  ASSERT_EQ(run(api), "failure");
  EXPECT_EQ(screen.noNetwork, 1);
  answer("getUserInfo", R"({"success":"2"})");
  ASSERT_EQ(run(api), "success");
  EXPECT_EQ(screen.expired, 1);
  EXPECT_TRUE(overlay_->shown().empty());
}

// An endpoint declared here, to show that the logged name comes from the type itself.
class EchoNetApi : public NetApi<EchoNetApi> {
 public:
  std::string requestUrl() const override { return "getUserInfo"; }
};

TEST_F(BaseNetApiTest, TypedBlocksReceiveTheEndpointAndItsNameNeedsNoOverride) {
  answer("getUserLogin", R"({"success":"0","data":{"sessionId":"S-7","userName":"u7"}})");
  auto api = std::make_shared<LoginNetApi>("13800000000", "x");
  LoginNetApi* seen = nullptr;
  std::string name;
  api->startWithCompletionBlockWithSuccess(
      [&](LoginNetApi& done) {
        seen = &done;
        name = done.getUserInfo() ? done.getUserInfo()->userName : "none";
      },
      [&](LoginNetApi& done) { seen = &done; });
  loop_->runUntil([&] { return seen != nullptr; }, std::chrono::milliseconds(15000));
  EXPECT_EQ(seen, api.get());
  EXPECT_EQ(name, "u7");

  // The failure block is typed too; an empty block stays empty.
  answer("getUserInfo", "{}", 500);
  auto echo = std::make_shared<EchoNetApi>();
  EchoNetApi* failed = nullptr;
  echo->setCompletionBlockWithSuccess(nullptr, [&](EchoNetApi& done) { failed = &done; });
  EXPECT_FALSE(echo->successCompletionBlock);
  echo->start();
  loop_->runUntil([&] { return failed != nullptr; }, std::chrono::milliseconds(15000));
  EXPECT_EQ(failed, echo.get());

  EXPECT_EQ(api->className(), "LoginNetApi");
  EXPECT_EQ(echo->className(), "EchoNetApi");
  EXPECT_EQ(std::make_shared<BaseNetApi>()->className(), "BaseNetApi");
}

}  // namespace
}  // namespace qmv
