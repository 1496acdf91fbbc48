#include "apps/sandbox/payment_key.h"

#include <sys/stat.h>

#include <fstream>

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

// A member without money prepares a large channel payment and reports it paid himself: the
// hole through which refunds turned unpaid orders into balance.
TEST_F(SandboxTest, OnlyThePaymentApplicationsCanReportAPayment) {
  const std::string session = api_->login("13800000002");
  ASSERT_EQ(api_->balance(session), 0);
  const Json waiting = api_->post("postPayForStore", {{"sessionId", session},
                                                      {"totalFee", "8800000"},
                                                      {"accountType", "0"},
                                                      {"useBalance", "false"},
                                                      {"storeId", "3"}});
  ASSERT_EQ(code(waiting), "0");
  const std::string prepay = waiting["data"]["prepay_id"];
  const std::string orderId = waiting["data"]["orderId"];

  const Args forged[] = {
      {{"prepay_id", prepay}, {"result", "success"}},
      {{"prepay_id", prepay}, {"result", "success"}, {"sign", ""}},
      // A signature is good for its own outcome only.
      {{"prepay_id", prepay},
       {"result", "success"},
       {"sign", sandboxCompletionSignature(server_->paymentKey(), prepay, "cancel")}},
      {{"prepay_id", prepay},
       {"result", "success"},
       {"sign", sandboxCompletionSignature(std::string(64, 'a'), prepay, "success")}},
  };
  for (const Args& form : forged) {
    const Json reply = api_->post("/sandbox/pay/complete", form);
    EXPECT_EQ(code(reply), "1");
    EXPECT_EQ(reply["message"], "支付结果验证失败");
  }
  EXPECT_EQ(api_->post("postRefund", {{"sessionId", session}, {"orderId", orderId}})["message"], "该订单不能退款");
  EXPECT_EQ(api_->balance(session), 0);

  ASSERT_EQ(code(complete(prepay, "success")), "0");
  EXPECT_EQ(api_->get("getOrderDetail", {{"sessionId", session}, {"orderId", orderId}})["data"]["status"], "2");
}

TEST(SandboxPaymentKey, IsKeptInTheHomeForItsOwnerAloneAndRemadeWhenDamaged) {
  const auto home = freshHome();
  std::filesystem::create_directories(home);
  std::string error;
  const std::string key = loadPaymentKey(home, &error);
  ASSERT_EQ(key.size(), 64u) << error;
  struct stat info {};
  ASSERT_EQ(::stat((home / kPaymentKeyFile).c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0600u);
  EXPECT_EQ(loadPaymentKey(home, &error), key);
  {
    SandboxServer server(SandboxOptions{home});
    ASSERT_TRUE(server.start().ok());
    EXPECT_EQ(server.paymentKey(), key) << "a restarted sandbox keeps the key its stand-ins were given";
  }
  std::ofstream(home / kPaymentKeyFile) << "short";
  const std::string remade = loadPaymentKey(home, &error);
  EXPECT_EQ(remade.size(), 64u);
  EXPECT_EQ(loadPaymentKey(home, &error), remade);
  EXPECT_FALSE(completionSigned("", "p", "success", sandboxCompletionSignature("", "p", "success")));
  std::filesystem::remove_all(home);
}

}  // namespace
}  // namespace qmv::sandbox::testing
