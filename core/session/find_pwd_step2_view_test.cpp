#include "core/session/find_pwd_step2_view.h"

#include <gtest/gtest.h>

#include "platform/env.h"
#include "platform/testing/recording_status_overlay.h"

namespace qmv {
namespace {

TEST(FindPwdStep2ViewTest, ChecksInOrderAndHandsOnOnlyAValidPassword) {
  auto overlay = std::make_shared<RecordingStatusOverlay>();
  Env env;
  env.overlay = overlay;
  ScopedEnv scoped(std::move(env));

  FindPwdStep2View view;
  std::vector<std::string> submitted;
  view.onSubmit = [&](const std::string& password) { submitted.push_back(password); };
  view.confirmText = "zzzzzz";
  EXPECT_FALSE(view.submitAction());
  view.passwordText = "12345";
  EXPECT_FALSE(view.submitAction());
  view.passwordText = "密码123456";
  EXPECT_FALSE(view.submitAction());
  view.passwordText = "123456";
  EXPECT_FALSE(view.submitAction());
  EXPECT_EQ(overlay->statuses(), (std::vector<std::string>{"请新输入密码", "密码须为6-16位字母或数字的组合",
                                                           "密码须为6-16位字母或数字的组合", "两次输入密码不一致"}));
  EXPECT_TRUE(submitted.empty());

  view.passwordText = view.confirmText = "ABCdef0123456789";  // sixteen
  EXPECT_TRUE(view.submitAction());
  EXPECT_EQ(submitted, std::vector<std::string>{"ABCdef0123456789"});
  EXPECT_EQ(overlay->statuses().size(), 4u);
}

}  // namespace
}  // namespace qmv
