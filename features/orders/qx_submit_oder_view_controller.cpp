#include "features/orders/qx_submit_oder_view_controller.h"

#include <limits>

#include "core/common/dictionary.h"
#include "core/session/global_data.h"
#include "core/session/login_screen.h"
#include "core/session/user_info_net_api.h"
#include "features/discovery/discovery_texts.h"
#include "features/orders/amount_text.h"
#include "features/orders/checkout_texts.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv {

namespace texts = checkout_texts;

QXSubmitOderViewController::QXSubmitOderViewController(ActivityModel activityInfo, std::string isFirst)
    : activityInfo_(std::move(activityInfo)), isFirst_(std::move(isFirst)) {}

QXSubmitOderViewController::QXSubmitOderViewController(const Json& payload)
    : QXSubmitOderViewController(ActivityModel(payload.is_object() ? payload.value("activityInfo", Json()) : Json()),
                                 strForKey(payload, "isFirst")) {}

QXSubmitOderViewController::~QXSubmitOderViewController() { detachRequest(userInfoNet_); }

std::string QXSubmitOderViewController::unitPriceText() const { return activityInfo_.nowPrice + texts::kYuanSuffix; }

std::string QXSubmitOderViewController::firstPriceText() const {
  return isFirst_ == "0" ? std::string() : activityInfo_.firstPrice + texts::kYuanSuffix;
}

std::string QXSubmitOderViewController::totalBreakdownText() const {
  const auto part = [](const char* label, const std::string& price, long long count) {
    return std::string(label) + " " + price + texts::kTimesSign + std::to_string(count);
  };
  const long long quantity = integerValueOf(quantity_);
  if (isFirst_ == "0") return part(discovery_texts::kNowPriceLabel, unitPriceText(), quantity);
  std::string text = part(discovery_texts::kFirstPriceLabel, firstPriceText(), 1);
  // Any flag but "1" sells the one unit at the first-purchase price alone.
  if (isFirst_ == "1" && quantity > 1) {
    text += " + " + part(discovery_texts::kNowPriceLabel, unitPriceText(), quantity - 1);
  }
  return text;
}

namespace {

// A price beyond single precision ("1e308") is no price: infinite, so that the total is
// refused rather than read as 0.
float priceOf(const std::string& text) { return floatAmountOf(text).value_or(std::numeric_limits<float>::infinity()); }

}  // namespace

float QXSubmitOderViewController::totalFee() const {
  const float quantity = static_cast<float>(integerValueOf(quantity_));
  const float nowPrice = priceOf(activityInfo_.nowPrice);
  const float firstPrice = priceOf(activityInfo_.firstPrice);
  if (isFirst_ == "0") return quantity * nowPrice;
  if (isFirst_ == "1") return (quantity - 1) * nowPrice + firstPrice;
  return firstPrice;
}

std::string QXSubmitOderViewController::totalText() const {
  const std::string text = formatAmount(texts::kTotalFormat, totalFee());
  return payableFen(text) ? text : texts::kTotalInvalid;
}

// The text the pay-now screen would be given decides: "inf", "nan", "-5.00" and totals
// of more than kMaxPayFen are not payable amounts.
bool QXSubmitOderViewController::totalPayable() const {
  return payableFen(formatAmount(texts::kTotalFormat, totalFee())).has_value();
}

void QXSubmitOderViewController::plusAction() {
  const long long quantity = integerValueOf(quantity_);
  if (quantity == std::numeric_limits<long long>::max()) return;
  quantity_ = std::to_string(quantity + 1);
  if (onChange) onChange();
}

void QXSubmitOderViewController::reduceAction() {
  const long long quantity = integerValueOf(quantity_);
  if (quantity < 2) return;
  quantity_ = std::to_string(quantity - 1);
  if (onChange) onChange();
}

void QXSubmitOderViewController::submitAction() {
  if (!totalPayable()) {
    Env::current().overlay->showImage("", texts::kTotalRefused);
    if (onRefused) onRefused();
    return;
  }
  detachRequest(userInfoNet_);
  auto request = std::make_shared<UserInfoNetApi>();
  attachRequest(*request);
  userInfoNet_ = request;
  // Whatever the refresh brings, the purchase goes on with the record there is then; an
  // expired session has cleared it by now.
  const auto finished = [this](UserInfoNetApi& api) {
    api.updateSelfInfo();
    openPayNow();
  };
  request->startWithCompletionBlockWithSuccess(finished, finished);
}

Json QXSubmitOderViewController::payNowPayload() const {
  return {{"payType", 0},
          {"storeId", activityInfo_.storeId},
          {"totalFee", totalText()},
          {"activityId", activityInfo_.commodityID},
          {"activityCount", quantity_},
          {"name", activityInfo_.name},
          {"isFirst", isFirst_}};
}

void QXSubmitOderViewController::openPayNow() {
  if (!hasSession()) {
    presentLoginCtrl();
    if (onSubmitted) onSubmitted(std::nullopt);
    return;
  }
  const std::optional<ScreenId> pushed = Env::current().navigator->push(texts::kPayNowScreen, payNowPayload());
  if (onSubmitted) onSubmitted(pushed);
}

}  // namespace qmv
