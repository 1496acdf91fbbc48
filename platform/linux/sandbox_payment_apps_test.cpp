#include "platform/linux/sandbox_payment_apps.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "core/common/string_util.h"

namespace qmv {
namespace {

// The sandbox as the stand-ins reach it: every completion is recorded and accepted.
class AcceptingSandbox : public HttpTransport {
 public:
  TransferId send(HttpRequest&& request, Completion completion) override {
    bodies.push_back(request.body);
    completion(HttpResponse{200, R"({"success":"0","message":"","data":{}})", {}, TransportError::none, ""});
    return bodies.size();
  }
  void cancel(TransferId) override {}
  std::vector<std::string> bodies;
};

constexpr long kNow = 1700000000;
const WeChatMerchant kMerchant{"wxqmvtest", "1900000109", "merchant-key"};

PayReq signedRequest(const std::string& appId, const std::string& partnerId, long timeStamp) {
  PayReq r{appId, partnerId, "sbxprepay", "NONCE", timeStamp, "Sign=WXPay", ""};
  r.sign = StringUtil::createMd5Sign({{"appid", r.openID},
                                      {"noncestr", r.nonceStr},
                                      {"package", r.package},
                                      {"partnerid", r.partnerId},
                                      {"prepayid", r.prepayId},
                                      {"timestamp", std::to_string(r.timeStamp)}},
                                     kMerchant.apiKey);
  return r;
}

// What the messaging application does with `request`: the completion bodies it sent and
// the URL it returned with.
std::pair<std::vector<std::string>, std::string> handOver(const PayReq& request,
                                                          PayOutcome outcome = PayOutcome::Success) {
  auto sandbox = std::make_shared<AcceptingSandbox>();
  std::string returned;
  SandboxPaymentSetup setup{sandbox,
                            "http://sandbox/sandbox/pay/complete",
                            "shared-key",
                            outcome,
                            [&](const std::string& url, const std::string&) { returned = url; },
                            std::make_shared<FixedClock>(kNow)};
  SandboxWeChatApp(setup, kMerchant).sendReq(request);
  return {sandbox->bodies, returned};
}

TEST(SandboxWeChatApp, ChecksTheMerchantTheTimeStampAndTheSignatureBeforeReportingASignedCompletion) {
  const auto [sent, returned] = handOver(signedRequest(kMerchant.appId, kMerchant.partnerId, kNow - 10));
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(sent[0], "prepay_id=sbxprepay&result=success&sign=" +
                         sandboxCompletionSignature("shared-key", "sbxprepay", "success"));
  EXPECT_EQ(returned, "wxqmvtest://pay/?errCode=0");
  EXPECT_EQ(handOver(signedRequest(kMerchant.appId, kMerchant.partnerId, kNow), PayOutcome::Cancel).second,
            "wxqmvtest://pay/?errCode=-2");

  // Each signed correctly, so only the field itself can be what the application refuses.
  PayReq tampered = signedRequest(kMerchant.appId, kMerchant.partnerId, kNow);
  tampered.prepayId = "sbxother";
  const std::map<std::string, PayReq> refused = {
      {"another app", signedRequest("wxother", kMerchant.partnerId, kNow)},
      {"another partner", signedRequest(kMerchant.appId, "1900000110", kNow)},
      {"stale",
       signedRequest(kMerchant.appId, kMerchant.partnerId, kNow - SandboxWeChatApp::kTimeStampSkewSeconds - 1)},
      {"future",
       signedRequest(kMerchant.appId, kMerchant.partnerId, kNow + SandboxWeChatApp::kTimeStampSkewSeconds + 1)},
      {"tampered", tampered},
  };
  for (const auto& [why, request] : refused) {
    const auto [bodies, url] = handOver(request);
    EXPECT_TRUE(bodies.empty()) << why;
    EXPECT_EQ(url, "wxqmvtest://pay/?errCode=-1") << why;
  }
}

}  // namespace
}  // namespace qmv
