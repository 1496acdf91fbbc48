#pragma once
// Payment libraries of a machine without the vendors' applications. What the client hands
// over (order strings, payment requests, transaction numbers) is written to the debug
// log; results come back the way the vendors' applications return them, as inbound URLs,
// whose query carries the result: "resultStatus" and "memo" for the external wallet,
// "errCode" for the messaging application, "code" (success|fail|cancel) for the
// bank-card plug-in.
#include "platform/payment_channels.h"

namespace qmv {

class UrlResultWeChatApi : public WeChatApi {
 public:
  void registerApp(const std::string& appId, const std::string& description) override;
  bool handleOpenURL(const std::string& url, ResponseHandler onResp) override;
  bool sendReq(const PayReq& request) override;
};

class UrlResultAlipayService : public AlipayService {
 public:
  void payOrder(const std::string& orderString, const std::string& scheme, Callback callback) override;
  void processOrderWithPaymentResult(const std::string& url, Callback standbyCallback) override;
  void processAuthResult(const std::string& url, Callback standbyCallback) override;
};

class UrlResultUPPayControl : public UPPayControl {
 public:
  bool startPay(const std::string& tn, const std::string& scheme, const std::string& mode,
                const std::string& screen) override;
  void handlePaymentResult(const std::string& url, CompleteBlock completeBlock) override;
};

}  // namespace qmv
