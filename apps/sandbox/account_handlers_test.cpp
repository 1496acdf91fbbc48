#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

TEST_F(SandboxTest, LoginAnswersTheMemberRecordOrRefusesWrongPasswords) {
  const Json reply = api_->get("getUserLogin", {{"userName", kDemoPhone}, {"userPassword", md5Hex(kDemoPassword)}});
  ASSERT_EQ(code(reply), "0");
  const Json& member = reply["data"];
  for (const char* key :
       {"sessionId", "phone", "nickName", "sex", "birthday", "email", "inviterID", "balance", "bankCardNum", "imgUrl",
        "address", "address_name", "address_phone", "postcode", "nowExp", "name", "num", "time", "userName"}) {
    EXPECT_TRUE(member.contains(key) && member[key].is_string()) << key;
  }
  EXPECT_EQ(member["phone"], kDemoPhone);
  EXPECT_EQ(member["num"], kDemoMemberNumber);
  EXPECT_EQ(member["balance"], std::to_string(kDemoBalanceFen));
  EXPECT_EQ(member["sessionId"].get<std::string>().size(), 32u);

  for (const Args& bad : std::vector<Args>{{{"userName", kDemoPhone}, {"userPassword", md5Hex("wrong")}},
                                           {{"userName", "13999999999"}, {"userPassword", md5Hex(kDemoPassword)}},
                                           {{"userName", kDemoPhone}, {"userPassword", kDemoPassword}},
                                           {}}) {
    const Json refused = api_->get("getUserLogin", bad);
    EXPECT_EQ(code(refused), "1");
    EXPECT_EQ(refused["message"], "用户名或密码错误");
    EXPECT_TRUE(refused["data"].is_null());
  }
}

TEST_F(SandboxTest, RegistrationNeedsTheCodeOfItsCodeSessionAndLinksTheInviter) {
  const std::string phone = "13912345678";
  EXPECT_EQ(api_->get("getMobileCode", {{"mobile", "12912345678"}})["message"], "请输入正确的手机号");
  const Json codeReply = api_->get("getMobileCode", {{"mobile", phone}});
  ASSERT_EQ(code(codeReply), "0");
  const std::string codeSession = codeReply["data"]["sessionId"];
  ASSERT_FALSE(codeSession.empty());
  Args form = {{"password", md5Hex("abc123")},  {"phone", phone},   {"userName", "新会员"},
               {"inviteId", kDemoMemberNumber}, {"code", "654321"}, {"sessionId", codeSession}};
  EXPECT_EQ(api_->post("postUserRegisterWeb", form)["message"], "验证码错误或已过期");
  form["code"] = kDemoSmsCode;
  form["inviteId"] = "99999";
  EXPECT_EQ(api_->post("postUserRegisterWeb", form)["message"], "邀请码无效");
  form["inviteId"] = kDemoMemberNumber;
  form["sessionId"] = "some-other-session";
  EXPECT_EQ(code(api_->post("postUserRegisterWeb", form)), "1");
  form["sessionId"] = codeSession;
  ASSERT_EQ(code(api_->post("postUserRegisterWeb", form)), "0");
  // The code is spent, and the phone is taken now.
  EXPECT_EQ(code(api_->post("postUserRegisterWeb", form)), "1");
  const std::string second = api_->get("getMobileCode", {{"mobile", phone}})["data"]["sessionId"];
  form["sessionId"] = second;
  EXPECT_EQ(api_->post("postUserRegisterWeb", form)["message"], "该手机号已注册");

  const std::string session = api_->login(phone, "abc123");
  ASSERT_FALSE(session.empty());
  const Json info = api_->get("getUserInfo", {{"sessionId", session}})["data"];
  EXPECT_EQ(info["inviterId"], kDemoMemberNumber);
  EXPECT_EQ(info["balance"], "0");
  // The inviter sees the new member among his direct contacts; the phone works as a code too.
  const Json contacts = api_->get("getMyContacts", {{"sessionId", api_->login()}})["data"];
  EXPECT_EQ(contacts["oneContact"], "4");
  const std::string third = "13912345679";
  const std::string thirdSession = api_->get("getMobileCode", {{"mobile", third}})["data"]["sessionId"];
  ASSERT_EQ(code(api_->post("postUserRegisterWeb", {{"password", md5Hex("abc123")},
                                                    {"phone", third},
                                                    {"inviteId", phone},
                                                    {"code", kDemoSmsCode},
                                                    {"sessionId", thirdSession}})),
            "0");
  EXPECT_EQ(api_->get("getMyContacts", {{"sessionId", api_->login()}})["data"]["twoContact"], "4");
}

TEST(SandboxCodes, OutsideDemoModeTheCodeIsNotTheDemoOne) {
  const auto home = freshHome();
  SandboxServer server(SandboxOptions{home, 0, "127.0.0.1", false});
  ASSERT_EQ(server.start(), "");
  ApiClient api(server.port());
  int accepted = 0;
  for (int i = 0; i < 3; ++i) {
    const std::string session = api.get("getMobileCode", {{"mobile", "13912340000"}})["data"]["sessionId"];
    const Json check =
        api.get("getCheckCode", {{"mobile", "13912340000"}, {"code", kDemoSmsCode}, {"sessionId", session}});
    accepted += check.value("success", "") == "0" ? 1 : 0;
  }
  EXPECT_LT(accepted, 3);
  server.stop();
  std::filesystem::remove_all(home);
}

TEST_F(SandboxTest, PasswordRecoveryNeedsAVerifiedCodeAndChangesTheLogin) {
  const std::string fresh = md5Hex("newpass1");
  EXPECT_EQ(api_->post("postFindPassword", {{"phone", kDemoPhone}, {"newPassword", fresh}})["message"],
            "请先验证手机号");
  const std::string codeSession = api_->get("getMobileCode", {{"mobile", kDemoPhone}})["data"]["sessionId"];
  EXPECT_EQ(code(api_->get("getCheckCode", {{"mobile", kDemoPhone}, {"code", "000000"}, {"sessionId", codeSession}})),
            "1");
  EXPECT_EQ(
      code(api_->get("getCheckCode", {{"mobile", "13800000001"}, {"code", kDemoSmsCode}, {"sessionId", codeSession}})),
      "1");
  ASSERT_EQ(
      code(api_->get("getCheckCode", {{"mobile", kDemoPhone}, {"code", kDemoSmsCode}, {"sessionId", codeSession}})),
      "0");
  EXPECT_EQ(api_->post("postFindPassword", {{"phone", "13999999999"}, {"newPassword", fresh}})["message"],
            "该手机号未注册");
  ASSERT_EQ(code(api_->post("postFindPassword", {{"phone", kDemoPhone}, {"newPassword", fresh}})), "0");
  EXPECT_EQ(api_->login(), "");
  EXPECT_FALSE(api_->login(kDemoPhone, "newpass1").empty());
  // One verification allows one reset.
  EXPECT_EQ(code(api_->post("postFindPassword", {{"phone", kDemoPhone}, {"newPassword", md5Hex(kDemoPassword)}})), "1");
}

TEST_F(SandboxTest, ProfileChangesPasswordChangeAndPortrait) {
  const std::string session = api_->login();
  EXPECT_EQ(api_->post("postChangePassword", {{"sessionId", session},
                                              {"oldPassword", md5Hex("nope")},
                                              {"newPassword", md5Hex("second2")}})["message"],
            "原密码错误");
  ASSERT_EQ(code(api_->post(
                "postChangePassword",
                {{"sessionId", session}, {"oldPassword", md5Hex(kDemoPassword)}, {"newPassword", md5Hex("second2")}})),
            "0");
  EXPECT_FALSE(api_->login(kDemoPhone, "second2").empty());

  EXPECT_EQ(code(api_->post("postChangeSelf", {{"sessionId", session}, {"unknownKey", "x"}})), "1");
  const Json changed = api_->post("postChangeSelf", {{"sessionId", session}, {"nickName", "小明"}, {"sex", "2"}});
  ASSERT_EQ(code(changed), "0");
  EXPECT_EQ(changed["data"]["nickName"], "小明");
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", session}})["data"]["sex"], "2");

  httplib::MultipartFormDataItems items = {{"sessionId", session, "", ""},
                                           {"file", std::string("\x89PNG\r\n\x1a\n\0rest", 13), "me.png", "image/png"}};
  auto res = api_->raw().Post("/qmv/app/v3/postPortrait", items);
  ASSERT_TRUE(res);
  const Json uploaded = parseJson(res->body);
  ASSERT_EQ(code(uploaded), "0");
  const std::string url = uploaded["data"]["imgUrl"];
  auto image = api_->raw().Get(url.substr(server_->rootUrl().size()).c_str());
  ASSERT_TRUE(image);
  EXPECT_EQ(image->body, std::string("\x89PNG\r\n\x1a\n\0rest", 13));
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", session}})["data"]["imgUrl"], url);
  httplib::MultipartFormDataItems empty = {{"sessionId", session, "", ""}};
  EXPECT_EQ(code(parseJson(api_->raw().Post("/qmv/app/v3/postPortrait", empty)->body)), "1");
}

TEST_F(SandboxTest, MessagesAndFeedback) {
  const std::string session = api_->login();
  const Json messages = api_->get("getMyMessage", {{"sessionId", session}, {"page", "1"}})["data"];
  ASSERT_EQ(messages["dataList"].size(), 3u);
  EXPECT_TRUE(messages["dataList"][0].contains("contact"));
  EXPECT_EQ(api_->get("getMyReadMessage", {{"sessionId", session}})["data"]["count"], "2");
  const Json read = api_->get("getMyMessage", {{"sessionId", session}})["data"]["dataList"];
  for (const Json& message : read) {
    EXPECT_EQ(message["isRead"], "1");
  }
  EXPECT_EQ(api_->post("postFeedback", {{"sessionId", session}, {"type", "0"}})["message"], "请输入反馈内容");
  EXPECT_EQ(code(api_->post("postFeedback",
                            {{"sessionId", session}, {"concent", "很好用"}, {"contact", "qq"}, {"type", "0"}})),
            "0");
}

}  // namespace
}  // namespace qmv::sandbox::testing
