#include "features/orders/wechat_pay_request.h"

#include <cstdio>
#include <cstdlib>
#include <map>

#include "core/common/string_util.h"
#include "features/orders/checkout_texts.h"

namespace qmv {

PayReq weChatPayRequest(const std::string& prepayId, const PaymentChannels& merchant, std::int64_t unixSeconds,
                        std::string nonceStr) {
  char stamp[16];
  std::snprintf(stamp, sizeof stamp, "%d", static_cast<int>(unixSeconds));
  PayReq request;
  request.openID = merchant.wechatAppId;
  request.partnerId = merchant.wechatPartnerId;
  request.prepayId = prepayId;
  request.nonceStr = std::move(nonceStr);
  request.timeStamp = std::strtol(stamp, nullptr, 10);
  request.package = checkout_texts::kWeChatPackage;
  const std::map<std::string, std::string> signing = {{"appid", request.openID},     {"noncestr", request.nonceStr},
                                                      {"package", request.package},  {"partnerid", request.partnerId},
                                                      {"timestamp", stamp},          {"prepayid", request.prepayId}};
  request.sign = StringUtil::createMd5Sign(signing, merchant.wechatApiKey);
  return request;
}

}  // namespace qmv
