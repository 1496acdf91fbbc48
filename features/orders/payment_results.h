#pragma once
// What the client does with the results the payment libraries report.
#include <functional>
#include <string>

#include "core/common/json.h"

namespace qmv {

class UPPayUtil {
 public:
  // Hands the transaction number to the bank-card plug-in (production mode "00").
  static bool uppayWithTN(const std::string& tn, const std::string& controller, const std::string& scheme);
  // An inbound "uppayresult" URL: "success" shows "支付成功" (unless a pay-now screen
  // waits for the payment: it says so itself once the success is posted) and runs
  // `postPaySuccessLater`; "fail" shows "支付失败"; "cancel" shows "支付取消".
  static void handleURL(const std::string& url, std::function<void()> postPaySuccessLater);
};

// The external wallet's result dictionary: "resultStatus" "9000" runs `onSuccess`; any
// other status shows the unescaped "memo" as an error, when there is one.
void handleAlipayResult(const Json& resultDic, const std::function<void()>& onSuccess);

// The external wallet's authorisation result ("platformapi"): it is never a payment, so
// a granted authorisation is only logged and a refusal shows its "memo" as above without
// counting as a payment failure.
void handleAlipayAuthResult(const Json& resultDic);

}  // namespace qmv
