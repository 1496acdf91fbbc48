#include "features/orders/qx_pay_now_view_controller.h"

#include <algorithm>
#include <cmath>

#include "core/common/dictionary.h"
#include "core/common/notification_names.h"
#include "core/common/string_util.h"
#include "core/session/global_data.h"
#include "core/session/user_info_net_api.h"
#include "features/orders/amount_text.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/indiana_product_net_api.h"
#include "features/orders/pay_result_view_controller.h"
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
    &QXPayNowViewController::productId,  &QXPayNowViewController::series,        &QXPayNowViewController::shareCount};
constexpr const char* kTextKeys[] = {"totalFee", "name",      "storeId", "activityId", "activityCount",
                                     "isFirst",  "productId", "series",  "acount"};

std::string yuanOfFen(Fen fen) { return formatAmount("%.2f", fen.yuanForFormat()); }

// A number of draw shares as a link gives it: digits only, one share at least.
std::optional<std::int64_t> parseShareCount(const std::string& text) {
  if (text.empty() || text.size() > 9 ||
      !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    return std::nullopt;
  }
  const std::int64_t count = std::stoll(text);
  if (count < 1) return std::nullopt;
  return count;
}

}  // namespace

QXPayNowViewController::QXPayNowViewController(const Json& payload) {
  for (std::size_t i = 0; i < std::size(kTextKeys); ++i) this->*kTextProperties[i] = strForKey(payload, kTextKeys[i]);
  payType = static_cast<long>(integerValueOf(strForKey(payload, "payType")));
}

QXPayNowViewController::~QXPayNowViewController() {
  if (notifications_ && paySuccessToken_ != 0) notifications_->removeObserver(paySuccessToken_);
  detachRequest(prepareNet_);
  detachRequest(userInfoNet_);
  detachRequest(priceNet_);
}

Json QXPayNowViewController::payload() const {
  Json result = {{"payType", payType}};
  for (std::size_t i = 0; i < std::size(kTextKeys); ++i)
    setCustomString(result, this->*kTextProperties[i], kTextKeys[i]);
  return result;
}

Json QXPayNowViewController::drawProductPayload(const std::string& productId, const std::string& series,
                                                const std::string& shareCount) {
  Json result = Json::object();
  setCustomString(result, productId, "productId");
  setCustomString(result, series, "series");
  setCustomString(result, shareCount, "acount");
  result["name"] = texts::kDrawNamePrefix + series + texts::kDrawNameSuffix;
  return result;
}

void QXPayNowViewController::viewDidLoad() {
  setUpAmounts();
  refreshView();
  notifications_ = Env::current().notifications;
  if (notifications_ && paySuccessToken_ == 0) {
    paySuccessToken_ = notifications_->addObserver(kPaySuccessNotification,
                                                   [this](const std::string&, const Json&) { paymentSucceeded(); });
  }
  userInfoNet();
  if (!productId.empty() && totalFee.empty()) readDrawPrice();
}

void QXPayNowViewController::userInfoNet() {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  // Nobody signed in has no record to read; the server would only ask for a login.
  if (!self || self->sessionId.empty()) return;
  detachRequest(userInfoNet_);
  auto request = std::make_shared<UserInfoNetApi>();
  attachRequest(*request);
  userInfoNet_ = request;
  refreshingMember_ = true;
  const auto ended = [this](UserInfoNetApi& api) {
    api.updateSelfInfo();
    refreshingMember_ = false;
    loadEnded();
  };
  request->startWithCompletionBlockWithSuccess(ended, ended);
}

void QXPayNowViewController::readDrawPrice() {
  detachRequest(priceNet_);
  auto request = std::make_shared<IndianaProductNetApi>(productId, series);
  attachRequest(*request);
  priceNet_ = request;
  readingPrice_ = true;
  request->startWithCompletionBlockWithSuccess(
      [this](IndianaProductNetApi& api) {
        const std::int64_t share = api.isCorrectResult() ? api.shareFen().value_or(0) : 0;
        const std::int64_t count = parseShareCount(shareCount).value_or(0);
        // Without both, totalFee stays empty and the screen says it knows no amount.
        if (share > 0 && count > 0 && count <= kMaxPayFen / share) {
          totalFee = yuanOfFen(Fen(share * count));
        }
        readingPrice_ = false;
        loadEnded();
      },
      [this](BaseRequest&) {
        readingPrice_ = false;
        loadEnded();
      });
}

void QXPayNowViewController::loadEnded() {
  if (isLoading()) return;
  setUpAmounts();
  refreshView();
}

void QXPayNowViewController::setUpAmounts() {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  balance_ = Fen(self ? integerValueOf(self->balance) : 0);
  // Whole fen as "%.0f" rounds them, so that a balance equal to the total covers it.
  const double total = std::nearbyint(doubleValueOf(totalFee) * 100);
  totalKnown_ = total >= 1 && total <= static_cast<double>(kMaxPayFen);
  total_ = Fen(totalKnown_ ? static_cast<std::int64_t>(total) : 0);
  if (balance_ < Fen(1)) {
    topHidden_ = true;
    bottomHidden_ = false;
    balanceSelected_ = false;
    setChannel(Channel::Alipay);
    leftPayAmount_ = total_;
  } else {
    balanceSelected_ = true;
    topHidden_ = false;
    const bool covered = total_ <= balance_;
    bottomHidden_ = covered;
    setChannel(covered ? std::nullopt : std::optional(Channel::Alipay));
    leftPayAmount_ = covered ? Fen() : total_ - balance_;
  }
}

void QXPayNowViewController::refreshView() {
  balanceImage_ = balanceSelected_ ? texts::kBalanceChecked : texts::kBalanceUnchecked;
  const bool selected[] = {alipaySelected_, weChatSelected_, unionPaySelected_};
  for (int i = 0; i < 3; ++i) channelImages_[i] = selected[i] ? texts::kChannelChecked : texts::kChannelUnchecked;
  confirmTitle_ = leftPayAmount_ != Fen() ? formatAmount(texts::kConfirmAmountFormat, leftPayAmount_.yuanForFormat())
                                         : texts::kConfirm;
  balanceText_ = formatAmount(texts::kBalanceFormat, balance_.yuanForFormat());
  if (onChange) onChange();
}

std::string QXPayNowViewController::totalText() const {
  return totalKnown_ ? texts::kTotalPrefix + totalFee : texts::kTotalUnknown;
}

const std::string& QXPayNowViewController::channelImage(Channel channel) const {
  return channelImages_[static_cast<int>(channel)];
}

void QXPayNowViewController::toggleBalance() {
  // The set-up after loading would undo a tap made before it.
  if (isLoading()) return;
  balanceSelected_ = !balanceSelected_;
  if (!balanceSelected_) {
    bottomHidden_ = false;
    setChannel(Channel::Alipay);
    leftPayAmount_ = total_;
  } else if (total_ <= balance_) {
    bottomHidden_ = true;
    setChannel(std::nullopt);
    leftPayAmount_ = Fen();
  } else {
    bottomHidden_ = false;
    leftPayAmount_ = total_ - balance_;
  }
  refreshView();
}

void QXPayNowViewController::setChannel(std::optional<Channel> channel) {
  alipaySelected_ = channel == Channel::Alipay;
  weChatSelected_ = channel == Channel::WeChat;
  unionPaySelected_ = channel == Channel::UnionPay;
}

void QXPayNowViewController::selectChannel(Channel channel) {
  if (isLoading()) return;
  setChannel(channel);
  refreshView();
}

bool QXPayNowViewController::isPreparing() const { return prepareNet_ && prepareNet_->isExecuting(); }

void QXPayNowViewController::confirmAction() {
  if (isLoading()) return;
  if (!totalKnown_) {
    // Nothing is spent that the member has not seen.
    Env::current().overlay->showImage("", texts::kAmountUnknown);
    return;
  }
  if (leftPayAmount_ == Fen()) {
    payWithBalance();
  } else if (alipaySelected_) {
    payWithAliPay();
  } else if (weChatSelected_) {
    payWithWeChat();
  } else if (unionPaySelected_) {
    payWithUnionPay();
  }
}

void QXPayNowViewController::payWithAliPay() { prepare(texts::kAlipayCode); }
void QXPayNowViewController::payWithWeChat() { prepare(texts::kWeChatCode); }
void QXPayNowViewController::payWithUnionPay() { prepare(texts::kUnionPayCode); }
void QXPayNowViewController::payWithBalance() { prepare(texts::kBalanceCode); }

void QXPayNowViewController::prepare(const char* code) {
  detachRequest(prepareNet_);
  // The full total: with "useBalance" the server takes the balance part itself.
  const std::string amount = std::to_string(total_.count());
  std::shared_ptr<PreparePayNetApi> request;
  if (!productId.empty()) {
    request = std::make_shared<PreparePayNetApi>(amount, code, productId, series, shareCount, balanceSelected_);
  } else if (!activityId.empty()) {
    request =
        std::make_shared<PreparePayNetApi>(amount, code, storeId, balanceSelected_, activityId, activityCount, isFirst);
  } else {
    request = std::make_shared<PreparePayNetApi>(amount, code, storeId, balanceSelected_);
  }
  attachRequest(*request);
  prepareNet_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this, channel = std::string(code)](PreparePayNetApi& api) {
        prepared(api, channel);
      },
      [this](BaseRequest&) { step(PayStep::Stopped); });
}

void QXPayNowViewController::prepared(PreparePayNetApi& api, const std::string& code) {
  if (!api.isCorrectResult()) {
    step(PayStep::Stopped);
    return;
  }
  if (auto order = api.getOrderInfo()) {
    // Only the server knows what it took from the balance; a balance read earlier may
    // be stale by now.
    order->balancePaid = api.balancePart();
    order->money = api.amountDue();
    order_ = std::move(order);
  }
  if (code == texts::kBalanceCode) {
    paymentSucceeded();
    return;
  }
  const std::string prepayId = api.prepayId();
  if (prepayId.empty()) {
    step(PayStep::Stopped);
    return;
  }
  handOver(code, prepayId);
}

std::optional<PayCashView> QXPayNowViewController::receipt() const {
  if (!order_) return std::nullopt;
  const auto price = plainYuanFen(order_->price);
  const auto used = plainYuanFen(order_->balancePaid);
  const auto due = plainYuanFen(order_->money);
  if (!price || !used || !due || *used + *due != *price || *price != total_.count()) return std::nullopt;
  return PayCashView(*order_);
}

void QXPayNowViewController::handOver(const std::string& code, const std::string& prepayId) {
  const Env& env = Env::current();
  const auto payments = env.payments;
  const bool installed = payments && (code == texts::kAlipayCode   ? payments->alipay != nullptr
                                      : code == texts::kWeChatCode ? payments->wechat != nullptr
                                                                   : payments->uppay != nullptr);
  if (!installed) {
    step(PayStep::Stopped);
    return;
  }
  step(PayStep::HandedOver);
  failures_ = std::make_unique<PaymentFailureWatch>([this] { paymentFailed(); });
  if (code == texts::kAlipayCode) {
    payments->alipay->payOrder(prepayId, payments->scheme, [alive = std::weak_ptr<bool>(alive_), this](const Json& r) {
      handleAlipayResult(r, [&alive, this] {
        if (alive.lock()) paymentSucceeded();
      });
    });
  } else if (code == texts::kWeChatCode) {
    const std::int64_t now = env.clock->unixSeconds();
    payments->wechat->sendReq(weChatPayRequest(prepayId, *payments, now, StringUtil::random32Letters()));
  } else {
    UPPayUtil::uppayWithTN(prepayId, texts::kPayNowScreen, payments->scheme);
  }
}

void QXPayNowViewController::paymentSucceeded() {
  if (paid_) return;
  paid_ = true;
  const Env& env = Env::current();
  env.overlay->showImage("", texts::kPaySuccess);
  const auto back = GlobalData::sharedInstance().popToAfterPayVC();
  // A return screen that has been closed since counts as none.
  if (!back || !env.navigator->popTo(*back)) env.navigator->pop();
  failures_.reset();
  openResult(true);
  step(PayStep::Paid);
}

void QXPayNowViewController::paymentFailed() {
  if (paid_) return;
  failures_.reset();
  openResult(false);
  // The order was not paid: no receipt for it stays on the screen.
  order_.reset();
  if (onChange) onChange();
}

void QXPayNowViewController::openResult(bool paid) {
  Env::current().navigator->push(texts::kPayResultScreen,
                                 PayResultViewController::payloadFor(paid, order_.value_or(OrderInfoModel()), name,
                                                                     totalKnown_ ? yuanOfFen(total_) : totalFee));
}

void QXPayNowViewController::step(PayStep value) {
  if (onPayStep) onPayStep(value);
}

}  // namespace qmv
