#pragma once
// The messaging application's payment request for a prepared payment. Its signature is
// the lower-case MD5 of the signing dictionary ("appid", "noncestr", "package",
// "partnerid", "timestamp", "prepayid") with the merchant API key, see
// StringUtil::createMd5Sign.
#include <cstdint>
#include <string>

#include "platform/payment_channels.h"

namespace qmv {

// `unixSeconds` is written with "%d" (a 32-bit int) and read back, as the request has
// always carried it; `nonceStr` is a fresh StringUtil::random32Letters().
PayReq weChatPayRequest(const std::string& prepayId, const PaymentChannels& merchant, std::int64_t unixSeconds,
                        std::string nonceStr);

}  // namespace qmv
