#include "platform/linux/sandbox_payment_apps.h"

#include <cstdlib>
#include <map>

#include "core/common/json.h"
#include "core/common/log.h"
#include "core/common/string_util.h"
#include "core/common/url_parts.h"
#include "platform/linux/payment_app_texts.h"

namespace qmv {
namespace {

constexpr const char* kAlipaySource = "com.alipay.iphoneclient";

const char* resultName(PayOutcome outcome) {
  switch (outcome) {
    case PayOutcome::Success:
      return "success";
    case PayOutcome::Cancel:
      return "cancel";
    case PayOutcome::Fail:
      break;
  }
  return "fail";
}

// Reports the member's choice to the sandbox and then calls `done` with the outcome that
// holds: a completion the sandbox refuses (or cannot be reached for) is a failure, with
// the sandbox's message.
void completeAtSandbox(const SandboxPaymentSetup& setup, const std::string& prepayId,
                       std::function<void(PayOutcome, const std::string& message)> done) {
  if (!setup.http) {
    done(PayOutcome::Fail, "");
    return;
  }
  HttpRequest request;
  request.method = "POST";
  request.url = setup.completeUrl;
  request.contentType = "application/x-www-form-urlencoded";
  const std::string result = resultName(setup.outcome);
  request.body = "prepay_id=" + percentEncode(prepayId) + "&result=" + result +
                 "&sign=" + sandboxCompletionSignature(setup.paymentKey, prepayId, result);
  setup.http->send(std::move(request), [outcome = setup.outcome, done = std::move(done)](HttpResponse response) {
    const Json envelope = response.status == 200 ? parseJson(response.body) : Json();
    if (envelope.is_object() && envelope.value("success", Json()) == "0") {
      done(outcome, "");
      return;
    }
    const std::string message = envelope.is_object() && envelope.value("message", Json()).is_string()
                                    ? envelope["message"].get<std::string>()
                                    : std::string();
    logLine("sandbox payment: completion refused: " + (message.empty() ? response.errorMessage : message));
    done(PayOutcome::Fail, message);
  });
}

void returnTo(const SandboxPaymentSetup& setup, const std::string& url, const std::string& source) {
  logLine("sandbox payment: return " + url);
  if (setup.openURL) setup.openURL(url, source);
}

// "\uXXXX" escapes of the text's code points, as the wallet writes its memo.
std::string unicodeEscaped(const std::u16string& text) {
  static const char* const kHex = "0123456789abcdef";
  std::string out;
  for (const char16_t unit : text) {
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) out += kHex[(unit >> shift) & 0xF];
  }
  return out;
}

}  // namespace

SandboxWeChatApp::SandboxWeChatApp(SandboxPaymentSetup setup, WeChatMerchant merchant)
    : setup_(std::move(setup)), merchant_(std::move(merchant)) {}

std::string SandboxWeChatApp::problemWith(const PayReq& r) const {
  if (r.openID != merchant_.appId) return "an app id that is not the merchant's";
  if (r.partnerId != merchant_.partnerId) return "a partner id that is not the merchant's";
  const long now = static_cast<long>(setup_.clock ? setup_.clock->unixSeconds() : SystemClock().unixSeconds());
  if (std::labs(now - r.timeStamp) > kTimeStampSkewSeconds) return "a time stamp too far from now";
  if (r.prepayId.empty() || r.package != "Sign=WXPay") return "no prepared payment";
  const std::map<std::string, std::string> signed_ = {
      {"appid", r.openID},        {"noncestr", r.nonceStr}, {"package", r.package},
      {"partnerid", r.partnerId}, {"prepayid", r.prepayId}, {"timestamp", std::to_string(r.timeStamp)}};
  if (StringUtil::createMd5Sign(signed_, merchant_.apiKey) != r.sign) return "a signature that does not check";
  return "";
}

bool SandboxWeChatApp::sendReq(const PayReq& r) {
  UrlResultWeChatApi::sendReq(r);
  // Back to the application that asked, whatever app id its request named.
  const std::string back = (merchant_.appId.empty() ? std::string("wx") : merchant_.appId) + "://pay/?errCode=";
  if (const std::string problem = problemWith(r); !problem.empty()) {
    logLine("sandbox payment: the payment request has " + problem);
    returnTo(setup_, back + "-1", WeChatApi::kSourceApplication);
    return true;
  }
  completeAtSandbox(setup_, r.prepayId, [setup = setup_, back](PayOutcome outcome, const std::string&) {
    const char* code = outcome == PayOutcome::Success ? "0" : outcome == PayOutcome::Cancel ? "-2" : "-1";
    returnTo(setup, back + code, WeChatApi::kSourceApplication);
  });
  return true;
}

void SandboxAlipayApp::payOrder(const std::string& orderString, const std::string& scheme, Callback callback) {
  UrlResultAlipayService::payOrder(orderString, scheme, std::move(callback));
  completeAtSandbox(setup_, orderString, [setup = setup_, scheme](PayOutcome outcome, const std::string& message) {
    std::string status = "9000";
    std::string memo;
    if (outcome == PayOutcome::Cancel) {
      status = "6001";
      memo = unicodeEscaped(payment_app_texts::kAlipayCancelled);
    } else if (outcome == PayOutcome::Fail) {
      status = "4000";
      memo = message.empty() ? unicodeEscaped(payment_app_texts::kAlipayFailed) : message;
    }
    returnTo(setup, scheme + "://safepay/?resultStatus=" + status + "&memo=" + percentEncode(memo), kAlipaySource);
  });
}

bool SandboxUPPayApp::startPay(const std::string& tn, const std::string& scheme, const std::string& mode,
                               const std::string& screen) {
  UrlResultUPPayControl::startPay(tn, scheme, mode, screen);
  completeAtSandbox(setup_, tn, [setup = setup_, scheme](PayOutcome outcome, const std::string&) {
    returnTo(setup, scheme + "://uppayresult?code=" + resultName(outcome), "");
  });
  return true;
}

}  // namespace qmv
