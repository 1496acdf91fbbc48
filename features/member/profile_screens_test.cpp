// The profile, phone change and invitation screens against a scripted server: each
// refusal with its message and nothing sent, what a change sends and how the member record
// and the settings take the answer, a refused answer changing nothing; the invitation link
// and the text its QR code carries.
#include <gtest/gtest.h>

#include "core/common/settings_keys.h"
#include "core/request/net_api_test_support.h"
#include "features/member/change_phone_view_controller.h"
#include "features/member/invite_view_controller.h"
#include "features/member/profile_view_controller.h"

namespace qmv {
namespace {

class ProfileScreensTest : public testsupport::ApiServerTest {
 protected:
  void SetUp() override {
    ApiServerTest::SetUp();
    me_ = std::make_shared<UserInfoModel>(
        Json{{"sessionId", "S1"}, {"phone", "13800000000"}, {"nickName", "老王"}, {"sex", "1"}, {"num", "100001"}});
    GlobalData::sharedInstance().setSelfInfo(me_);
    settings_->setString("13800000000", kUserPhoneKey);
    navigator_->setRoot("ZDMyViewController");
  }
  // Runs `start` and waits for `slot`: nullopt when nothing was sent.
  template <class Start>
  std::optional<bool> await(std::function<void(bool)>& slot, Start start) {
    std::optional<bool> result;
    slot = [&](bool r) { result = r; };
    if (!start()) return std::nullopt;
    loop_->runUntil([&] { return result.has_value(); }, std::chrono::seconds(10));
    return result;
  }
  std::optional<bool> change(ProfileViewController& screen, const std::string& key, const std::string& value) {
    return await(screen.onFinished, [&] { return screen.change(key, value); });
  }
  std::shared_ptr<UserInfoModel> me_;
};

TEST_F(ProfileScreensTest, ProfileValuesOutsideTheirRulesAreRefusedAndNothingIsSent) {
  ProfileViewController screen;
  const struct {
    const char *key, *value, *message;
  } cases[] = {
      {"phone", "13900000000", "不支持修改该资料"},
      {"balance", "99999", "不支持修改该资料"},
      {"nickName", "", "昵称须为1-20个字"},
      {"nickName", "一二三四五六七八九十一二三四五六七八九十一", "昵称须为1-20个字"},
      {"nickName", "a\x01z", "资料包含无法识别的字符"},
      {"name", "\xc2\x85name", "资料包含无法识别的字符"},
      {"address", "\xe4\xb8", "资料包含无法识别的字符"},
      {"sex", "0", "请选择性别"},
      {"birthday", "2017-02-29", "请输入正确的生日"},
      {"birthday", "2017-07-15", "请输入正确的生日"},
      {"birthday", "1899-12-31", "请输入正确的生日"},
      {"birthday", "2017-7-1", "请输入正确的生日"},
      {"email", "me@host", "请输入正确的邮箱"},
      {"address_phone", "12345678901", "请输入正确的手机号"},
      {"postcode", "10008a", "请输入正确的邮编"},
      {"address_name", "一二三四五六七八九十一二三四五六七八九十x", "收货人须为1-20个字"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(change(screen, c.key, c.value), std::nullopt) << c.key << " " << c.value;
    EXPECT_EQ(overlay_->statuses().back(), c.message) << c.key << " " << c.value;
  }
  EXPECT_EQ(std::string(ProfileViewController::refusal("address", std::string(100, 'x')) ?: ""), "");
  EXPECT_EQ(std::string(ProfileViewController::refusal("birthday", "2017-07-14") ?: ""), "") << "today";
  EXPECT_EQ(me_->nickName, "老王");
  EXPECT_TRUE(received().empty());
}

TEST_F(ProfileScreensTest, AChangeSendsItsKeyAndUpdatesTheRecordInPlace) {
  ProfileViewController screen;
  answer("postChangeSelf", R"({"success":"0","message":"","data":"ok"})");
  EXPECT_EQ(change(screen, "nickName", "一二三四五六七八九十一二三四五六七八九十"), true);
  EXPECT_EQ(last().endpoint, "postChangeSelf");
  EXPECT_EQ(last().arguments,
            (testsupport::Arguments{{"sessionId", "S1"}, {"nickName", "一二三四五六七八九十一二三四五六七八九十"}}));
  EXPECT_EQ(me_->nickName, "一二三四五六七八九十一二三四五六七八九十") << "without a record, the value sent";
  EXPECT_EQ(overlay_->statuses().back(), "修改成功");

  // The record in the answer is merged: empty fields keep what the member had.
  answer("postChangeSelf", R"({"success":"0","message":"","data":{"sex":"2","nickName":"","email":"a@b.cn"}})");
  EXPECT_EQ(change(screen, "sex", "2"), true);
  EXPECT_EQ(screen.displayValue("sex"), "女");
  EXPECT_EQ(me_->email, "a@b.cn");
  EXPECT_EQ(me_->phone, "13800000000");
  EXPECT_EQ(me_->nickName, "一二三四五六七八九十一二三四五六七八九十");

  answer("postChangeSelf", R"({"success":"1","message":"邮箱格式不正确"})");
  EXPECT_EQ(change(screen, "email", "x@y.com"), false);
  EXPECT_EQ(overlay_->statuses().back(), "邮箱格式不正确");
  EXPECT_EQ(me_->email, "a@b.cn");
}

TEST_F(ProfileScreensTest, PhoneChangeNeedsACodeForTheNewNumberAndStoresItOnlyWhenChanged) {
  {
    ChangePhoneViewController screen;
    const auto submit = [&](const char* phone, const char* code) {
      screen.phoneText = phone;
      screen.codeText = code;
      return await(screen.onFinished, [&] { return screen.submitAction(); });
    };
    EXPECT_EQ(submit("1390000000", "123456"), std::nullopt);
    EXPECT_EQ(overlay_->statuses().back(), "请输入正确的手机号");
    EXPECT_EQ(submit("13800000000", "123456"), std::nullopt);
    EXPECT_EQ(overlay_->statuses().back(), "新手机号与原手机号相同");
    EXPECT_EQ(submit("13900000000", ""), std::nullopt);
    EXPECT_EQ(overlay_->statuses().back(), "请输入验证码");
    EXPECT_EQ(submit("13900000000", "123456"), std::nullopt);
    EXPECT_EQ(overlay_->statuses().back(), "请先获取验证码");
    screen.phoneText = "13800000000";
    EXPECT_FALSE(screen.getCodeAction());
    EXPECT_TRUE(received().empty());

    answer("getCheckCode4ChgMobile", R"({"success":"0","message":"","data":{"sessionId":"C1"}})");
    screen.phoneText = "13900000000";
    EXPECT_EQ(await(screen.onCodeFinished, [&] { return screen.getCodeAction(); }), true);
    EXPECT_EQ(last().endpoint, "getCheckCode4ChgMobile");
    EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"mobile", "13900000000"}}));
    EXPECT_TRUE(screen.countdown().isCounting());
    EXPECT_FALSE(screen.getCodeAction()) << "the countdown runs";
  }
  navigator_->push("ChangePhoneViewController");
  // A later screen (or start) still has the code's session; a wrong code changes nothing.
  ChangePhoneViewController screen;
  screen.phoneText = "13900000000";
  screen.codeText = "000000";
  answer("getCheckCode", R"({"success":"1","message":"验证码错误或已过期"})");
  const std::size_t before = received().size();
  EXPECT_EQ(await(screen.onFinished, [&] { return screen.submitAction(); }), false);
  EXPECT_EQ(received().size(), before + 1) << "no change after a refused check";
  EXPECT_EQ(settings_->stringForKey(kUserPhoneKey), "13800000000");

  answer("getCheckCode", R"({"success":"0","message":"","data":{}})");
  answer("postChangeSelf", R"({"success":"1","message":"该手机号已注册"})");
  EXPECT_EQ(await(screen.onFinished, [&] { return screen.submitAction(); }), false);
  EXPECT_EQ(me_->phone, "13800000000");

  answer("postChangeSelf", R"({"success":"0","message":"","data":{}})");
  screen.codeText = "123456";
  EXPECT_EQ(await(screen.onFinished, [&] { return screen.submitAction(); }), true);
  const auto sent = received();
  ASSERT_GE(sent.size(), 2u);
  EXPECT_EQ(sent[sent.size() - 2].endpoint, "getCheckCode");
  EXPECT_EQ(sent[sent.size() - 2].arguments,
            (testsupport::Arguments{{"mobile", "13900000000"}, {"code", "123456"}, {"sessionId", "C1"}}));
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"phone", "13900000000"}}));
  EXPECT_EQ(settings_->stringForKey(kUserPhoneKey), "13900000000");
  EXPECT_EQ(me_->phone, "13900000000");
  EXPECT_TRUE(settings_->objectForKey(kChangePhoneCodeKey).is_null());
  EXPECT_EQ(overlay_->statuses().back(), "手机号修改成功");
  EXPECT_EQ(navigator_->topScreen()->name, "ZDMyViewController");
}

class RecordingQr : public QrGenerator {
 public:
  std::optional<QrMatrix> encode(const std::string& text) const override {
    encoded = text;
    return QrMatrix{1, {1}};
  }
  mutable std::string encoded;
};

TEST_F(ProfileScreensTest, TheInvitationLinkEndsWithTheCodeItsQrCodeCarries) {
  InviteViewController screen;
  const auto qr = std::make_shared<RecordingQr>();
  Env::current().qrGenerator = qr;
  NetworkConfig::sharedInstance().setWebHost("http://h.example//");
  EXPECT_EQ(screen.inviteCode(), "100001");
  EXPECT_EQ(screen.inviteLink(), "http://h.example/static/register/index.html?inviteID=100001");
  ASSERT_TRUE(screen.qrCode().has_value());
  EXPECT_EQ(qr->encoded, screen.inviteLink());

  NetworkConfig::sharedInstance().setWebHost("");
  EXPECT_EQ(screen.inviteLink(), "");
  EXPECT_FALSE(screen.qrCode().has_value());
  NetworkConfig::sharedInstance().setWebHost("http://h.example");
  GlobalData::sharedInstance().setSelfInfo(nullptr);
  EXPECT_EQ(screen.inviteLink(), "");
  EXPECT_FALSE(screen.hasData());
  NetworkConfig::sharedInstance().setWebHost("");
}

}  // namespace
}  // namespace qmv
