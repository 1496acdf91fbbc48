#pragma once
// Payment libraries for tests: each records what it was handed and answers inbound URLs
// with a scripted result.
#include <string>
#include <vector>

#include "platform/payment_channels.h"

namespace qmv {

class RecordingWeChatApi : public WeChatApi {
 public:
  void registerApp(const std::string& appId, const std::string& description) override {
    registered.push_back(appId + "|" + description);
  }
  bool handleOpenURL(const std::string& url, ResponseHandler onResp) override {
    handledUrls.push_back(url);
    if (onResp) onResp(nextErrCode);
    return true;
  }
  bool sendReq(const PayReq& request) override {
    sent.push_back(request);
    return true;
  }

  int nextErrCode = 0;
  std::vector<std::string> registered;
  std::vector<std::string> handledUrls;
  std::vector<PayReq> sent;
};

class RecordingAlipayService : public AlipayService {
 public:
  void payOrder(const std::string& orderString, const std::string& scheme, Callback callback) override {
    orders.push_back(orderString + "|" + scheme);
    if (callback) callback(nextResult);
  }
  void processOrderWithPaymentResult(const std::string& url, Callback standbyCallback) override {
    paymentUrls.push_back(url);
    if (standbyCallback) standbyCallback(nextResult);
  }
  void processAuthResult(const std::string& url, Callback standbyCallback) override {
    authUrls.push_back(url);
    if (standbyCallback) standbyCallback(nextResult);
  }

  Json nextResult = Json{{"resultStatus", "9000"}};
  std::vector<std::string> orders;
  std::vector<std::string> paymentUrls;
  std::vector<std::string> authUrls;
};

class RecordingUPPayControl : public UPPayControl {
 public:
  bool startPay(const std::string& tn, const std::string& scheme, const std::string& mode,
                const std::string& screen) override {
    started.push_back(tn + "|" + scheme + "|" + mode + "|" + screen);
    return true;
  }
  void handlePaymentResult(const std::string& url, CompleteBlock completeBlock) override {
    handledUrls.push_back(url);
    if (completeBlock) completeBlock(nextCode, nullptr);
  }

  std::string nextCode = "success";
  std::vector<std::string> started;
  std::vector<std::string> handledUrls;
};

}  // namespace qmv
