// Login, automatic login on the next start, and logout, against the sandbox.
#include <httplib.h>

#include "apps/sandbox/sandbox_test_support.h"
#include "core/common/settings_keys.h"
#include "core/session/auto_login.h"
#include "core/session/login_view_controller.h"
#include "core/session/logout_flow.h"
#include "tests/discovery_sandbox_fixture.h"

namespace qmv::testsupport {
namespace {

using sandbox::kDemoPassword;
using sandbox::kDemoPhone;

using Alias = std::pair<std::string, std::string>;

const ObjectStorage::Bytes kJpegPortrait = {0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10, 'J', 'F', 'I', 'F', 0x00, 0xFF, 0xD9};

class AccountLoginTest : public DiscoverySandboxTest {
 protected:
  // The demo member's portrait as uploaded earlier, from another session.
  void storeEarlierPortrait(const ObjectStorage::Bytes& bytes) {
    sandbox::testing::ApiClient api(server_->port());
    const std::string session = api.login();
    auto put = api.raw().Put("/oss/" + std::string(kDemoPhone) + ".png?sessionId=" + session,
                             std::string(bytes.begin(), bytes.end()), "application/octet-stream");
    ASSERT_TRUE(put);
    ASSERT_EQ(put->status, 200);
  }

  // Whether the client's object storage takes `bytes` as the demo member's portrait.
  std::optional<bool> uploadPortrait(const ObjectStorage::Bytes& bytes) {
    Outcome uploaded;
    Env::current().objectStorage->upload(std::string(kDemoPhone) + ".png", bytes, uploaded.callback());
    return await(uploaded);
  }

  // The application's main screen with the login screen presented over it.
  void presentLogin() {
    navigator_->push("MainViewController");
    navigator_->present(BaseViewController::kLoginScreen);
  }

  // A full interactive login with the given password; returns its outcome.
  std::optional<bool> loginWith(const std::string& phone, const std::string& password) {
    LoginViewController login;
    Outcome finished;
    login.onFinished = finished.callback();
    login.viewWillAppear();
    login.view().phoneText = phone;
    login.view().passwordText = password;
    login.loginNet();
    return await(finished);
  }
};

TEST_F(AccountLoginTest, CorrectLoginSignsInKeepsPasswordNamesAliasFetchesPortraitAndCloses) {
  storeEarlierPortrait(kJpegPortrait);
  presentLogin();
  settings_->setString(kDemoPhone, kUserPhoneKey);
  settings_->setString(kDemoPassword, kPasswordKey);

  LoginViewController login;
  Outcome finished, portrait;
  login.onFinished = finished.callback();
  login.onHeaderImageFinished = portrait.callback();
  login.viewWillAppear();
  EXPECT_EQ(login.view().phoneText, kDemoPhone);
  EXPECT_EQ(login.view().passwordText, kDemoPassword);

  login.loginNet();
  EXPECT_TRUE(login.isLoadingShown());
  ASSERT_EQ(await(finished), std::optional<bool>(true));
  EXPECT_FALSE(login.isLoadingShown());

  const auto& me = GlobalData::sharedInstance().selfInfo();
  ASSERT_TRUE(me);
  EXPECT_EQ(me->phone, kDemoPhone);
  EXPECT_FALSE(me->sessionId.empty());
  EXPECT_EQ(stored(kPasswordKey), kDemoPassword);
  EXPECT_EQ(stored(kUserPhoneKey), kDemoPhone);
  EXPECT_EQ(push_->aliases(), (std::vector<Alias>{{me->userName, "QMV_User"}}));
  // The presented layer is gone; the member is back on the main screen.
  EXPECT_EQ(navigator_->layers().size(), 1u);
  EXPECT_EQ(navigator_->topScreen()->name, "MainViewController");
  EXPECT_TRUE(overlay_->shown().empty());

  ASSERT_EQ(await(portrait), std::optional<bool>(true));
  EXPECT_EQ(settings_->dataForKey(kHeaderImageNowKey), kJpegPortrait);

  // A screen that goes away before its portrait arrives is not told of it (its front end
  // may be gone too); the portrait is stored all the same.
  settings_->removeObjectForKey(kHeaderImageNowKey);
  bool told = false;
  {
    LoginViewController leaving;
    leaving.onFinished = finished.callback();
    leaving.onHeaderImageFinished = [&told](bool) { told = true; };
    leaving.view().phoneText = kDemoPhone;
    leaving.view().passwordText = kDemoPassword;
    leaving.loginNet();
    ASSERT_EQ(await(finished), std::optional<bool>(true));
  }
  ASSERT_TRUE(runUntil([&] { return settings_->dataForKey(kHeaderImageNowKey).has_value(); }));
  EXPECT_FALSE(told);
}

TEST_F(AccountLoginTest, RefusedOrFailedLoginChangesNoStoredKeyAndMarksAliasInvalid) {
  presentLogin();
  settings_->setString("13900001111", kUserPhoneKey);
  settings_->setString("oldpass1", kPasswordKey);

  EXPECT_EQ(loginWith(kDemoPhone, "wrongpass"), std::optional<bool>(false));
  EXPECT_EQ(overlay_->statuses(), std::vector<std::string>{"用户名或密码错误"});
  EXPECT_EQ(push_->aliases(), (std::vector<Alias>{{"un_valid_Alias", "QMV_User"}}));
  EXPECT_FALSE(GlobalData::sharedInstance().selfInfo());
  EXPECT_EQ(stored(kUserPhoneKey), "13900001111");
  EXPECT_EQ(stored(kPasswordKey), "oldpass1");
  EXPECT_FALSE(settings_->dataForKey(kHeaderImageNowKey));
  EXPECT_EQ(navigator_->topScreen()->name, "LoginViewController");

  // An unreachable server: the connection message, and the same invalid alias. (A new
  // start first, so that no kept-alive connection holds the server's shutdown.)
  installClient();
  presentLogin();
  const int port = server_->port();
  server_->stop();
  NetworkConfig::sharedInstance().setBaseUrl("http://127.0.0.1:" + std::to_string(port) + "/qmv/app/v3/");
  EXPECT_EQ(loginWith(kDemoPhone, kDemoPassword), std::optional<bool>(false));
  EXPECT_EQ(overlay_->statuses(), std::vector<std::string>{"连接服务器失败,请稍后再试"});
  EXPECT_EQ(push_->aliases(), (std::vector<Alias>{{"un_valid_Alias", "QMV_User"}}));
  EXPECT_EQ(stored(kPasswordKey), "oldpass1");
  EXPECT_EQ(navigator_->topScreen()->name, "LoginViewController");
}

TEST_F(AccountLoginTest, NextStartSignsInSilentlyFromTheSameSettingsFile) {
  presentLogin();
  ASSERT_EQ(loginWith(kDemoPhone, kDemoPassword), std::optional<bool>(true));

  installClient();  // the application starts again
  EXPECT_FALSE(GlobalData::sharedInstance().selfInfo());
  AutoLogin autoLogin;
  Outcome finished;
  autoLogin.onFinished = finished.callback();
  ASSERT_TRUE(autoLogin.autoLoginNet());
  ASSERT_EQ(await(finished), std::optional<bool>(true));
  const auto& me = GlobalData::sharedInstance().selfInfo();
  ASSERT_TRUE(me);
  EXPECT_EQ(me->phone, kDemoPhone);
  EXPECT_EQ(push_->aliases(), (std::vector<Alias>{{me->userName, "QMV_User"}}));
  EXPECT_TRUE(overlay_->shown().empty());
  EXPECT_TRUE(navigator_->history().empty());

  // A stored password the server refuses: invalid alias, still nothing shown or changed.
  settings_->setString("stale12", kPasswordKey);
  installClient();
  AutoLogin refused;
  refused.onFinished = finished.callback();
  ASSERT_TRUE(refused.autoLoginNet());
  ASSERT_EQ(await(finished), std::optional<bool>(false));
  EXPECT_FALSE(GlobalData::sharedInstance().selfInfo());
  EXPECT_EQ(push_->aliases(), (std::vector<Alias>{{"un_valid_Alias", "QMV_User"}}));
  EXPECT_TRUE(overlay_->shown().empty());
  EXPECT_EQ(stored(kPasswordKey), "stale12");
  EXPECT_EQ(stored(kUserPhoneKey), kDemoPhone);
}

TEST_F(AccountLoginTest, AutomaticLoginNeedsAStoredPhoneAndPassword) {
  AutoLogin autoLogin;
  bool called = false;
  autoLogin.onFinished = [&](bool) { called = true; };
  EXPECT_FALSE(autoLogin.autoLoginNet());  // nothing stored
  settings_->setString(kDemoPassword, kPasswordKey);
  settings_->setObject(nullptr, kUserPhoneKey);
  EXPECT_FALSE(autoLogin.autoLoginNet());  // null phone
  settings_->setString("", kUserPhoneKey);
  EXPECT_FALSE(autoLogin.autoLoginNet());  // empty phone
  settings_->setString(kDemoPhone, kUserPhoneKey);
  settings_->removeObjectForKey(kPasswordKey);
  EXPECT_FALSE(autoLogin.autoLoginNet());  // no password
  loop_->runPending();
  EXPECT_FALSE(called);
  EXPECT_EQ(NetworkAgent::sharedInstance().requestCount(), 0u);
  EXPECT_TRUE(push_->aliases().empty());
}

TEST_F(AccountLoginTest, LogoutEndsTheServerSessionAndForgetsMemberAndPortraitButNotCredentials) {
  presentLogin();
  EXPECT_EQ(uploadPortrait(kJpegPortrait), std::optional<bool>(false));  // nobody signed in
  LoginViewController login;
  Outcome finished, portrait;
  login.onFinished = finished.callback();
  login.onHeaderImageFinished = portrait.callback();
  login.view().phoneText = kDemoPhone;
  login.view().passwordText = kDemoPassword;
  login.loginNet();
  ASSERT_EQ(await(finished), std::optional<bool>(true));
  ASSERT_EQ(await(portrait), std::optional<bool>(true));  // the one drawn for the demo member
  EXPECT_NE(settings_->dataForKey(kHeaderImageNowKey), kJpegPortrait);
  // Signed in, the member's own portrait goes up (the login's session cookie goes along).
  ASSERT_EQ(uploadPortrait(kJpegPortrait), std::optional<bool>(true));
  login.onHeaderImageFinished = portrait.callback();
  login.downloadHeaderImage();
  ASSERT_EQ(await(portrait), std::optional<bool>(true));
  const std::string session = GlobalData::sharedInstance().selfInfo()->sessionId;

  LogoutFlow logout;
  Outcome confirmed;
  logout.onFinished = confirmed.callback();
  ASSERT_TRUE(logout.logout());
  ASSERT_EQ(await(confirmed), std::optional<bool>(true));
  EXPECT_FALSE(GlobalData::sharedInstance().selfInfo());
  EXPECT_FALSE(settings_->dataForKey(kHeaderImageNowKey));
  EXPECT_EQ(stored(kUserPhoneKey), kDemoPhone);
  EXPECT_EQ(stored(kPasswordKey), kDemoPassword);
  EXPECT_FALSE(logout.logout());  // nobody left to sign out

  // The server no longer knows the session, nor lets it write.
  sandbox::testing::ApiClient api(server_->port());
  EXPECT_EQ(api.get("getUserInfo", {{"sessionId", session}}).value("success", ""), "2");
  EXPECT_EQ(uploadPortrait({0xFF, 0xD8, 0xFF, 0xD9}), std::optional<bool>(false));
}

}  // namespace
}  // namespace qmv::testsupport
