// The profile, phone and invite commands as separate starts of the application against the
// embedded sandbox: a changed field is what the next start shows, a phone change is the
// number the next start signs in with, and an invitation's QR code, read by the
// registration, makes the demo member the new member's inviter.
#include <gtest/gtest.h>

#include <filesystem>

#include "core/common/json.h"
#include "platform/testing/temp_home.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

class ProfileCommandsTest : public testsupport::DemoMemberCliTest {};

TEST_F(ProfileCommandsTest, ProfilePrintsTheFieldsAndSetChangesOne) {
  const auto shown = run({"profile"});
  ASSERT_EQ(shown.status, 0) << shown.out << shown.err;
  EXPECT_TRUE(shown.has("个人资料\n昵称 (nickName): 演示会员\n")) << shown.out;
  EXPECT_TRUE(shown.has("性别 (sex): 男\n生日 (birthday): 1990-01-01\n")) << shown.out;
  EXPECT_TRUE(shown.has("邮编 (postcode): 276000\n")) << shown.out;

  const auto set = run({"profile", "set", "nickName", "小王"});
  ASSERT_EQ(set.status, 0) << set.out << set.err;
  EXPECT_TRUE(set.has("修改成功\n")) << set.out;
  EXPECT_TRUE(set.has("昵称 (nickName): 小王\n")) << set.out;
  const auto json = run({"--json", "profile"});
  ASSERT_EQ(json.status, 0);
  EXPECT_EQ(parseJson(json.out)["data"]["profile"]["nickName"], "小王") << "the next start reads it from the server";

  EXPECT_EQ(run({"profile", "set", "nickName"}).status, 2);
  TempHome signedOut;
  EXPECT_EQ(testsupport::runQmv(signedOut.home(), {"profile"}).status, 1);
}

TEST_F(ProfileCommandsTest, APhoneChangeIsTheNumberTheNextStartSignsInWith) {
  const auto asked = run({"phone", "13912345678"});
  ASSERT_EQ(asked.status, 0) << asked.out << asked.err;
  EXPECT_TRUE(asked.has("验证码发送成功\n")) << asked.out;
  EXPECT_TRUE(asked.has("--code CODE")) << asked.out;
  const auto wrong = run({"phone", "13912345678", "--code", "000000"});
  EXPECT_EQ(wrong.status, 1);
  EXPECT_TRUE(wrong.has("验证码错误或已过期\n")) << wrong.out;
  EXPECT_TRUE(run({"me"}).has("手机: 13800000000\n"));

  const auto changed = run({"phone", "13912345678", "--code", "123456"});
  ASSERT_EQ(changed.status, 0) << changed.out << changed.err;
  EXPECT_TRUE(changed.has("手机号修改成功\n")) << changed.out;
  const auto me = run({"me"});
  EXPECT_EQ(me.status, 0) << me.out << me.err;
  EXPECT_TRUE(me.has("手机: 13912345678\n")) << me.out;
  EXPECT_EQ(run({"phone", "13912345678", "--code", "123456"}).status, 1) << "the same number again";
}

TEST_F(ProfileCommandsTest, TheInvitationQrCodeFillsTheRegistrationsInviter) {
  const auto plain = run({"invite"});
  ASSERT_EQ(plain.status, 0) << plain.out << plain.err;
  EXPECT_TRUE(plain.has("邀请好友\n邀请码: 100001\n链接: http")) << plain.out;
  EXPECT_TRUE(plain.has("/static/register/index.html?inviteID=100001\n")) << plain.out;

  const auto qr = (home_.home() / "invite.png").string();
  const auto written = run({"invite", "--qr", qr});
  ASSERT_EQ(written.status, 0) << written.out << written.err;
  ASSERT_TRUE(std::filesystem::file_size(qr) > 0);

  TempHome newcomer;
  const auto registered = testsupport::runQmv(
      newcomer.home(), {"register", "--phone", "13912345670", "--name", "newbie02", "--password", "abc123",
                        "--confirm", "abc123", "--invite-qr", qr, "--code", "123456"});
  ASSERT_EQ(registered.status, 0) << registered.out << registered.err;
  const auto me = testsupport::runQmv(newcomer.home(), {"--json", "login", "13912345670", "abc123"});
  ASSERT_EQ(me.status, 0) << me.out << me.err;
  EXPECT_EQ(parseJson(me.out)["data"]["member"]["inviterID"], "100001") << me.out;

  EXPECT_EQ(run({"invite", "--qr", (home_.home() / "no" / "such" / "dir.png").string()}).status, 1);
}

}  // namespace
}  // namespace qmv
