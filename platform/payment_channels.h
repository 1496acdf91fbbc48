#pragma once
// Seams of the three closed payment libraries (external wallet, messaging-application
// payment, bank-card plug-in). The client hands each the server's "prepay_id" and reads
// back a result; inbound return URLs are handed to them by the URL router. Adapters:
// logging ones by default, and sandbox ones that complete a payment the way the vendor
// application would, by calling the client back with the inbound return URL.
#include <functional>
#include <memory>
#include <string>

#include "core/common/json.h"

namespace qmv {

// The messaging application's payment request.
struct PayReq {
  std::string openID;
  std::string partnerId;
  std::string prepayId;
  std::string nonceStr;
  long timeStamp = 0;
  std::string package;
  std::string sign;
};

class WeChatApi {
 public:
  // The application that opens ours with a payment's result.
  static constexpr const char* kSourceApplication = "com.tencent.xin";
  // errCode 0 means success.
  using ResponseHandler = std::function<void(int errCode)>;
  virtual ~WeChatApi() = default;
  virtual void registerApp(const std::string& appId, const std::string& description) = 0;
  // Decodes an inbound URL from the messaging application and reports a payment
  // response through `onResp`. Returns whether the URL was the library's.
  virtual bool handleOpenURL(const std::string& url, ResponseHandler onResp) = 0;
  virtual bool sendReq(const PayReq& request) = 0;
};

class AlipayService {
 public:
  // The result dictionary ("resultStatus", "memo", ...).
  using Callback = std::function<void(const Json& resultDic)>;
  virtual ~AlipayService() = default;
  virtual void payOrder(const std::string& orderString, const std::string& scheme, Callback callback) = 0;
  virtual void processOrderWithPaymentResult(const std::string& url, Callback standbyCallback) = 0;
  virtual void processAuthResult(const std::string& url, Callback standbyCallback) = 0;
};

class UPPayControl {
 public:
  // "success", "fail" or "cancel".
  using CompleteBlock = std::function<void(const std::string& code, const Json& data)>;
  virtual ~UPPayControl() = default;
  virtual bool startPay(const std::string& tn, const std::string& scheme, const std::string& mode,
                        const std::string& screen) = 0;
  virtual void handlePaymentResult(const std::string& url, CompleteBlock completeBlock) = 0;
};

struct PaymentChannels {
  std::shared_ptr<WeChatApi> wechat;
  std::shared_ptr<AlipayService> alipay;
  std::shared_ptr<UPPayControl> uppay;

  // Deployment values handed to the libraries: the application's URL scheme, through
  // which the external wallet and the bank-card plug-in return, and the merchant's
  // identity with the messaging application (its app id, partner id and the API key
  // that signs payment requests).
  // (Each has an initialiser, so the three libraries alone still initialise the struct.)
  std::string scheme = "qqqmmmvvv";
  std::string wechatAppId = {};
  std::string wechatPartnerId = {};
  std::string wechatApiKey = {};
};

}  // namespace qmv
