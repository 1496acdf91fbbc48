#include "core/session/qx_register_view_controller.h"

#include <gtest/gtest.h>

#include "core/request/network_agent.h"
#include "platform/env.h"
#include "platform/linux/image_file_camera.h"
#include "platform/testing/recording_status_overlay.h"
#include "platform/testing/scripted_alerts.h"
#include "platform/testing/test_env.h"

namespace qmv {
namespace {

class QXRegisterViewControllerTest : public ::testing::Test {
 protected:
  QXRegisterViewControllerTest() {
    Env env;
    env.overlay = overlay_;
    env.alerts = alerts_;
    scoped_.emplace(completedForTesting(std::move(env)));
  }

  std::shared_ptr<RecordingStatusOverlay> overlay_ = std::make_shared<RecordingStatusOverlay>();
  std::shared_ptr<ScriptedAlerts> alerts_ = std::make_shared<ScriptedAlerts>();
  std::optional<ScopedEnv> scoped_;
};

TEST_F(QXRegisterViewControllerTest, SubmitRefusesInTheFixedOrderAndSendsNothing) {
  QXRegisterViewController screen;
  // Every field wrong at once: each fix reveals the next check in line.
  screen.phoneText = "12812345678";  // second digit must be 3-9
  screen.passwordText = "";
  screen.confirmText = "other1";
  const auto expectRefusal = [&](const std::string& message) {
    const size_t before = overlay_->shown().size();
    EXPECT_FALSE(screen.submitAction()) << message;
    ASSERT_EQ(overlay_->shown().size(), before + 1) << message;
    EXPECT_EQ(overlay_->shown().back(), std::make_pair(std::string(), message));
  };
  expectRefusal("请输入正确的手机号");
  screen.phoneText = "138123456789";  // twelve digits
  expectRefusal("请输入正确的手机号");
  screen.phoneText = "13812345678";
  expectRefusal("请输入密码");
  screen.passwordText = "abc12";  // five characters
  expectRefusal("密码须为6-16位字母或数字的组合");
  screen.passwordText = "abc12345678901234";  // seventeen
  expectRefusal("密码须为6-16位字母或数字的组合");
  screen.passwordText = "abc 123";
  expectRefusal("密码须为6-16位字母或数字的组合");
  screen.passwordText = "Abc123";
  expectRefusal("两次输入密码不一致");
  screen.confirmText = "Abc123";
  expectRefusal("请输入验证码");
  EXPECT_EQ(NetworkAgent::sharedInstance().requestCount(), 0u);

  // The code button checks the phone alone.
  screen.phoneText = "1381234567";
  EXPECT_FALSE(screen.getCodeAction());
  EXPECT_EQ(overlay_->statuses().back(), "请输入正确的手机号");
  EXPECT_EQ(NetworkAgent::sharedInstance().requestCount(), 0u);
}

TEST_F(QXRegisterViewControllerTest, ScanWithoutCameraAlertsAndScannedTextIsSearchedLowerCased) {
  QXRegisterViewController screen;
  screen.QRCodeAction();  // no camera port at all
  Env::current().camera = std::make_shared<ImageFileCamera>("");
  screen.QRCodeAction();  // a camera that cannot be used
  ASSERT_EQ(alerts_->shown().size(), 2u);
  for (const AlertSpec& alert : alerts_->shown()) {
    EXPECT_EQ(alert.title, "您的设备无法拍照，请至设置中打开相机");
    EXPECT_EQ(alert.buttons, std::vector<std::string>{"知道了"});
    EXPECT_TRUE(alert.textFields.empty());
  }
  EXPECT_TRUE(overlay_->shown().empty());
  EXPECT_TRUE(screen.inviteText.empty());

  screen.didFinishScanning(std::string("QMV://REGISTER?InviteId=Ab12x"));
  EXPECT_EQ(screen.inviteText, "Ab12x") << "found whatever its case, kept as written";
  screen.didFinishScanning(std::string("qmv://register?inviteid=100001"));
  EXPECT_EQ(screen.inviteText, "100001");
  screen.didFinishScanning(std::string("invite=5"));
  screen.didFinishScanning(std::nullopt);  // the scanner read nothing
  EXPECT_EQ(screen.inviteText, "100001");
  EXPECT_EQ(overlay_->statuses(), (std::vector<std::string>{"无效二维码", "无效二维码"}));
}

}  // namespace
}  // namespace qmv
