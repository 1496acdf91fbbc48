#pragma once
// Payment applications of a machine where the sandbox stands in for the vendors. Handed a
// payment, each one completes it at the sandbox (or, as asked, cancels or fails it) with
// "POST <sandbox>/sandbox/pay/complete", then returns to the client the way the vendor's
// application does: by opening the client's inbound URL, in the shapes of
// url_result_payment_channels.h. Inbound URLs are decoded by the URL-result adapters they
// derive from. Nothing but the sandbox is contacted.
#include <functional>
#include <memory>
#include <string>

#include "platform/http_transport.h"
#include "platform/linux/url_result_payment_channels.h"

namespace qmv {

enum class PayOutcome { Success, Cancel, Fail };

struct SandboxPaymentSetup {
  std::shared_ptr<HttpTransport> http;
  // The sandbox's completion endpoint.
  std::string completeUrl;
  PayOutcome outcome = PayOutcome::Success;
  // The system handing an inbound URL from `sourceApplication` to the client.
  std::function<void(const std::string& url, const std::string& sourceApplication)> openURL;
};

// The messaging application: checks the request's signature with the merchant API key
// (a bad one fails at once, "errCode" -1, and reaches no server), then returns with
// "<appId>://pay/?errCode=0|-2|-1" from "com.tencent.xin".
class SandboxWeChatApp : public UrlResultWeChatApi {
 public:
  SandboxWeChatApp(SandboxPaymentSetup setup, std::string apiKey);
  bool sendReq(const PayReq& request) override;

 private:
  SandboxPaymentSetup setup_;
  std::string apiKey_;
};

// The external wallet: returns with "<scheme>://safepay/?resultStatus=9000|6001|4000&memo=..."
// (the memo with backslash-u escapes, as the wallet writes it). Like the wallet when it is
// installed, it never calls payOrder's own callback.
class SandboxAlipayApp : public UrlResultAlipayService {
 public:
  explicit SandboxAlipayApp(SandboxPaymentSetup setup) : setup_(std::move(setup)) {}
  void payOrder(const std::string& orderString, const std::string& scheme, Callback callback) override;

 private:
  SandboxPaymentSetup setup_;
};

// The bank-card plug-in: returns with "<scheme>://uppayresult?code=success|cancel|fail".
class SandboxUPPayApp : public UrlResultUPPayControl {
 public:
  explicit SandboxUPPayApp(SandboxPaymentSetup setup) : setup_(std::move(setup)) {}
  bool startPay(const std::string& tn, const std::string& scheme, const std::string& mode,
                const std::string& screen) override;

 private:
  SandboxPaymentSetup setup_;
};

}  // namespace qmv
