// The password change and member level screens against a scripted server: the change's
// checks in their order with nothing sent, what a change sends and stores, a refused
// change storing nothing, a store that did not take the new password; the level lines of
// a regular and of a top level, without a member, and the level page.
#include <gtest/gtest.h>

#include "core/common/string_util.h"
#include "core/request/net_api_test_support.h"
#include "features/member/change_password_view_controller.h"
#include "features/member/member_level_view_controller.h"
#include "platform/testing/forwarding_settings_store.h"

namespace qmv {
namespace {

class AccountScreensTest : public testsupport::ApiServerTest {
 protected:
  void SetUp() override {
    ApiServerTest::SetUp();
    logIn("S1");
    settings_->setString("old123", "password");
    navigator_->setRoot("ZDMyViewController");
    navigator_->push("ChangePasswordViewController");
  }
  // Fills the fields, submits and waits for the change's end: nullopt when nothing was sent.
  std::optional<bool> change(ChangePasswordViewController& screen, const char* old, const char* fresh,
                             const char* confirm) {
    screen.oldPasswordText = old;
    screen.newPasswordText = fresh;
    screen.confirmText = confirm;
    std::optional<bool> changed;
    screen.onFinished = [&](bool c) { changed = c; };
    if (!screen.submitAction()) return std::nullopt;
    loop_->runUntil([&] { return changed.has_value(); }, std::chrono::seconds(10));
    return changed;
  }
};

TEST_F(AccountScreensTest, PasswordChecksRunInOrderAndSendNothing) {
  ChangePasswordViewController screen;
  const struct {
    const char *old, *fresh, *confirm, *message;
  } cases[] = {
      {"", "", "x", "请输入原密码"},
      {"old123", "", "", "请新输入密码"},
      {"old123", "abc12", "abc12", "密码须为6-16位字母或数字的组合"},
      {"old123", "abc12345678901234", "abc12345678901234", "密码须为6-16位字母或数字的组合"},
      {"old123", "新密码abc123", "新密码abc123", "密码须为6-16位字母或数字的组合"},
      {"old123", "abc123", "abc124", "两次输入密码不一致"},
      {"old123", "old123", "old123", "新密码不能与原密码相同"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(change(screen, c.old, c.fresh, c.confirm), std::nullopt) << c.message;
    EXPECT_EQ(overlay_->statuses().back(), c.message);
  }
  EXPECT_TRUE(received().empty());
}

TEST_F(AccountScreensTest, ChangeSendsHashesAndStoresTheTypedPasswordOnlyWhenTaken) {
  ChangePasswordViewController screen;
  answer("postChangePassword", R"({"success":"1","message":"原密码错误"})");
  EXPECT_EQ(change(screen, "wrong1", "New456", "New456"), false);
  EXPECT_EQ(overlay_->statuses().back(), "原密码错误");
  EXPECT_EQ(settings_->stringForKey("password"), "old123");
  EXPECT_EQ(topName(), "ChangePasswordViewController");

  answer("postChangePassword", R"({"success":"0","message":"","data":{}})");
  const int flushes = settings_->synchronizeCount();
  EXPECT_EQ(change(screen, "old123", "New456", "New456"), true);
  EXPECT_EQ(last().method, "POST");
  EXPECT_EQ(last().endpoint, "postChangePassword");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"},
                                                      {"newPassword", "d0170cc13a3e60e08fe788050216f70c"},
                                                      {"oldPassword", StringUtil::getmd5WithString("old123")}}));
  EXPECT_EQ(settings_->stringForKey("password"), "New456") << "as typed, not hashed";
  EXPECT_GT(settings_->synchronizeCount(), flushes);
  EXPECT_EQ(overlay_->statuses().back(), "密码修改成功");
  EXPECT_EQ(topName(), "ZDMyViewController") << "the screen is popped";
}

TEST_F(AccountScreensTest, ANewPasswordTheStoreDidNotTakeIsReported) {
  Env::current().settings = std::make_shared<testsupport::FullDiskSettingsStore>(settings_);
  ChangePasswordViewController screen;
  EXPECT_EQ(change(screen, "old123", "New456", "New456"), false);
  EXPECT_EQ(overlay_->statuses().back(), "账号信息保存失败,请检查存储空间");
  EXPECT_EQ(settings_->stringForKey("password"), "old123");
}

TEST_F(AccountScreensTest, LevelShowsWhatTheRecordHoldsAndOpensTheLevelPage) {
  MemberLevelViewController screen;
  const auto me = std::make_shared<UserInfoModel>(Json{{"sessionId", "S1"}, {"nowExp", "1250"}});
  GlobalData::sharedInstance().setSelfInfo(me);
  EXPECT_EQ(screen.levelText(), "LV4");
  EXPECT_EQ(screen.experienceText(), "1250/1600");
  EXPECT_EQ(screen.remainingText(), "距离下一等级还需要350经验");
  EXPECT_DOUBLE_EQ(screen.progress(), 450 / 800.0);

  me->setWithDict(Json{{"nowExp", "30000"}});
  EXPECT_EQ(screen.levelText(), "LV9");
  EXPECT_EQ(screen.experienceText(), "30000/1600") << "the top levels keep the earlier total";
  EXPECT_EQ(screen.remainingText(), "距离下一等级还需要-28400经验");
  EXPECT_DOUBLE_EQ(screen.progress(), 450 / 800.0);

  GlobalData::sharedInstance().setSelfInfo(nullptr);
  EXPECT_FALSE(screen.hasMember());
  EXPECT_EQ(screen.levelText() + screen.experienceText() + screen.remainingText(), "");
  EXPECT_EQ(screen.progress(), 0.0);

  screen.openLevelPage();
  ASSERT_TRUE(navigator_->topScreen().has_value());
  EXPECT_EQ(topName(), "QXH5ViewController");
  EXPECT_EQ(navigator_->topScreen()->payload, (Json{{"h5Type", 4}}));
  EXPECT_TRUE(received().empty()) << "the screen itself sends nothing";
}

}  // namespace
}  // namespace qmv
