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
  const Json refusal = parseJson(wrong->responseString());
  const std::string message = strForKey(refusal, "message");
  ASSERT_FALSE(message.empty());
  ASSERT_EQ(shown().size(), 1u);
  EXPECT_EQ(shown().back(), StringUtil::convertUnicodeToString(message));
  EXPECT_EQ(shown().back().find("\\u"), std::string::npos);
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
  EXPECT_EQ(shown().size(), 1u) << "a correct answer shows nothing";

  // Each login opens a session of its own.
  auto again = std::make_shared<LoginNetApi>(sandbox::kDemoPhone, md5(sandbox::kDemoPassword));
  ASSERT_TRUE(sendCorrect(again));
  EXPECT_NE(again->getUserInfo()->sessionId, info->sessionId);
}

TEST_F(AccountContractTest, GuardedEndpointsAnswerSessionExpiredUntilLoginAndAfterLogout) {
  CountingSessionDelegate delegate;
  auto anonymous = std::make_shared<UserInfoNetApi>();
  anonymous->sessionDelegate = &delegate;
  EXPECT_FALSE(anonymous->requestArgument().contains("sessionId"));
  ASSERT_EQ(send(anonymous), "success");
  EXPECT_EQ(strForKey(parseJson(anonymous->responseString()), "success"), "2");
  EXPECT_FALSE(anonymous->isCorrectResult());
  EXPECT_EQ(delegate.calls, 1);
  EXPECT_TRUE(shown().empty()) << "an expired session shows no message";

  const auto self = login();
  ASSERT_NE(self, nullptr);
  auto info = std::make_shared<UserInfoNetApi>();
  info->sessionDelegate = &delegate;
  EXPECT_EQ(strForKey(info->requestArgument(), "sessionId"), self->sessionId);
  ASSERT_TRUE(sendCorrect(info));
  EXPECT_EQ(strForKey(dataOf(*info), "phone"), sandbox::kDemoPhone);
  EXPECT_EQ(delegate.calls, 1);

  // A session the client still holds after logging out is expired for the server.
  ASSERT_TRUE(sendCorrect(std::make_shared<LogoutNetApi>()));
  auto stale = std::make_shared<UserInfoNetApi>();
  stale->sessionDelegate = &delegate;
  ASSERT_EQ(send(stale), "success");
  EXPECT_FALSE(stale->isCorrectResult());
  EXPECT_EQ(delegate.calls, 2);
  EXPECT_TRUE(shown().empty());
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

  auto badCheck = std::make_shared<MobileCheckNetApi>(phone, "000000", codeSession);
  ASSERT_EQ(send(badCheck), "success");
  EXPECT_FALSE(badCheck->isCorrectResult());
  auto check = std::make_shared<MobileCheckNetApi>(phone, sandbox::kDemoSmsCode, codeSession);
  EXPECT_TRUE(sendCorrect(check));

  auto unknownInviter =
      std::make_shared<RegisterNetApi>(md5(password), phone, "999999999", "新会员", sandbox::kDemoSmsCode, codeSession);
  ASSERT_EQ(send(unknownInviter), "success");
  EXPECT_FALSE(unknownInviter->isCorrectResult());
  auto registration = std::make_shared<RegisterNetApi>(md5(password), phone, sandbox::kDemoMemberNumber, "新会员",
                                                       sandbox::kDemoSmsCode, codeSession);
  ASSERT_TRUE(sendCorrect(registration));
  // The code is spent by the registration.
  auto twice = std::make_shared<RegisterNetApi>(md5(password), phone, "", "新会员", sandbox::kDemoSmsCode, codeSession);
  ASSERT_EQ(send(twice), "success");
  EXPECT_FALSE(twice->isCorrectResult());

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

TEST_F(AccountContractTest, PasswordRecoveryNeedsACheckedCodeAndReplacesThePassword) {
  const std::string phone = sandbox::kDemoPhone;
  const std::string newPassword = "recovered9";
  auto unchecked = std::make_shared<FindPwdNetApi>(phone, md5(newPassword));
  ASSERT_EQ(send(unchecked), "success");
  EXPECT_FALSE(unchecked->isCorrectResult());

  auto code = std::make_shared<MobileCodeNetApi>(phone, 0);
  ASSERT_TRUE(sendCorrect(code));
  auto check = std::make_shared<MobileCheckNetApi>(phone, sandbox::kDemoSmsCode, code->getSessionId());
  ASSERT_TRUE(sendCorrect(check));
  auto reset = std::make_shared<FindPwdNetApi>(phone, md5(newPassword));
  ASSERT_TRUE(sendCorrect(reset));
  auto replay = std::make_shared<FindPwdNetApi>(phone, md5("another1"));
  ASSERT_EQ(send(replay), "success");
  EXPECT_FALSE(replay->isCorrectResult()) << "one checked code allows one reset";

  EXPECT_EQ(login(phone, sandbox::kDemoPassword), nullptr);
  ASSERT_NE(login(phone, newPassword), nullptr);

  // Changing it while signed in needs the current one.
  auto wrongOld = std::make_shared<ChangePasswordNetApi>(md5("changed1"), md5(sandbox::kDemoPassword));
  ASSERT_EQ(send(wrongOld), "success");
  EXPECT_FALSE(wrongOld->isCorrectResult());
  ASSERT_TRUE(sendCorrect(std::make_shared<ChangePasswordNetApi>(md5("changed1"), md5(newPassword))));
  EXPECT_NE(login(phone, "changed1"), nullptr);
}

}  // namespace
}  // namespace qmv::contract
