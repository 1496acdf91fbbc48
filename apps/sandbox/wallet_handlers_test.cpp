#include <set>

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

// A 19-digit number that passes the Luhn check, and the same with its check digit changed.
constexpr const char* kGoodCard = "6222020200112233446";
constexpr const char* kBadCard = "6222020200112233445";
constexpr const char* kCertificate = "37130219900101123X";

TEST_F(SandboxTest, BankCardBindingChecksTheCardAndTheSmsCode) {
  const std::string session = api_->login();
  EXPECT_EQ(api_->get("getBoundBankCard", {{"sessionId", session}})["data"], Json::object());
  const std::string codeSession =
      api_->get("getMobileCode", {{"mobile", kDemoPhone}, {"sessionId", session}})["data"]["sessionId"];
  ASSERT_FALSE(codeSession.empty());
  Args form = {{"sessionId", session},
               {"name", "演示会员"},
               {"cardId", kBadCard},
               {"certifId", kCertificate},
               {"identifying", kDemoSmsCode}};
  EXPECT_EQ(api_->post("bindBankCard", form)["message"], "银行卡格式不正确");
  form["cardId"] = "62220202001122334";
  EXPECT_EQ(api_->post("bindBankCard", form)["message"], "银行卡格式不正确");
  form["cardId"] = kGoodCard;
  form["certifId"] = "3713021990";
  EXPECT_EQ(api_->post("bindBankCard", form)["message"], "身份证号格式不正确");
  form["certifId"] = kCertificate;
  form["identifying"] = "111111";
  EXPECT_EQ(api_->post("bindBankCard", form)["message"], "验证码错误或已过期");
  form["identifying"] = kDemoSmsCode;
  ASSERT_EQ(code(api_->post("bindBankCard", form)), "0");
  const Json card = api_->get("getBoundBankCard", {{"sessionId", session}})["data"];
  EXPECT_EQ(card["cardId"], kGoodCard);
  EXPECT_EQ(card["certifId"], kCertificate);
  EXPECT_EQ(card["name"], "演示会员");
  EXPECT_EQ(card["cardBank"], "中国工商银行");
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", session}})["data"]["bankCardNum"], "1");
  // One card per member; the code was spent as well.
  api_->get("getMobileCode", {{"mobile", kDemoPhone}});
  EXPECT_EQ(api_->post("bindBankCard", form)["message"], "您已绑定银行卡，请先解绑");

  ASSERT_EQ(code(api_->post("unBindingBankCard", {{"sessionId", session}})), "0");
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", session}})["data"]["bankCardNum"], "0");
  EXPECT_EQ(api_->post("unBindingBankCard", {{"sessionId", session}})["message"], "您尚未绑定银行卡");
}

TEST_F(SandboxTest, WithdrawalRespectsTheMinimumTheBalanceAndTheCard) {
  const std::string session = api_->login();
  EXPECT_EQ(api_->post("withDraw", {{"sessionId", session}, {"amount", "1000"}})["message"], "您尚未绑定银行卡");
  api_->get("getMobileCode", {{"mobile", kDemoPhone}});
  ASSERT_EQ(code(api_->post("bindBankCard", {{"sessionId", session},
                                             {"name", "演示会员"},
                                             {"cardId", kGoodCard},
                                             {"certifId", kCertificate},
                                             {"identifying", kDemoSmsCode}})),
            "0");
  EXPECT_EQ(api_->post("withDraw", {{"sessionId", session}, {"amount", "999"}})["message"], "提现最小金额为10元");
  for (const char* bad : {"10.5", "abc", "-1000"}) {
    EXPECT_EQ(code(api_->post("withDraw", {{"sessionId", session}, {"amount", bad}})), "1") << bad;
  }
  EXPECT_EQ(
      api_->post("withDraw", {{"sessionId", session}, {"amount", std::to_string(kDemoBalanceFen + 1)}})["message"],
      "余额不足");
  EXPECT_EQ(api_->balance(session), kDemoBalanceFen);
  const Json done = api_->post("withDraw", {{"sessionId", session}, {"amount", "1000"}});
  ASSERT_EQ(code(done), "0");
  EXPECT_EQ(done["data"]["balance"], std::to_string(kDemoBalanceFen - 1000));
  ASSERT_EQ(code(api_->post("withDraw", {{"sessionId", session}, {"amount", std::to_string(kDemoBalanceFen - 1000)}})),
            "0");
  EXPECT_EQ(api_->balance(session), 0);

  const Json out = api_->get("getTopUpListForUser", {{"sessionId", session}, {"type", "3"}})["data"];
  ASSERT_EQ(out["count"], 3) << "the demo's own withdrawal and these two";
  EXPECT_EQ(out["dataList"][0]["type"], "withdraw");
  EXPECT_EQ(out["dataList"][0]["amount"], std::to_string(-(kDemoBalanceFen - 1000)));
  const Json in = api_->get("getTopUpListForUser", {{"sessionId", session}, {"type", "1"}})["data"];
  for (const Json& record : in["dataList"]) EXPECT_GT(std::stoll(record["amount"].get<std::string>()), 0);
}

TEST_F(SandboxTest, FundRecordsAddUpToEveryMembersBalance) {
  for (const char* phone : {kDemoPhone, "13800000001", "13800000002"}) {
    const std::string session = api_->login(phone);
    ASSERT_FALSE(session.empty()) << phone;
    const auto records = [&](const std::string& type) {
      Json all = Json::array();
      for (int page = 1; page < 50; ++page) {
        const Json list = api_->get("getTopUpListForUser",
                                    {{"sessionId", session}, {"page", std::to_string(page)}, {"type", type}})["data"]["dataList"];
        if (list.empty()) break;
        for (const Json& record : list) all.push_back(record);
      }
      return all;
    };
    long long sum = 0;
    for (const Json& record : records("0")) sum += std::stoll(record["amount"].get<std::string>());
    EXPECT_EQ(sum, api_->balance(session)) << phone;
    if (std::string(phone) != kDemoPhone) continue;
    // The demo member's records split by kind without overlap is the wallet command's test
    // (MemberCentreCommandsTest), against this server.
    EXPECT_EQ(api_->get("getTopUpListForUser", {{"sessionId", session}, {"type", "6"}})["success"], "1");
    // The seeded prizes belong to an ended wheel: the current one still has every spin.
    EXPECT_EQ(api_->get("getWheels", {{"sessionId", session}})["data"]["leftCount"], "3");
  }
}

TEST_F(SandboxTest, ContactsAreListedTwoLevelsDeep) {
  const std::string session = api_->login();
  const Json first = api_->get("getMyContacts", {{"sessionId", session}, {"page", "1"}})["data"];
  EXPECT_EQ(first["oneContact"], "3");
  EXPECT_EQ(first["twoContact"], "3");
  ASSERT_EQ(first["dataList"].size(), 3u);
  const Json& zhang = first["dataList"][0];
  EXPECT_EQ(zhang["phone"], "13800000001");
  EXPECT_EQ(zhang["num"], "2") << "num counts the members this contact invited";
  // Only what the contacts screens show: nothing of a contact's balance, legal name,
  // birthday, e-mail or addresses.
  std::set<std::string> keys;
  for (const auto& [key, value] : zhang.items()) keys.insert(key);
  EXPECT_EQ(keys, (std::set<std::string>{"imgUrl", "name", "phone", "time", "num"}));
  EXPECT_EQ(zhang["name"], "张三");
  const Json second =
      api_->get("getIndirectContacts", {{"sessionId", session}, {"phone", "13800000001"}, {"page", "1"}})["data"];
  ASSERT_EQ(second["dataList"].size(), 2u);
  EXPECT_EQ(second["dataList"][0]["phone"], "13800000004");
  // A second-level contact's invitees, or a stranger's, are not shown.
  EXPECT_EQ(api_->get("getIndirectContacts", {{"sessionId", session}, {"phone", "13800000004"}})["message"],
            "该用户不是您的人脉");
  EXPECT_EQ(api_->get("getMyContacts", {{"sessionId", session}, {"page", "2"}})["data"]["dataList"].size(), 0u);
}

TEST_F(SandboxTest, WheelSpinsAreLimitedAndPrizesReachTheBalance) {
  const std::string session = api_->login();
  const Json wheel = api_->get("getWheels", {{"sessionId", session}})["data"];
  EXPECT_EQ(wheel["leftCount"], "3");
  const std::string time = wheel["time"];
  EXPECT_EQ(std::count(time.begin(), time.end(), '|'), 1);
  const int items = std::stoi(wheel["itemCount"].get<std::string>());
  EXPECT_GT(items, 1);
  for (const char* key : {"imgURL", "rule"}) EXPECT_FALSE(wheel[key].get<std::string>().empty()) << key;

  const long long before = api_->balance(session);
  long long won = 0;
  for (int spin = 0; spin < 3; ++spin) {
    const Json result = api_->get("getWheelResult", {{"sessionId", session}, {"id", wheel["id"]}})["data"];
    const int index = std::stoi(result["index"].get<std::string>());
    EXPECT_GE(index, 0);
    EXPECT_LT(index, items);
    EXPECT_EQ(result["leftCount"], std::to_string(2 - spin));
    const std::string prize = result["result"];
    if (prize.find("元红包") != std::string::npos) won += std::stoll(prize) * 100;
  }
  EXPECT_EQ(api_->balance(session), before + won);
  EXPECT_EQ(api_->get("getWheelResult", {{"sessionId", session}, {"id", wheel["id"]}})["message"],
            "您的抽奖次数已用完");
  EXPECT_EQ(api_->get("getWheels", {{"sessionId", session}})["data"]["leftCount"], "0");
  EXPECT_EQ(api_->get("getWheelResult", {{"sessionId", session}, {"id", "42"}})["message"], "转盘活动不存在");
  // Another member has spins of his own.
  EXPECT_EQ(api_->get("getWheels", {{"sessionId", api_->login("13800000002")}})["data"]["leftCount"], "3");
}

}  // namespace
}  // namespace qmv::sandbox::testing
