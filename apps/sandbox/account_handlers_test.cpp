#include <optional>

#include "apps/sandbox/sandbox_store.h"
#include "apps/sandbox/sandbox_test_support.h"
#include "platform/codecs/image_codecs.h"

namespace qmv::sandbox::testing {
namespace {

TEST_F(SandboxTest, LoginAnswersTheMemberRecordOrRefusesWrongPasswords) {
  const Json reply = api_->get("getUserLogin", {{"userName", kDemoPhone}, {"userPassword", StringUtil::getmd5WithString(kDemoPassword)}});
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

  for (const Args& bad : std::vector<Args>{{{"userName", kDemoPhone}, {"userPassword", StringUtil::getmd5WithString("wrong")}},
                                           {{"userName", "13999999999"}, {"userPassword", StringUtil::getmd5WithString(kDemoPassword)}},
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
  const Json codeReply = api_->get("getMobileCode", {{"mobile", phone}});
  ASSERT_EQ(code(codeReply), "0");
  const std::string codeSession = codeReply["data"]["sessionId"];
  ASSERT_FALSE(codeSession.empty());
  Args form = {{"password", StringUtil::getmd5WithString("abc123")},  {"phone", phone},   {"userName", "新会员"},
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
  ASSERT_EQ(code(api_->post("postUserRegisterWeb", {{"password", StringUtil::getmd5WithString("abc123")},
                                                    {"phone", third},
                                                    {"inviteId", phone},
                                                    {"code", kDemoSmsCode},
                                                    {"sessionId", thirdSession}})),
            "0");
  EXPECT_EQ(api_->get("getMyContacts", {{"sessionId", api_->login()}})["data"]["twoContact"], "4");
}

TEST_F(SandboxTest, UserNamesAreUniqueAndAPhoneNumberSignsInItsOwnMember) {
  // The refusal message of a registration ("" when it succeeds).
  const auto registerAs = [&](const std::string& phone, const std::optional<std::string>& userName) {
    const std::string session = api_->get("getMobileCode", {{"mobile", phone}})["data"]["sessionId"];
    Args form = {{"password", StringUtil::getmd5WithString("abc123")}, {"phone", phone}, {"code", kDemoSmsCode}, {"sessionId", session}};
    if (userName) form["userName"] = *userName;
    return api_->post("postUserRegisterWeb", form).value("message", "<none>");
  };
  const std::string a = "13912340001", b = "13912340002", c = "13912340004";
  EXPECT_EQ(registerAs(a, b), "用户名格式不正确");  // another's phone is his alone
  ASSERT_EQ(registerAs(a, "小明"), "");
  EXPECT_EQ(registerAs("13912340003", "小明"), "该用户名已被使用");
  EXPECT_EQ(registerAs("13912340003", kDemoPhone), "用户名格式不正确");
  int other = 10;
  for (const std::string& bad : std::vector<std::string>{"../up", ".hidden", "a\nb", "\xff\xfe", std::string(33, 'a')}) {
    EXPECT_EQ(registerAs("139123400" + std::to_string(other++), bad), "用户名格式不正确") << bad;
  }
  // Look-alikes: white space around a name is dropped, and names compare regardless of
  // case and width, so none can pass for a phone number or for another member's name.
  for (const char* lookAlike : {" 13800000001", "13800000001 ", "１３８０００００００１"}) {
    EXPECT_EQ(registerAs("139123400" + std::to_string(other++), lookAlike), "用户名格式不正确") << lookAlike;
  }
  ASSERT_EQ(registerAs("139123400" + std::to_string(other++), "Alice"), "");
  for (const char* lookAlike : {"alice", "ALICE", "  Alice ", "Ａｌｉｃｅ", "小明\u3000"}) {
    EXPECT_EQ(registerAs("139123400" + std::to_string(other++), lookAlike), "该用户名已被使用") << lookAlike;
  }
  EXPECT_EQ(registerAs("139123400" + std::to_string(other++), "Ali\u200bce"), "用户名格式不正确");
  ASSERT_EQ(registerAs(b, std::nullopt), "");
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", api_->login(b, "abc123")}})["data"]["userName"], b);
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", api_->login("小明", "abc123")}})["data"]["phone"], a);

  // A home from before the rule: an older member holds c's number as his name. c still
  // registers and signs in with it.
  auto opened = SandboxStore::open(home_ / "sandbox.db");
  ASSERT_TRUE(opened.ok()) << opened.status().toString();
  auto& db = *opened;
  ASSERT_TRUE(db->transact(true, [&] {
    db->execute("INSERT INTO members(num, phone, user_name, password, nick_name, created) VALUES(?,?,?,?,?,0)",
                {"900001", "13700000009", c, StringUtil::getmd5WithString("other1"), "old"});
    return true;
  }).ok());
  ASSERT_EQ(registerAs(c, std::nullopt), "");
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", api_->login(c, "abc123")}})["data"]["phone"], c);
}

TEST(SandboxCodes, OutsideDemoModeTheCodeIsNotTheDemoOne) {
  const auto home = freshHome();
  SandboxServer server(SandboxOptions{home, 0, "127.0.0.1", false});
  ASSERT_TRUE(server.start().ok());
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

TEST_F(SandboxTest, PasswordResetBelongsToWhoeverVerifiedTheCodeAndEndsEverySession) {
  const std::string fresh = StringUtil::getmd5WithString("newpass1");
  const std::string before = api_->login();
  const auto check = [&](const std::string& phone, const std::string& code, const std::string& session) {
    return api_->raw().Get("/qmv/app/v3/getCheckCode?mobile=" + phone + "&code=" + code + "&sessionId=" + session);
  };
  // Five wrong guesses kill a code, the right one included.
  const std::string guessed = api_->get("getMobileCode", {{"mobile", kDemoPhone}})["data"]["sessionId"];
  for (int i = 0; i < 5; ++i) EXPECT_EQ(code(parseJson(check(kDemoPhone, "00000" + std::to_string(i), guessed)->body)), "1");
  EXPECT_EQ(code(parseJson(check(kDemoPhone, kDemoSmsCode, guessed)->body)), "1");

  const std::string codeSession = api_->get("getMobileCode", {{"mobile", kDemoPhone}})["data"]["sessionId"];
  EXPECT_EQ(code(parseJson(check("13800000001", kDemoSmsCode, codeSession)->body)), "1");
  auto verified = check(kDemoPhone, kDemoSmsCode, codeSession);
  ASSERT_EQ(code(parseJson(verified->body)), "0");
  EXPECT_EQ(verified->get_header_value("Set-Cookie").rfind("codeSessionId=" + codeSession + ";", 0), 0u);

  // Someone else cannot ride on the owner's verification: not without its code session,
  // and not with a code session he verified for his own phone.
  EXPECT_EQ(api_->post("postFindPassword", {{"phone", kDemoPhone}, {"newPassword", fresh}})["message"],
            "请先验证手机号");
  const std::string own = api_->get("getMobileCode", {{"mobile", "13800000001"}})["data"]["sessionId"];
  ASSERT_EQ(code(parseJson(check("13800000001", kDemoSmsCode, own)->body)), "0");
  EXPECT_EQ(code(api_->post("postFindPassword", {{"phone", kDemoPhone}, {"newPassword", fresh}, {"sessionId", own}})),
            "1");

  // The verifier resets, with the cookie its check set.
  auto reset = api_->raw().Post("/qmv/app/v3/postFindPassword", {{"Cookie", "codeSessionId=" + codeSession}},
                                httplib::Params{{"phone", kDemoPhone}, {"newPassword", fresh}});
  ASSERT_EQ(code(parseJson(reset->body)), "0");
  EXPECT_EQ(api_->login(), "");
  EXPECT_FALSE(api_->login(kDemoPhone, "newpass1").empty());
  EXPECT_EQ(code(api_->get("getUserInfo", {{"sessionId", before}})), "2");
  // One verification allows one reset.
  EXPECT_EQ(code(api_->post("postFindPassword",
                            {{"phone", kDemoPhone}, {"newPassword", StringUtil::getmd5WithString(kDemoPassword)}, {"sessionId", codeSession}})),
            "1");
}

TEST_F(SandboxTest, ProfileChangesPasswordChangeAndPortrait) {
  const std::string session = api_->login();
  const std::string elsewhere = api_->login();
  EXPECT_EQ(api_->post("postChangePassword", {{"sessionId", session},
                                              {"oldPassword", StringUtil::getmd5WithString("nope")},
                                              {"newPassword", StringUtil::getmd5WithString("second2")}})["message"],
            "原密码错误");
  ASSERT_EQ(code(api_->post(
                "postChangePassword",
                {{"sessionId", session}, {"oldPassword", StringUtil::getmd5WithString(kDemoPassword)}, {"newPassword", StringUtil::getmd5WithString("second2")}})),
            "0");
  EXPECT_FALSE(api_->login(kDemoPhone, "second2").empty());
  // The session that changed it stays; the others end with the old password.
  EXPECT_EQ(code(api_->get("getUserInfo", {{"sessionId", elsewhere}})), "2");
  EXPECT_EQ(code(api_->get("getUserInfo", {{"sessionId", session}})), "0");

  EXPECT_EQ(code(api_->post("postChangeSelf", {{"sessionId", session}, {"unknownKey", "x"}})), "1");
  const Json changed = api_->post("postChangeSelf", {{"sessionId", session}, {"nickName", "小明"}, {"sex", "2"}});
  ASSERT_EQ(code(changed), "0");
  EXPECT_EQ(changed["data"]["nickName"], "小明");
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", session}})["data"]["sex"], "2");

  DecodedImage picture;
  picture.width = picture.height = 8;
  picture.stride = 32;
  picture.pixels.assign(256, '\x7f');
  const std::string jpeg = encodeJpeg(picture, 85).value();
  const auto postPortrait = [&](const std::string& content) {
    httplib::MultipartFormDataItems items = {{"sessionId", session, "", ""}, {"file", content, "me.jpg", "image/jpeg"}};
    auto res = api_->raw().Post("/qmv/app/v3/postPortrait", items);
    return res ? parseJson(res->body) : Json();
  };
  // Not a picture, a damaged one, and one declaring 20000x20000: refused, nothing stored.
  std::string huge = jpeg;
  const std::size_t frame = huge.find("\xff\xc0");
  huge.replace(frame + 5, 4, "\x4e\x20\x4e\x20");
  const std::pair<std::string, const char*> refused[] = {{std::string("\x89PNG\r\n\x1a\n\0rest", 13), "请选择图片"},
                                                         {jpeg.substr(0, jpeg.size() / 2), "请选择图片"},
                                                         {huge, "图片过大"}};
  for (const auto& [content, message] : refused) {
    const Json answer = postPortrait(content);
    EXPECT_EQ(code(answer), "1");
    EXPECT_EQ(answer["message"], message);
  }
  // Still the portrait drawn for the demo member.
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", session}})["data"]["imgUrl"],
            server_->rootUrl() + "/oss/" + kDemoPhone + ".png");

  const Json uploaded = postPortrait(jpeg);
  ASSERT_EQ(code(uploaded), "0");
  const std::string url = uploaded["data"]["imgUrl"];
  auto image = api_->raw().Get(url.substr(server_->rootUrl().size()).c_str());
  ASSERT_TRUE(image);
  EXPECT_EQ(image->body, jpeg);
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", session}})["data"]["imgUrl"], url);
  httplib::MultipartFormDataItems empty = {{"sessionId", session, "", ""}};
  EXPECT_EQ(code(parseJson(api_->raw().Post("/qmv/app/v3/postPortrait", empty)->body)), "1");
}

TEST_F(SandboxTest, AProfileChangeWithOneBadValueStoresNothing) {
  const std::string session = api_->login();
  const auto change = [&](const std::string& key, const std::string& value) {
    return api_->post("postChangeSelf", {{"sessionId", session}, {"address", "新地址"}, {key, value}});
  };
  const std::pair<const char*, const char*> hostile[] = {
      {"nickName", ""}, {"sex", "3"}, {"birthday", "2016-02-30"}, {"birthday", "2999-01-01"},
      {"email", "a b@c.cn"}, {"address_phone", "1234"}, {"postcode", "12345"},
      {"name", "\xe2\x80\xaename"},
  };
  for (const auto& [key, value] : hostile) {
    const Json refused = change(key, value);
    EXPECT_EQ(code(refused), "1") << key << " " << value;
  }
  EXPECT_EQ(api_->post("postChangeSelf", {{"sessionId", session}, {"address", std::string(101, 'x')}})["message"],
            "收货地址须为1-100个字");
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", session}})["data"]["address"], "临沂市兰山区沂蒙路100号");
  const Json taken = change("birthday", "1990-02-28");
  ASSERT_EQ(code(taken), "0") << taken.dump();
  EXPECT_EQ(taken["data"]["birthday"], "1990-02-28");
}

TEST_F(SandboxTest, APhoneChangeNeedsItsVerifiedCodeAndAFreeNumber) {
  const std::string session = api_->login();
  const auto verify = [&](const std::string& phone) {
    const std::string codeSession =
        api_->get("getCheckCode4ChgMobile", {{"sessionId", session}, {"mobile", phone}})["data"]["sessionId"];
    const auto checked = api_->raw().Get("/qmv/app/v3/getCheckCode?mobile=" + phone + "&code=" + kDemoSmsCode +
                                         "&sessionId=" + codeSession);
    EXPECT_EQ(code(parseJson(checked->body)), "0");
    return codeSession;
  };
  const auto changePhone = [&](const std::string& phone, const std::string& codeSession) {
    const auto res = api_->raw().Post("/qmv/app/v3/postChangeSelf", {{"Cookie", "codeSessionId=" + codeSession}},
                                      httplib::Params{{"sessionId", session}, {"phone", phone}});
    return parseJson(res->body);
  };
  const std::string fresh = "13912345678";
  EXPECT_EQ(api_->post("postChangeSelf", {{"sessionId", session}, {"phone", fresh}})["message"], "请先验证手机号");
  const std::string forOther = verify("13912345679");
  EXPECT_EQ(code(changePhone(fresh, forOther)), "1") << "a code verified for another number";
  const std::string unverified =
      api_->get("getCheckCode4ChgMobile", {{"sessionId", session}, {"mobile", fresh}})["data"]["sessionId"];
  EXPECT_EQ(code(changePhone(fresh, unverified)), "1");
  EXPECT_EQ(changePhone("13800000001", verify("13800000001"))["message"], "该手机号已注册");
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", session}})["data"]["phone"], kDemoPhone);

  const std::string codeSession = verify(fresh);
  const Json changed = changePhone(fresh, codeSession);
  ASSERT_EQ(code(changed), "0") << changed.dump();
  EXPECT_EQ(changed["data"]["phone"], fresh);
  EXPECT_FALSE(api_->login(fresh).empty());
  EXPECT_EQ(code(changePhone("13912345670", codeSession)), "1") << "the code is used";
}

TEST_F(SandboxTest, MessagesPageNewestFirstAndAreReadAllAtOnce) {
  const std::string session = api_->login();
  const auto page = [&](const char* n) {
    return api_->get("getMyMessage", {{"sessionId", session}, {"page", n}})["data"];
  };
  const Json first = page("1");
  EXPECT_EQ(first["count"], 16);
  ASSERT_EQ(first["dataList"].size(), 10u);
  EXPECT_EQ(page("2")["dataList"].size(), 6u);
  EXPECT_TRUE(page("3")["dataList"].empty());
  int unread = 0;
  std::string newer = "9999";
  for (const Json& message : first["dataList"]) {
    EXPECT_LE(message["time"].get<std::string>(), newer);
    newer = message["time"].get<std::string>();
    EXPECT_FALSE(message["contact"].get<std::string>().empty());
    unread += message["isRead"] == "0";
  }
  EXPECT_EQ(unread, 3);
  EXPECT_EQ(api_->get("getMyReadMessage", {{"sessionId", session}})["data"]["count"], "3");
  EXPECT_EQ(api_->get("getMyReadMessage", {{"sessionId", session}})["data"]["count"], "0");
  const Json again = page("1");  // kept: a range over page("1")["dataList"] would outlive its page
  for (const Json& message : again["dataList"]) EXPECT_EQ(message["isRead"], "1");
}

}  // namespace
}  // namespace qmv::sandbox::testing
