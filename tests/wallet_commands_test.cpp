// The wallet commands run as separate starts of the application against the embedded
// sandbox: binding a card through the SMS code, showing it, withdrawing to it and
// unbinding it, with the screen's checks and the server's refusals on the way.
#include <gtest/gtest.h>

#include "tests/cli_runner.h"

namespace qmv {
namespace {

// Luhn-valid 19-digit card and an identity number.
constexpr const char* kCard = "6222020200112233446";
constexpr const char* kMaskedCard = "6222 *********** 3446";  // as screens show it
constexpr const char* kIdNumber = "37130219900101123X";
constexpr const char* kSubmitted = "您的提现申请已提交,申请将在1-3个工作日内处理完成";

class WalletCommandsTest : public testsupport::DemoMemberCliTest {
 protected:
  testsupport::CliRun bind(const std::string& name, const std::string& card, const std::string& code) {
    std::vector<std::string> args = {"card", "bind", "--name", name, "--id", kIdNumber, "--card", card};
    if (!code.empty()) args.insert(args.end(), {"--code", code});
    return run(args);
  }
  testsupport::CliRun withdraw(const std::string& amount) { return run({"withdraw", amount}); }
};

TEST_F(WalletCommandsTest, ACardIsBoundShownWithdrawnToAndUnbound) {
  auto card = run({"card"});
  ASSERT_EQ(card.status, 0) << card.out;
  EXPECT_TRUE(card.has("+ 添加银行卡")) << card.out;

  // Asking for the code is its own command; binding without one runs every check up to
  // the code's.
  auto sent = run({"card", "code"});
  EXPECT_EQ(sent.status, 0) << sent.out;
  EXPECT_TRUE(sent.has("    138****0000\n验证码发送成功\n")) << sent.out;
  auto noCode = bind("张三", kCard, "");
  EXPECT_EQ(noCode.status, 1);
  EXPECT_TRUE(noCode.has("请输入验证码\n")) << noCode.out;
  EXPECT_FALSE(noCode.has("验证码发送成功")) << noCode.out;
  // The screen's other checks are its own test's; the server's refusal fails the run too.
  auto wrongCode = bind("张三", kCard, "111111");
  EXPECT_EQ(wrongCode.status, 1);
  EXPECT_TRUE(wrongCode.has("验证码错误或已过期")) << wrongCode.out;
  EXPECT_TRUE(run({"card"}).has("+ 添加银行卡")) << "a refused binding binds nothing";

  auto bound = bind("张三", kCard, "123456");
  ASSERT_EQ(bound.status, 0) << bound.out;
  EXPECT_TRUE(bound.has("绑定成功")) << bound.out;
  auto shown = run({"--json", "card"});
  ASSERT_EQ(shown.status, 0) << shown.out;
  const Json shownCard = parseJson(shown.out)["data"]["card"];
  ASSERT_TRUE(shownCard.is_object()) << shown.out;
  EXPECT_EQ(shownCard["cardId"], kCard);
  const std::string cardBank = shownCard["cardBank"];
  auto text = run({"card"});
  EXPECT_TRUE(text.has("张三   " + cardBank + "\n" + kMaskedCard + "\n")) << text.out;

  // The demo balance is 500.00 yuan. The amount's checks are the screen's own test's; the
  // run shows the field as the screen left it (clamped) and fails.
  auto refused = withdraw("12345678");
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.has("  金额 (元) : 9999999\n余额不足\n")) << refused.out;
  // 10.01 x 100 in binary floating point truncates to 1000; the withdrawal takes 1001 fen.
  auto first = withdraw("10.01");
  ASSERT_EQ(first.status, 0) << first.out;
  EXPECT_TRUE(first.has(kSubmitted)) << first.out;
  auto all = withdraw("489.99");
  EXPECT_TRUE(all.has("489.99元\n")) << all.out;
  ASSERT_EQ(all.status, 0) << "exactly the balance: " << all.out;
  auto empty = withdraw("10");
  EXPECT_EQ(empty.status, 1);
  EXPECT_TRUE(empty.has("\n0.00元\n")) << empty.out;
  EXPECT_TRUE(empty.has("余额不足\n")) << empty.out;

  auto unanswered = run({"card", "unbind"});
  EXPECT_EQ(unanswered.status, 1);
  EXPECT_TRUE(unanswered.has("提示\n是否确定解除银行卡绑定？\n")) << unanswered.out;
  EXPECT_TRUE(unanswered.said("--answer 确定")) << unanswered.err;
  auto kept = run({"card", "unbind", "--answer", "取消"});
  EXPECT_EQ(kept.status, 1) << "nothing was unbound";
  EXPECT_TRUE(kept.said("the card stays bound")) << kept.err;
  EXPECT_TRUE(run({"card"}).has(kMaskedCard));
  auto unbound = run({"card", "unbind", "--answer", "确定"});
  ASSERT_EQ(unbound.status, 0) << unbound.out;
  EXPECT_TRUE(unbound.has("解绑成功\n")) << unbound.out;
  EXPECT_TRUE(unbound.has("+ 添加银行卡")) << unbound.out;
  EXPECT_EQ(run({"card", "unbind", "--answer", "确定"}).status, 1) << "nothing left to unbind";

  auto bank = run({"bank", kCard});
  EXPECT_EQ(bank.status, 0) << bank.out;
  EXPECT_EQ(run({"bank", "62220202001122334"}).status, 1) << "17 digits name no bank";
}

}  // namespace
}  // namespace qmv
