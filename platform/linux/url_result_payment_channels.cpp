#include "platform/linux/url_result_payment_channels.h"

#include <cstdlib>

#include "core/common/log.h"
#include "core/common/url_parts.h"

namespace qmv {
namespace {

Json queryAsJson(const std::string& url) {
  Json result = Json::object();
  for (const auto& [key, value] : urlQueryPairs(url)) result[key] = value;
  return result;
}

}  // namespace

void UrlResultWeChatApi::registerApp(const std::string& appId, const std::string& description) {
  logLine("wechat: register " + appId + " " + description);
}

bool UrlResultWeChatApi::handleOpenURL(const std::string& url, ResponseHandler onResp) {
  const auto pairs = urlQueryPairs(url);
  const auto it = pairs.find("errCode");
  // Only payment responses carry a result; anything else is not a payment response.
  if (it == pairs.end()) return false;
  char* end = nullptr;
  const long code = std::strtol(it->second.c_str(), &end, 10);
  if (it->second.empty() || *end != '\0') return false;
  if (onResp) onResp(static_cast<int>(code));
  return true;
}

bool UrlResultWeChatApi::sendReq(const PayReq& r) {
  logLine("wechat: pay partnerId=" + r.partnerId + " prepayId=" + r.prepayId + " nonceStr=" + r.nonceStr +
          " timeStamp=" + std::to_string(r.timeStamp) + " package=" + r.package + " sign=" + r.sign);
  return true;
}

void UrlResultAlipayService::payOrder(const std::string& orderString, const std::string& scheme, Callback) {
  logLine("alipay: pay order=" + orderString + " scheme=" + scheme);
}

void UrlResultAlipayService::processOrderWithPaymentResult(const std::string& url, Callback standbyCallback) {
  if (standbyCallback) standbyCallback(queryAsJson(url));
}

void UrlResultAlipayService::processAuthResult(const std::string& url, Callback standbyCallback) {
  if (standbyCallback) standbyCallback(queryAsJson(url));
}

bool UrlResultUPPayControl::startPay(const std::string& tn, const std::string& scheme, const std::string& mode,
                                     const std::string& screen) {
  logLine("uppay: start tn=" + tn + " scheme=" + scheme + " mode=" + mode + " screen=" + screen);
  return true;
}

void UrlResultUPPayControl::handlePaymentResult(const std::string& url, CompleteBlock completeBlock) {
  const auto pairs = urlQueryPairs(url);
  const auto it = pairs.find("code");
  if (completeBlock) completeBlock(it == pairs.end() ? std::string() : it->second, queryAsJson(url));
}

}  // namespace qmv
