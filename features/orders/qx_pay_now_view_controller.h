#pragma once
// The pay-now screen ("支付订单"), headless. The buyer decides whether to use the account
// balance and picks one payment channel; confirming prepares the payment on the server and
// hands it to the channel, or, when the balance covers everything, is the payment.
//
// Money on this screen is in fen: B is the member's balance, T the total (totalFee in
// yuan × 100, in whole fen as "%.0f" rounds it), leftPayAmount what a channel still has
// to pay. The server is always sent the full total; with "useBalance" it takes the
// balance part itself.
//
// On load the screen reads the member's record again, so that a balance spent or
// refunded since login does not choose the channel; a draw opened without a total (a
// page's pay link) also reads its share price, and T is shares × that price. Until both
// answers are in, taps do nothing. A T that is not known, or not an amount one checkout
// may take, is never confirmed.
//
// A success (the balance payment, the wallet's callback, or "pay_success_noti" from the
// payment-result handling) shows "支付成功" and leaves the screen once: later successes
// of the same screen are ignored, however they arrive. Either ending opens the payment
// result (see PayResultViewController): a success after leaving, a failure reported by
// the payment application this screen handed the payment to on top of this screen, which
// then drops the receipt of the order that was not paid.
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/common/fen.h"
#include "core/session/base_view_controller.h"
#include "features/orders/order_info_model.h"
#include "features/orders/pay_cash_view.h"
#include "features/orders/payment_failure_watch.h"
#include "platform/notification_center.h"

namespace qmv {

class IndianaProductNetApi;
class PreparePayNetApi;
class UserInfoNetApi;

class QXPayNowViewController : public BaseViewController {
 public:
  enum class Channel { Alipay, WeChat, UnionPay };
  // Where a confirm got to.
  enum class PayStep {
    Stopped,     // nothing further: the server did not prepare it, its answer carried
                 // nothing to pay with, or no payment library is installed
    HandedOver,  // a payment library has it; its result comes back through the shell
    Paid,        // paymentSucceeded ran
  };

  QXPayNowViewController() = default;
  // Sets the properties from the payload the screen is pushed with: keys are the property
  // names, absent keys leave a property unset.
  explicit QXPayNowViewController(const Json& payload);
  ~QXPayNowViewController() override;
  QXPayNowViewController(const QXPayNowViewController&) = delete;
  QXPayNowViewController& operator=(const QXPayNowViewController&) = delete;

  // The payload for the properties that are set.
  Json payload() const;
  // The payload of a draw product opened from a page: productId, series, acount and the
  // name "一元夺宝-第%@期" of the series; no total.
  static Json drawProductPayload(const std::string& productId, const std::string& series,
                                 const std::string& shareCount);

  // Set by the caller before the screen is shown.
  long payType = 0;
  std::string totalFee;  // yuan, two decimals
  std::string name;
  std::string storeId;
  std::string activityId;
  std::string activityCount;
  std::string isFirst;  // sent as "isFirstOrder"
  std::string productId;
  std::string series;
  std::string shareCount;  // the system's acount

  // Set-up from B and T, refreshView, and the "pay_success_noti" observer (kept until
  // the screen is destroyed); then userInfoNet and, for a draw without a total, its
  // share price, after which the set-up runs again. REQUIRES: once, on the interface
  // thread.
  void viewDidLoad();
  // Reads the member's record again ("getUserInfo"); a correct answer updates the
  // session's record. A failure keeps the record there is.
  void userInfoNet();
  // Whether the screen still waits for the member's record or the share price.
  bool isLoading() const { return refreshingMember_ || readingPrice_; }
  // Whether T is an amount that may be confirmed.
  bool totalKnown() const { return totalKnown_; }
  // Recomputes the texts and check pictures from the state.
  void refreshView();

  // Toggles the balance: off shows the channels with the wallet selected; on hides and
  // clears them when the balance covers T.
  void toggleBalance();  // the system's yueSelectAction:
  // Selects one channel and clears the other two; the balance flag stays.
  void selectAlipay() { selectChannel(Channel::Alipay); }      // the system's zhifubaoSelectAction:
  void selectWeChat() { selectChannel(Channel::WeChat); }      // the system's weixinSelectAction:
  void selectUnionPay() { selectChannel(Channel::UnionPay); }  // the system's yinlianSelectAction:
  // Pays from the balance when nothing is left to pay, else with the selected channel;
  // with no channel selected nothing happens. With T unknown it says so and pays nothing.
  void confirmAction();
  void payWithAliPay();
  void payWithWeChat();    // the system's payWithWX
  void payWithUnionPay();  // the system's payWithUnit
  void payWithBalance();   // the system's payWithBlance
  // "支付成功", then back to GlobalData's popToAfterPayVC when it is still open, else one
  // screen back. Only the first call of a screen does anything.
  void paymentSucceeded();  // the system's paySuceessNoti:
  // The payment application came back without success: the receipt goes and the failed
  // result opens over this screen, where the member may confirm again. Nothing after a
  // success.
  void paymentFailed();

  bool balanceSelected() const { return balanceSelected_; }    // the system's yueSelected
  bool alipaySelected() const { return alipaySelected_; }      // the system's zhifubaoSelected
  bool weChatSelected() const { return weChatSelected_; }      // the system's weixinSelected
  bool unionPaySelected() const { return unionPaySelected_; }  // the system's yinlianSelected
  bool topHidden() const { return topHidden_; }        // the balance row
  bool bottomHidden() const { return bottomHidden_; }  // the channel list
  Fen leftPayAmount() const { return leftPayAmount_; }
  Fen balanceFen() const { return balance_; }  // B
  Fen totalFen() const { return total_; }      // T

  // What refreshView shows.
  std::string totalText() const;  // "¥%@" with totalFee; "金额未知" when T is not known
  const std::string& confirmTitle() const { return confirmTitle_; }
  const std::string& balanceText() const { return balanceText_; }
  const std::string& balanceImage() const { return balanceImage_; }
  const std::string& channelImage(Channel channel) const;

  bool paid() const { return paid_; }
  // Whether a prepare request of this screen is running.
  bool isPreparing() const;
  // The order of the last correct prepare answer, with the balance part (`blance`) and
  // the rest (`money`) as the server stated them under those keys; nullopt before one.
  const std::optional<OrderInfoModel>& order() const { return order_; }
  // The receipt of that order, when the server stated its price, the balance used and
  // the amount due as plain amounts that add up, and that price is the total this screen
  // showed (a unit price there would contradict it); nullopt otherwise.
  std::optional<PayCashView> receipt() const;

  std::function<void(PayStep)> onPayStep;

 private:
  void setUpAmounts();
  void readDrawPrice();
  void loadEnded();
  void setChannel(std::optional<Channel> channel);
  void selectChannel(Channel channel);
  void prepare(const char* code);
  void prepared(PreparePayNetApi& api, const std::string& code);
  void handOver(const std::string& code, const std::string& prepayId);
  void step(PayStep value);
  void openResult(bool paid);

  bool balanceSelected_ = false;
  bool alipaySelected_ = false;
  bool weChatSelected_ = false;
  bool unionPaySelected_ = false;
  bool topHidden_ = false;
  bool bottomHidden_ = false;
  Fen leftPayAmount_;
  Fen balance_;
  Fen total_;
  bool totalKnown_ = false;
  bool refreshingMember_ = false;
  bool readingPrice_ = false;
  std::string confirmTitle_;
  std::string balanceText_;
  std::string balanceImage_;
  std::string channelImages_[3];
  bool paid_ = false;
  std::optional<OrderInfoModel> order_;
  std::shared_ptr<PreparePayNetApi> prepareNet_;
  std::shared_ptr<UserInfoNetApi> userInfoNet_;
  std::shared_ptr<IndianaProductNetApi> priceNet_;
  // Lives while a payment application has the payment.
  std::unique_ptr<PaymentFailureWatch> failures_;
  std::shared_ptr<NotificationCenter> notifications_;
  NotificationCenter::ObserverToken paySuccessToken_ = 0;
  // Callbacks handed to a payment library may outlive the screen; they check this first.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace qmv
