// The account and shell commands of the CLI, each run as one start of the application
// against its embedded sandbox: what persists between runs, what a member sees, and the
// exit status of each flow.
#include <gtest/gtest.h>

#include "platform/linux/qr_png.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

using AccountCommandsTest = testsupport::CliHomeTest;

TEST_F(AccountCommandsTest, FirstRunThenLoginKeepsTheSessionForLaterRuns) {
  // Not signed in: the first start shows the guide and stores the default city.
  auto me = run({"me"});
  EXPECT_EQ(me.status, 1);
  EXPECT_EQ(setting("isLaunched"), Json(true));
  EXPECT_EQ(setting("select_city"), Json("临沂市"));

  auto refused = run({"login", "13800000000", "wrong99"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.has("用户名或密码错误")) << refused.out;
  EXPECT_TRUE(setting("password").is_null()) << "a refused login stores no password";

  auto login = run({"login", "13800000000", "qmv123"});
  ASSERT_EQ(login.status, 0) << login.out;
  EXPECT_EQ(setting("password"), Json("qmv123"));
  EXPECT_EQ(setting("user_phone"), Json("13800000000"));

  // The next start signs in silently with what was stored.
  me = run({"--json", "me"});
  ASSERT_EQ(me.status, 0) << me.out;
  const Json doc = parseJson(me.out);
  ASSERT_TRUE(isParsed(doc)) << me.out;
  EXPECT_EQ(doc["data"]["member"]["phone"], "13800000000");
  EXPECT_EQ(doc["data"]["member"]["balanceYuan"], "500.00");
  EXPECT_EQ(doc["data"]["member"]["level"], 4);  // 1250 experience

  auto text = run({"me"});
  EXPECT_TRUE(text.has("LV4")) << text.out;
  EXPECT_TRUE(text.has("1250/1600")) << text.out;
  EXPECT_TRUE(text.has("距离下一等级还需要350经验")) << text.out;

  // In one shell the session lives on: after logout the member is gone until the next start.
  auto shell = run({"shell"}, "me\nlogout\nme\nexit\n");
  EXPECT_EQ(shell.status, 0);
  EXPECT_TRUE(shell.has("logged out")) << shell.out;
  EXPECT_EQ(shell.out.find("账号:"), shell.out.rfind("账号:")) << "me after logout shows no member: " << shell.out;
  EXPECT_EQ(setting("password"), Json("qmv123")) << "logout keeps the credentials";
}

TEST_F(AccountCommandsTest, RegistrationAndRecoveryAskForTheCodeOnStandardInput) {
  auto refused =
      run({"register", "--phone", "13912345678", "--name", "newbie01", "--password", "abc123", "--confirm", "abc124"},
          "123456\n");
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.has("两次输入密码不一致")) << refused.out;
  EXPECT_FALSE(refused.has("验证码发送成功")) << "no SMS for a form that cannot be submitted: " << refused.out;

  const auto qr = home_.home() / "invite.png";
  ASSERT_TRUE(writeQrPng("https://qmv.example/static/register.html?INVITEID=100001", qr));
  auto registered = run({"register", "--phone", "13912345678", "--name", "newbie01", "--password", "abc123",
                         "--confirm", "abc123", "--invite-qr", qr.string()},
                        "123456\n");
  ASSERT_EQ(registered.status, 0) << registered.out;
  EXPECT_TRUE(registered.has("验证码发送成功"));
  EXPECT_TRUE(registered.has("注册成功"));
  EXPECT_EQ(setting("user_phone"), Json("13912345678"));

  auto recovered = run({"recover", "--phone", "13912345678"}, "123456\nnewpw123\nnewpw123\n");
  ASSERT_EQ(recovered.status, 0) << recovered.out;
  EXPECT_TRUE(recovered.has("密码修改成功"));
  EXPECT_EQ(setting("password"), Json("newpw123"));
  auto me = run({"--json", "me"});
  ASSERT_EQ(me.status, 0) << me.out;
  EXPECT_EQ(parseJson(me.out)["data"]["member"]["inviterID"], "100001");

  auto noCode = run({"recover", "--phone", "13912345678"}, "");
  EXPECT_EQ(noCode.status, 1) << "standard input ended before a code was typed";
}

TEST_F(AccountCommandsTest, InboundUrlsAndUsageErrors) {
  auto wechat = run({"open", "qqqmmmvvv://safepay/?errCode=0", "--source", "com.tencent.xin"});
  EXPECT_EQ(wechat.status, 0);
  EXPECT_TRUE(wechat.has("支付成功")) << "the messaging application's source wins over the host: " << wechat.out;

  auto wallet = run({"open", "qqqmmmvvv://safepay/?resultStatus=6001&memo=%5Cu652f%5Cu4ed8%5Cu53d6%5Cu6d88"});
  EXPECT_TRUE(wallet.has("支付取消")) << wallet.out;

  // Which links are refused is the delegate's own test; here how a refusal is reported.
  auto unknown = run({"--json", "open", "qqqmmmvvv://evil.test@uppayresult?code=success"});
  EXPECT_EQ(parseJson(unknown.out)["data"]["handled"], false) << unknown.out;

  EXPECT_EQ(run({"login", "13800000000"}).status, 2);
  EXPECT_EQ(run({"--at", "north", "me"}).status, 2);
  EXPECT_EQ(run({"no-such-command"}).status, 2);
}

TEST_F(AccountCommandsTest, TheShellListsAndRunsEveryCommandAndTheServerSwitchHolds) {
  // One-shot: the server is shown; switching needs an answer for the sheet.
  auto shown = run({"server"});
  ASSERT_EQ(shown.status, 0) << shown.out;
  EXPECT_TRUE(shown.has("server: http://127.0.0.1:")) << shown.out;
  EXPECT_TRUE(shown.has("正式环境: http://127.0.0.1:")) << shown.out;
  const auto unanswered = run({"server", "switch"});
  EXPECT_EQ(unanswered.status, 1) << "nobody answered the sheet";
  EXPECT_TRUE(unanswered.said("--answer 正式环境")) << unanswered.err;
  // The shell answers with its own word, and the sheet waits for it.
  const auto inShell = run({"shell"}, "server switch\nanswer 2\nserver\nexit\n");
  EXPECT_TRUE(inShell.said("\"answer 2\" for 测试环境")) << inShell.err;
  EXPECT_FALSE(inShell.said("--answer")) << inShell.err;
  EXPECT_FALSE(inShell.said("no alert waits")) << "the sheet took the answer: " << inShell.err;
  EXPECT_EQ(run({"server", "elsewhere"}).status, 2);

  // In the shell: help lists the commands, convert runs, and a manual server stays in
  // place for the commands that follow.
  auto shell = run({"--answer", "手动输入", "--answer", "10.9.8.7:8080", "shell"},
                   "help\nfrobnicate\nconvert gcj-bd 35 118\nserver switch\nserver\nexit\n");
  EXPECT_EQ(shell.status, 0);
  EXPECT_TRUE(shell.has("  login ")) << shell.out;
  EXPECT_TRUE(shell.has("  convert ")) << shell.out;
  EXPECT_FALSE(shell.has("A subcommand is required")) << shell.out;
  EXPECT_TRUE(shell.has("35.00641364,118.00659606")) << "convert ran: " << shell.out;
  const auto switched = shell.out.find("server: http://10.9.8.7:8080/qmv/app/v3/");
  ASSERT_NE(switched, std::string::npos) << shell.out;
  EXPECT_NE(shell.out.find("server: http://10.9.8.7:8080/qmv/app/v3/", switched + 1), std::string::npos)
      << "the next command still talks to the chosen server: " << shell.out;
}

}  // namespace
}  // namespace qmv
