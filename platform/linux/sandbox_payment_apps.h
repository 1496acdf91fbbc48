#pragma once
// Payment applications of a machine where the sandbox stands in for the vendors. Handed a
// payment, each one completes it at the sandbox (or, as asked, cancels or fails it) with
// "POST <sandbox>/sandbox/pay/complete", then returns to the client the way the vendor's
// application does: by opening the client's inbound URL, in the shapes of
// url_result_payment_channels.h. Inbound URLs are decoded by the URL-result adapters they
// derive from. Nothing but the sandbox is contacted.
//
// Only these stand-ins may complete a payment, so each completion is signed:
// "sign" = HMAC-SHA256 of "prepay_id=<id>&result=<result>" under a key that the sandbox
// keeps in its own home (payment_apps.key, readable by its owner only) and hands to the
// stand-ins it embeds. Why a key in the sandbox's home and not something the prepared order
// carries: the order's "prepay_id" goes back to the member who prepared it, so a signature
// derivable from it would let him complete his own order unpaid; the key never crosses the
// network, a separate sandbox's stand-ins can be given it from the same file, and a
// signature vouches for one order and one outcome only.
#include <functional>
#include <memory>
#include <string>

#include "core/common/completion_signature.h"
#include "platform/clock.h"
#include "platform/http_transport.h"
#include "platform/linux/url_result_payment_channels.h"

namespace qmv {

enum class PayOutcome { Success, Cancel, Fail };

struct SandboxPaymentSetup {
  std::shared_ptr<HttpTransport> http;
  // The sandbox's completion endpoint.
  std::string completeUrl;
  // The key shared with the sandbox (SandboxServer::paymentKey); without it every
  // completion is refused.
  std::string paymentKey;
  PayOutcome outcome = PayOutcome::Success;
  // The system handing an inbound URL from `sourceApplication` to the client.
  std::function<void(const std::string& url, const std::string& sourceApplication)> openURL;
  // The time payment requests are checked against; null: the system's.
  std::shared_ptr<Clock> clock;
};

// The merchant the messaging application knows: the client's app id, the partner id and
// the API key requests are signed with.
struct WeChatMerchant {
  std::string appId;
  std::string partnerId;
  std::string apiKey;
};

// The messaging application: checks the request as the vendor does, app id and partner id
// against the merchant's, the time stamp within kTimeStampSkewSeconds of its clock and the
// signature with the merchant API key (a bad one fails at once, "errCode" -1, and reaches
// no server), then returns with "<appId>://pay/?errCode=0|-2|-1" from "com.tencent.xin".
class SandboxWeChatApp : public UrlResultWeChatApi {
 public:
  static constexpr long kTimeStampSkewSeconds = 300;

  SandboxWeChatApp(SandboxPaymentSetup setup, WeChatMerchant merchant);
  bool sendReq(const PayReq& request) override;

 private:
  // Why the request is refused, or "" when it checks.
  std::string problemWith(const PayReq& request) const;

  SandboxPaymentSetup setup_;
  WeChatMerchant merchant_;
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
