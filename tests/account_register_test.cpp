// Registration with an SMS code and password recovery in two steps, against the sandbox.
#include "core/common/settings_keys.h"
#include "core/session/auto_login.h"
#include "core/session/find_pwd_step2_view_controller.h"
#include "core/session/find_pwd_view_controller.h"
#include "core/session/qx_register_view_controller.h"
#include "tests/discovery_sandbox_fixture.h"

namespace qmv::testsupport {
namespace {

using namespace std::chrono_literals;
using sandbox::kDemoMemberNumber;
using sandbox::kDemoPhone;
using sandbox::kDemoSmsCode;

constexpr const char* kNewPhone = "13912345678";

class AccountRegisterTest : public DiscoverySandboxTest {
 protected:
  // The login screen presented over the main screen, with `screen` pushed onto it.
  void openFromLogin(const char* screen) {
    navigator_->push("MainViewController");
    navigator_->present(BaseViewController::kLoginScreen);
    navigator_->push(screen);
  }

  // Signs in silently with what is stored, as the next start would.
  std::optional<bool> nextStartSignsIn() {
    installClient();
    AutoLogin autoLogin;
    Outcome finished;
    autoLogin.onFinished = finished.callback();
    if (!autoLogin.autoLoginNet()) return std::nullopt;
    return await(finished);
  }
};

TEST_F(AccountRegisterTest, CodeCountsDownThenRegistrationStoresCredentialsAndReturnsToRoot) {
  openFromLogin("QXRegisterViewController");
  QXRegisterViewController screen;
  screen.viewDidLoad();
  Outcome code, registered;
  screen.onCodeFinished = code.callback();
  screen.onFinished = registered.callback();

  screen.phoneText = kNewPhone;
  ASSERT_TRUE(screen.getCodeAction());
  ASSERT_EQ(await(code), std::optional<bool>(true));
  EXPECT_EQ(overlay_->statuses(), std::vector<std::string>{"验证码发送成功"});
  EXPECT_FALSE(screen.codeSessionId().empty());

  // The countdown (its own test holds its steps) ticks each second of the loop's clock.
  EXPECT_FALSE(screen.getCodeAction()) << "the code button refuses while it counts";
  loop_->advance(1s);
  EXPECT_EQ(screen.codeButtonTitle(), "00:59");
  loop_->advance(60s);
  EXPECT_EQ(screen.codeButtonTitle(), "获取验证码");
  EXPECT_TRUE(screen.codeButtonEnabled());

  screen.userNameText = "newmember";
  screen.passwordText = "abc123";
  screen.confirmText = "abc123";
  screen.inviteText = kDemoMemberNumber;
  // A wrong code is the server's refusal: its message, nothing stored, still on screen.
  screen.codeText = "000000";
  ASSERT_TRUE(screen.submitAction());
  ASSERT_EQ(await(registered), std::optional<bool>(false));
  EXPECT_EQ(overlay_->statuses().size(), 2u);
  EXPECT_FALSE(stored(kUserPhoneKey));
  EXPECT_EQ(navigator_->topScreen()->name, "QXRegisterViewController");

  screen.codeText = kDemoSmsCode;
  screen.onFinished = registered.callback();
  ASSERT_TRUE(screen.submitAction());
  ASSERT_EQ(await(registered), std::optional<bool>(true));
  EXPECT_EQ(overlay_->statuses().back(), "注册成功");
  EXPECT_EQ(stored(kUserPhoneKey), kNewPhone);
  EXPECT_EQ(stored(kPasswordKey), "abc123");
  EXPECT_EQ(navigator_->topScreen()->name, "LoginViewController");

  ASSERT_EQ(nextStartSignsIn(), std::optional<bool>(true));
  EXPECT_EQ(GlobalData::sharedInstance().selfInfo()->phone, kNewPhone);
  EXPECT_EQ(GlobalData::sharedInstance().selfInfo()->userName, "newmember");
}

TEST_F(AccountRegisterTest, RecoveryChecksTheCodeThenSetsTheNewPassword) {
  openFromLogin("FindPwdViewController");
  FindPwdViewController step1;
  step1.viewDidLoad();
  Outcome code, checked;
  step1.onCodeFinished = code.callback();
  step1.onFinished = checked.callback();

  FindPwdView& form = step1.view();
  form.phoneText = "1380000000";  // ten digits
  EXPECT_FALSE(form.getVerifyMsg());
  EXPECT_FALSE(form.nextAction());
  form.phoneText = kDemoPhone;
  EXPECT_FALSE(form.nextAction());
  EXPECT_EQ(overlay_->statuses(), (std::vector<std::string>{"手机号码格式错误", "手机号码格式错误", "请输入验证码"}));

  ASSERT_TRUE(form.getVerifyMsg());
  ASSERT_EQ(await(code), std::optional<bool>(true));
  loop_->advance(1s);
  EXPECT_EQ(form.codeButtonTitle(), "00:59");
  EXPECT_FALSE(form.codeButtonEnabled());
  EXPECT_FALSE(form.getVerifyMsg()) << "the code button refuses while it counts";

  form.codeText = "999999";
  ASSERT_TRUE(form.nextAction());
  ASSERT_EQ(await(checked), std::optional<bool>(false));
  EXPECT_EQ(navigator_->topScreen()->name, "FindPwdViewController");

  form.codeText = kDemoSmsCode;
  step1.onFinished = checked.callback();
  ASSERT_TRUE(form.nextAction());
  ASSERT_EQ(await(checked), std::optional<bool>(true));
  const auto top = navigator_->topScreen();
  ASSERT_EQ(top->name, "FindPwdStep2ViewController");
  ASSERT_EQ(top->payload.value("phone", ""), kDemoPhone);

  FindPwdStep2ViewController step2(top->payload.value("phone", ""));
  Outcome changed;
  step2.onFinished = changed.callback();
  FindPwdStep2View& step2Form = step2.view();
  const size_t shownBefore = overlay_->shown().size();
  EXPECT_FALSE(step2Form.submitAction());
  step2Form.passwordText = "新密码123456";
  EXPECT_FALSE(step2Form.submitAction());
  step2Form.passwordText = "newpass9";
  EXPECT_FALSE(step2Form.submitAction());
  const auto statuses = overlay_->statuses();
  EXPECT_EQ(std::vector<std::string>(statuses.begin() + shownBefore, statuses.end()),
            (std::vector<std::string>{"请新输入密码", "密码须为6-16位字母或数字的组合", "两次输入密码不一致"}));
  step2Form.confirmText = "newpass9";
  ASSERT_TRUE(step2Form.submitAction());
  ASSERT_EQ(await(changed), std::optional<bool>(true));
  EXPECT_EQ(overlay_->statuses().back(), "密码修改成功");
  EXPECT_EQ(stored(kUserPhoneKey), kDemoPhone);
  EXPECT_EQ(stored(kPasswordKey), "newpass9");
  EXPECT_EQ(navigator_->topScreen()->name, "LoginViewController");

  ASSERT_EQ(nextStartSignsIn(), std::optional<bool>(true));
}

}  // namespace
}  // namespace qmv::testsupport
