#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "core/session/change_self_net_api.h"
#include "core/session/find_pwd_net_api.h"
#include "core/session/logout_net_api.h"
#include "core/session/mobile_check_net_api.h"
#include "core/session/mobile_code_net_api.h"
#include "core/session/register_net_api.h"
#include "core/session/upload_face_net_api.h"

namespace qmv {
namespace {

using testsupport::Arguments;

class AccountEndpointsTest : public testsupport::ApiServerTest {};

TEST_F(AccountEndpointsTest, ArgumentsAsTheServerReceivesThem) {
  // Registration sends its keys in the catalogue's order whatever the constructor's,
  // and never the member's session (there is none yet, and it is not asked for).
  logIn("S-member");
  ASSERT_EQ(run(std::make_shared<RegisterNetApi>("md5pw", "13800000000", "inv 7", "小王", "1234", "code-session")),
            "success");
  EXPECT_EQ(last().method, "POST");
  EXPECT_EQ(last().endpoint, "postUserRegisterWeb");
  EXPECT_EQ(last().arguments, (Arguments{{"password", "md5pw"},
                                         {"phone", "13800000000"},
                                         {"userName", "小王"},
                                         {"inviteId", "inv 7"},
                                         {"code", "1234"},
                                         {"sessionId", "code-session"}}));

  // Empty fields are left out entirely.
  ASSERT_EQ(run(std::make_shared<RegisterNetApi>("md5pw", "13800000000", "", "", "1234", "")), "success");
  EXPECT_EQ(last().arguments, (Arguments{{"password", "md5pw"}, {"phone", "13800000000"}, {"code", "1234"}}));

  ASSERT_EQ(run(std::make_shared<MobileCheckNetApi>("13800000000", "9876", "code-session")), "success");
  EXPECT_EQ(last().method, "GET");
  EXPECT_EQ(last().endpoint, "getCheckCode");
  EXPECT_EQ(last().arguments, (Arguments{{"mobile", "13800000000"}, {"code", "9876"}, {"sessionId", "code-session"}}));

  ASSERT_EQ(run(std::make_shared<FindPwdNetApi>("13800000000", "newmd5")), "success");
  EXPECT_EQ(last().endpoint, "postFindPassword");
  EXPECT_EQ(last().arguments, (Arguments{{"phone", "13800000000"}, {"newPassword", "newmd5"}}));

  ASSERT_EQ(run(std::make_shared<ChangeSelfNetApi>("postNickName", "nickName", "新名字")), "success");
  EXPECT_EQ(last().endpoint, "postNickName");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S-member"}, {"nickName", "新名字"}}));

  ASSERT_EQ(run(std::make_shared<LogoutNetApi>()), "success");
  EXPECT_EQ(last().endpoint, "getUserLogout");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S-member"}}));
}

TEST_F(AccountEndpointsTest, SmsCodeEndpointByTypeAndItsSessionReader) {
  answer("getMobileCode", R"({"success":"0","data":{"sessionId":"code-1"}})");
  auto code = std::make_shared<MobileCodeNetApi>("13800000000", 0);
  ASSERT_EQ(run(code), "success");
  EXPECT_EQ(last().endpoint, "getMobileCode");
  EXPECT_EQ(last().arguments, (Arguments{{"mobile", "13800000000"}}));  // logged out: no session
  EXPECT_EQ(code->getSessionId(), "code-1");

  logIn("S-member");
  answer("getCheckCode4ChgMobile", R"({"success":"0","data":"no object"})");
  auto change = std::make_shared<MobileCodeNetApi>("13900000000", 1);
  ASSERT_EQ(run(change), "success");
  EXPECT_EQ(last().endpoint, "getCheckCode4ChgMobile");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S-member"}, {"mobile", "13900000000"}}));
  EXPECT_EQ(change->getSessionId(), "");

  // A member record without a session id counts as logged out.
  logIn("");
  ASSERT_EQ(run(code), "success");
  EXPECT_EQ(last().arguments, (Arguments{{"mobile", "13800000000"}}));
}

TEST_F(AccountEndpointsTest, PortraitTravelsAsAMultipartFileWithTheSession) {
  logIn("S-member");
  const std::string jpeg("\xff\xd8\x00jpeg\xff\xd9", 9);
  ASSERT_EQ(run(std::make_shared<UploadFaceNetApi>(jpeg)), "success");
  EXPECT_EQ(last().method, "POST");
  EXPECT_EQ(last().endpoint, "postPortrait");
  ASSERT_EQ(last().parts.count("file"), 1u);
  EXPECT_EQ(last().parts["file"].first, "portrait.jpg");
  EXPECT_EQ(last().parts["file"].second, jpeg);
  ASSERT_EQ(last().parts.count("sessionId"), 1u);
  EXPECT_EQ(last().parts["sessionId"].second, "S-member");
}

}  // namespace
}  // namespace qmv
