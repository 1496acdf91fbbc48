#include "features/orders/qx_pay_now_view_controller.h"

#include <algorithm>
#include <cmath>
#include <ctime>

#include "core/common/dictionary.h"
#include "core/common/notification_names.h"
#include "core/common/string_util.h"
#include "core/session/global_data.h"
#include "features/orders/amount_text.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/payment_results.h"
#include "features/orders/prepare_pay_net_api.h"
#include "features/orders/wechat_pay_request.h"
#include "platform/clock.h"
#include "platform/env.h"
#include "platform/navigator.h"
#include "platform/payment_channels.h"
#include "platform/status_overlay.h"

namespace qmv {

namespace texts = checkout_texts;

namespace {

// The string properties and their payload keys (payType, an integer, is read apart).
constexpr std::string QXPayNowViewController::*kTextProperties[] = {
    &QXPayNowViewController::totalFee,   &QXPayNowViewController::name,          &QXPayNowViewController::storeId,
    &QXPayNowViewController::activityId, &QXPayNowViewController::activityCount, &QXPayNowViewController::isFirst,
    &QXPayNowViewController::productId,  &QXPayNowViewController::series,        &QXPayNowViewController::acount};
constexpr const char* kTextKeys[] = {"totalFee", "name",      "storeId", "activityId", "activityCount",
                                     "isFirst",  "productId", "series",  "acount"};

std::string yuanOfFen(double fen) { return formatAmount("%.2f", fen / 100); }

}  // namespace

QXPayNowViewController::QXPayNowViewController(const Json& payload) {
  for (std::size_t i = 0; i < std::size(kTextKeys); ++i) this->*kTextProperties[i] = strForKey(payload, kTextKeys[i]);
  payType = static_cast<long>(integerValueOf(strForKey(payload, "payType")));
}

QXPayNowViewController::~QXPayNowViewController() {
  if (notifications_ && paySuccessToken_ != 0) notifications_->removeObserver(paySuccessToken_);
  detachRequest(prepareNet_);
}

Json QXPayNowViewController::payload() const {
  Json result = {{"payType", payType}};
  for (std::size_t i = 0; i < std::size(kTextKeys); ++i) setCustomString(result, this->*kTextProperties[i], kTextKeys[i]);
  return result;
}

Json QXPayNowViewController::drawProductPayload(const std::string& productId, const std::string& series,
                                                const std::string& acount) {
  Json result = Json::object();
  setCustomString(result, productId, "productId");
  setCustomString(result, series, "series");
  setCustomString(result, acount, "acount");
  result["name"] = texts::kDrawNamePrefix + series + texts::kDrawNameSuffix;
  return result;
}

void QXPayNowViewController::viewDidLoad() {
  setUpAmounts();
  refreshView();
  notifications_ = Env::current().notifications;
  if (notifications_ && paySuccessToken_ == 0) {
    paySuccessToken_ = notifications_->addObserver(kPaySuccessNotification,
                                                   [this](const std::string&, const Json&) { paySuceessNoti(); });
  }
}

void QXPayNowViewController::setUpAmounts() {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  balance_ = self ? integerValueOf(self->balance) : 0;
  // Whole fen, so that a balance equal to the total covers it exactly.
  total_ = std::nearbyint(doubleValueOf(totalFee) * 100);
  if (balance_ < 1) {
    topHidden_ = true;
    bottomHidden_ = false;
    yueSelected_ = false;
    setChannel(Channel::Alipay);
    leftPayAmount_ = total_;
  } else {
    yueSelected_ = true;
    topHidden_ = false;
    const bool covered = total_ <= static_cast<double>(balance_);
    bottomHidden_ = covered;
    setChannel(covered ? std::nullopt : std::optional(Channel::Alipay));
    leftPayAmount_ = covered ? 0 : total_ - static_cast<double>(balance_);
  }
}

void QXPayNowViewController::refreshView() {
  balanceImage_ = yueSelected_ ? texts::kBalanceChecked : texts::kBalanceUnchecked;
  const bool selected[] = {zhifubaoSelected_, weixinSelected_, yinlianSelected_};
  for (int i = 0; i < 3; ++i) channelImages_[i] = selected[i] ? texts::kChannelChecked : texts::kChannelUnchecked;
  confirmTitle_ =
      leftPayAmount_ != 0 ? formatAmount(texts::kConfirmAmountFormat, leftPayAmount_ / 100) : texts::kConfirm;
  balanceText_ = formatAmount(texts::kBalanceFormat, static_cast<double>(balance_) / 100);
  if (onChange) onChange();
}

std::string QXPayNowViewController::totalText() const { return texts::kTotalPrefix + totalFee; }

const std::string& QXPayNowViewController::channelImage(Channel channel) const {
  return channelImages_[static_cast<int>(channel)];
}

void QXPayNowViewController::yueSelectAction() {
  yueSelected_ = !yueSelected_;
  if (!yueSelected_) {
    bottomHidden_ = false;
    setChannel(Channel::Alipay);
    leftPayAmount_ = total_;
  } else if (total_ <= static_cast<double>(balance_)) {
    bottomHidden_ = true;
    setChannel(std::nullopt);
    leftPayAmount_ = 0;
  } else {
    bottomHidden_ = false;
    leftPayAmount_ = total_ - static_cast<double>(balance_);
  }
  refreshView();
}

void QXPayNowViewController::setChannel(std::optional<Channel> channel) {
  zhifubaoSelected_ = channel == Channel::Alipay;
  weixinSelected_ = channel == Channel::WeChat;
  yinlianSelected_ = channel == Channel::UnionPay;
}

void QXPayNowViewController::selectChannel(Channel channel) {
  setChannel(channel);
  refreshView();
}

bool QXPayNowViewController::isPreparing() const { return prepareNet_ && prepareNet_->isExecuting(); }

void QXPayNowViewController::confirmAction() {
  if (leftPayAmount_ == 0) {
    payWithBlance();
  } else if (zhifubaoSelected_) {
    payWithAliPay();
  } else if (weixinSelected_) {
    payWithWX();
  } else if (yinlianSelected_) {
    payWithUnit();
  }
}

void QXPayNowViewController::payWithAliPay() { prepare(texts::kAlipayCode); }
void QXPayNowViewController::payWithWX() { prepare(texts::kWeChatCode); }
void QXPayNowViewController::payWithUnit() { prepare(texts::kUnionPayCode); }
void QXPayNowViewController::payWithBlance() { prepare(texts::kBalanceCode); }

void QXPayNowViewController::prepare(const char* code) {
  detachRequest(prepareNet_);
  // The full total: with "useBalance" the server takes the balance part itself.
  const std::string amount = formatAmount(texts::kAmountFormat, total_);
  std::shared_ptr<PreparePayNetApi> request;
  if (!productId.empty()) {
    request = std::make_shared<PreparePayNetApi>(amount, code, productId, series, acount, yueSelected_);
  } else if (!activityId.empty()) {
    request =
        std::make_shared<PreparePayNetApi>(amount, code, storeId, yueSelected_, activityId, activityCount, isFirst);
  } else {
    request = std::make_shared<PreparePayNetApi>(amount, code, storeId, yueSelected_);
  }
  attachRequest(*request);
  prepareNet_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this, channel = std::string(code)](BaseRequest& done) { prepared(static_cast<PreparePayNetApi&>(done), channel); },
      [this](BaseRequest&) { step(PayStep::Stopped); });
}

void QXPayNowViewController::prepared(PreparePayNetApi& api, const std::string& code) {
  if (!api.isCorrectResult()) {
    step(PayStep::Stopped);
    return;
  }
  if (auto order = api.getOrderInfo()) {
    // The server's total when it gives one; the balance pays first when it is used.
    const double total = order->totalPrices.empty() ? total_ : std::nearbyint(doubleValueOf(order->totalPrices) * 100);
    const bool balanceUsed = yueSelected_ || code == texts::kBalanceCode;
    const double fromBalance = balanceUsed ? std::max(0.0, std::min(static_cast<double>(balance_), total)) : 0;
    order->blance = yuanOfFen(fromBalance);
    order->money = yuanOfFen(total - fromBalance);
    order_ = std::move(order);
  }
  if (code == texts::kBalanceCode) {
    paySuceessNoti();
    return;
  }
  const std::string prepayId = api.prepayId();
  if (prepayId.empty()) {
    step(PayStep::Stopped);
    return;
  }
  handOver(code, prepayId);
}

void QXPayNowViewController::handOver(const std::string& code, const std::string& prepayId) {
  const Env& env = Env::current();
  const auto payments = env.payments;
  const bool installed = payments && (code == texts::kAlipayCode    ? payments->alipay != nullptr
                                      : code == texts::kWeChatCode ? payments->wechat != nullptr
                                                                   : payments->uppay != nullptr);
  if (!installed) {
    step(PayStep::Stopped);
    return;
  }
  step(PayStep::HandedOver);
  if (code == texts::kAlipayCode) {
    payments->alipay->payOrder(prepayId, payments->scheme, [alive = std::weak_ptr<bool>(alive_), this](const Json& r) {
      handleAlipayResult(r, [&alive, this] {
        if (alive.lock()) paySuceessNoti();
      });
    });
  } else if (code == texts::kWeChatCode) {
    const std::int64_t now = env.clock ? env.clock->unixSeconds() : static_cast<std::int64_t>(std::time(nullptr));
    payments->wechat->sendReq(weChatPayRequest(prepayId, *payments, now, StringUtil::ret32bitString()));
  } else {
    UPPayUtil::uppayWithTN(prepayId, texts::kPayNowScreen, payments->scheme);
  }
}

void QXPayNowViewController::paySuceessNoti() {
  if (paid_) return;
  paid_ = true;
  const Env& env = Env::current();
  if (env.overlay) env.overlay->showImage("", texts::kPaySuccess);
  if (env.navigator) {
    const auto back = GlobalData::sharedInstance().popToAfterPayVC();
    // A return screen that has been closed since counts as none.
    if (!back || !env.navigator->popTo(*back)) env.navigator->pop();
  }
  step(PayStep::Paid);
}

void QXPayNowViewController::step(PayStep value) {
  if (onPayStep) onPayStep(value);
}

}  // namespace qmv
