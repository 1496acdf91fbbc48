#include "features/orders/payment_results.h"

#include "core/common/dictionary.h"
#include "core/common/log.h"
#include "core/common/string_util.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/payment_failure_watch.h"
#include "platform/env.h"
#include "platform/payment_channels.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

// The wallet's own message for a result that is not a success, when it gave one.
void showAlipayMemo(const Json& resultDic) {
  const std::string memo = strForKey(resultDic, "memo");
  if (!memo.empty()) Env::current().overlay->showImage("error", StringUtil::convertUnicodeToString(memo));
}

}  // namespace

bool UPPayUtil::uppayWithTN(const std::string& tn, const std::string& controller, const std::string& scheme) {
  const auto& payments = Env::current().payments;
  if (!payments->uppay) return false;
  return payments->uppay->startPay(tn, scheme, "00", controller);
}

void UPPayUtil::handleURL(const std::string& url, std::function<void()> postPaySuccessLater) {
  const auto& payments = Env::current().payments;
  if (!payments->uppay) return;
  payments->uppay->handlePaymentResult(
      url, [post = std::move(postPaySuccessLater)](const std::string& code, const Json&) {
        if (code == "success") {
          if (!PaymentFailureWatch::anyWaiting()) Env::current().overlay->showImage("", checkout_texts::kPaySuccess);
          if (post) post();
        } else if (code == "fail") {
          Env::current().overlay->showImage("", checkout_texts::kPayFailed);
          PaymentFailureWatch::report();
        } else if (code == "cancel") {
          Env::current().overlay->showImage("", checkout_texts::kPayCancelled);
          PaymentFailureWatch::report();
        }
      });
}

void handleAlipayResult(const Json& resultDic, const std::function<void()>& onSuccess) {
  if (strForKey(resultDic, "resultStatus") == "9000") {
    if (onSuccess) onSuccess();
    return;
  }
  showAlipayMemo(resultDic);
  PaymentFailureWatch::report();
}

void handleAlipayAuthResult(const Json& resultDic) {
  if (strForKey(resultDic, "resultStatus") == "9000") {
    logLine("alipay: authorisation granted");
    return;
  }
  // A refused authorisation says nothing about a payment that may still be under way.
  showAlipayMemo(resultDic);
}

}  // namespace qmv
