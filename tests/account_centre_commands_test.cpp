// The password and level commands as separate starts of the application against the
// embedded sandbox: a changed password is the one the next start signs in with (a
// refused change keeps the old one), and the level screen shows the demo member's level.
#include <gtest/gtest.h>

#include "core/common/json.h"
#include "platform/testing/temp_home.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

class AccountCentreCommandsTest : public testsupport::DemoMemberCliTest {};

TEST_F(AccountCentreCommandsTest, AChangedPasswordIsTheOneTheNextStartSignsInWith) {
  // The form's checks are ChangePasswordViewController's own test's; here the server's refusal.
  const auto wrongOld = run({"password", "wrong12", "New456", "New456"});
  EXPECT_EQ(wrongOld.status, 1);
  EXPECT_TRUE(wrongOld.has("原密码错误\n")) << wrongOld.out << wrongOld.err;
  EXPECT_EQ(run({"me"}).status, 0) << "a refused change keeps the stored password";

  const auto changed = run({"password", "qmv123", "New456", "New456"});
  ASSERT_EQ(changed.status, 0) << changed.out << changed.err;
  EXPECT_TRUE(changed.has("密码修改成功\n")) << changed.out;
  const auto me = run({"me"});
  EXPECT_EQ(me.status, 0) << me.out << me.err;
  EXPECT_TRUE(me.has("13800000000")) << me.out;

  EXPECT_EQ(run({"login", "13800000000", "qmv123"}).status, 1) << "the old password no longer signs in";
  EXPECT_EQ(run({"me"}).status, 0) << "a failed login keeps the stored new password";

  TempHome signedOut;
  EXPECT_EQ(testsupport::runQmv(signedOut.home(), {"password", "qmv123", "New456", "New456"}).status, 1);
  EXPECT_EQ(run({"password", "qmv123", "New456"}).status, 2);
}

TEST_F(AccountCentreCommandsTest, LevelShowsTheMembersLevelAndWhatTheNextNeeds) {
  const auto level = run({"level"});
  ASSERT_EQ(level.status, 0) << level.out << level.err;
  EXPECT_TRUE(level.has("会员等级\nLV4  1250/1600\n[###########---------] 56%\n距离下一等级还需要350经验\n"))
      << level.out;

  TempHome signedOut;
  EXPECT_EQ(testsupport::runQmv(signedOut.home(), {"level"}).status, 1);
}

}  // namespace
}  // namespace qmv
