// Account contract: sign-in, the session column, registration with an invitation code and
// password recovery, each through the client's request classes against the sandbox.
#include <algorithm>

#include "core/session/change_password_net_api.h"
#include "core/session/find_pwd_net_api.h"
#include "core/session/logout_net_api.h"
#include "core/session/mobile_check_net_api.h"
#include "core/session/mobile_code_net_api.h"
#include "core/session/register_net_api.h"
#include "features/referral/my_contacts_net_api.h"
#include "tests/sandbox_fixture.h"

namespace qmv::contract {
namespace {

using AccountContractTest = SandboxContractTest;

std::string md5(const std::string& text) { return StringUtil::getmd5WithString(text); }

TEST_F(AccountContractTest, LoginReadsTheMemberRecordAndShowsTheRefusalDecoded) {
  auto wrong = std::make_shared<LoginNetApi>(sandbox::kDemoPhone, md5("not-the-password"));
  ASSERT_EQ(send(wrong), "success");
  EXPECT_FALSE(wrong->isCorrectResult());
  EXPECT_EQ(shown(), std::vector<std::string>{"用户名或密码错误"});
  EXPECT_EQ(wrong->getUserInfo(), nullptr);

  auto right = std::make_shared<LoginNetApi>(sandbox::kDemoPhone, md5(sandbox::kDemoPassword));
  ASSERT_TRUE(sendCorrect(right));
  const auto info = right->getUserInfo();
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->phone, sandbox::kDemoPhone);
  EXPECT_EQ(info->num, sandbox::kDemoMemberNumber);
  EXPECT_EQ(info->balance, std::to_string(sandbox::kDemoBalanceFen));
  EXPECT_EQ(info->sessionId.size(), 32u);
  EXPECT_FALSE(info->nickName.empty());
  EXPECT_GT(info->level, 0);  // derived from the experience the record carries
  EXPECT_FALSE(settings_->stringForKey("user_phone")) << "reading the record stores nothing";
}

TEST_F(AccountContractTest, GuardedEndpointsAnswerSessionExpiredUntilLoginAndAfterLogout) {
  CountingSessionDelegate delegate;
  const auto userInfo = [&] {
    auto request = std::make_shared<UserInfoNetApi>();
    request->sessionDelegate = &delegate;
    send(request);
    return request->isCorrectResult();
  };
  EXPECT_FALSE(userInfo());
  EXPECT_EQ(delegate.calls, 1);
  ASSERT_NE(login(), nullptr);
  EXPECT_TRUE(userInfo()) << "the session travels with the request";
  EXPECT_EQ(delegate.calls, 1);
  // A session the client still holds after logging out is expired for the server.
  ASSERT_TRUE(sendCorrect(std::make_shared<LogoutNetApi>()));
  EXPECT_FALSE(userInfo());
  EXPECT_EQ(delegate.calls, 2);
  EXPECT_TRUE(shown().empty()) << "an expired session shows no message";
}

TEST_F(AccountContractTest, RegistrationWithAnInvitationCodeLinksTheInviter) {
  const std::string phone = "13912345678";
  const std::string password = "newpass1";
  ASSERT_NE(login(), nullptr);
  auto before = std::make_shared<MyContactsNetApi>("1", "");
  ASSERT_TRUE(sendCorrect(before));
  const std::string countBefore = before->getFirstLevelCount();
  ASSERT_FALSE(countBefore.empty());
  GlobalData::sharedInstance().setSelfInfo(nullptr);

  auto code = std::make_shared<MobileCodeNetApi>(phone, 0);
  ASSERT_TRUE(sendCorrect(code));
  const std::string codeSession = code->getSessionId();
  ASSERT_FALSE(codeSession.empty());

  auto check = std::make_shared<MobileCheckNetApi>(phone, sandbox::kDemoSmsCode, codeSession);
  EXPECT_TRUE(sendCorrect(check));

  auto registration = std::make_shared<RegisterNetApi>(md5(password), phone, sandbox::kDemoMemberNumber, "新会员",
                                                       sandbox::kDemoSmsCode, codeSession);
  ASSERT_TRUE(sendCorrect(registration));

  const auto member = login(phone, password);
  ASSERT_NE(member, nullptr);
  EXPECT_EQ(member->phone, phone);
  EXPECT_EQ(member->inviterID, sandbox::kDemoMemberNumber);
  EXPECT_EQ(member->balance, "0");

  ASSERT_NE(login(), nullptr);
  auto after = std::make_shared<MyContactsNetApi>("1", "");
  ASSERT_TRUE(sendCorrect(after));
  EXPECT_EQ(std::stoi(after->getFirstLevelCount()), std::stoi(countBefore) + 1);
  const auto contacts = after->getMyContacts();
  const auto found =
      std::find_if(contacts.begin(), contacts.end(), [&](const UserInfoModel& c) { return c.phone == phone; });
  ASSERT_NE(found, contacts.end());
  EXPECT_EQ(found->num, "0") << "a contact's \"num\" counts the members he invited";
  EXPECT_FALSE(found->time.empty());

  // Second level: the invitees of a direct contact, and nobody else's.
  const auto inviter =
      std::find_if(contacts.begin(), contacts.end(), [](const UserInfoModel& c) { return c.num != "0"; });
  ASSERT_NE(inviter, contacts.end());
  auto second = std::make_shared<MyContactsNetApi>("1", inviter->phone);
  ASSERT_TRUE(sendCorrect(second));
  EXPECT_EQ(std::to_string(second->getMyContacts().size()), inviter->num);
  auto stranger = std::make_shared<MyContactsNetApi>("1", "13700000000");
  ASSERT_EQ(send(stranger), "success");
  EXPECT_FALSE(stranger->isCorrectResult());
  EXPECT_TRUE(stranger->getMyContacts().empty());
}

TEST_F(AccountContractTest, PasswordRecoveryWithACheckedCodeReplacesThePassword) {
  const std::string phone = sandbox::kDemoPhone;
  const std::string newPassword = "recovered9";
  auto code = std::make_shared<MobileCodeNetApi>(phone, 0);
  ASSERT_TRUE(sendCorrect(code));
  auto check = std::make_shared<MobileCheckNetApi>(phone, sandbox::kDemoSmsCode, code->getSessionId());
  ASSERT_TRUE(sendCorrect(check));
  auto reset = std::make_shared<FindPwdNetApi>(phone, md5(newPassword));
  ASSERT_TRUE(sendCorrect(reset));

  EXPECT_EQ(login(phone, sandbox::kDemoPassword), nullptr);
  ASSERT_NE(login(phone, newPassword), nullptr);

  // Changed while signed in, with the current one.
  ASSERT_TRUE(sendCorrect(std::make_shared<ChangePasswordNetApi>(md5("changed1"), md5(newPassword))));
  EXPECT_NE(login(phone, "changed1"), nullptr);
}

}  // namespace
}  // namespace qmv::contract
