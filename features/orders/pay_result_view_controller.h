#pragma once
// The payment result ("支付结果"), headless: where a payment ends, paid or failed, instead
// of a passing note. It names the order, the amount (paid, or still due), the redemption
// code once paid, and offers 查看订单.
//
// Design: the pay-now screen opens it. A success keeps the way back the pay-now screen
// has always taken (to the screen held in GlobalData, else one screen back) and opens the
// result on top of that, so that leaving the result lands where a payment always led. A
// failure opens it on top of the pay-now screen, which stays: leaving the result is
// paying again. The server hands out the redemption code only once the payment has
// settled (a payment application reports later than the order is prepared), so a paid
// result reads the order again for it, and for the total the server charged; until then,
// and when that read fails, it shows the total the member confirmed. A failed result
// never shows a code, the receipt's note to see the merchant, or the amount as paid.
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/common/json.h"
#include "core/session/base_view_controller.h"
#include "features/orders/order_info_model.h"

namespace qmv {

class OrderDetailNetApi;

class PayResultViewController : public BaseViewController {
 public:
  // The payload the pay-now screen opens the result with: "paid", "orderId",
  // "orderType", "name" and "total" (yuan, as confirmed).
  static Json payloadFor(bool paid, const OrderInfoModel& order, const std::string& name, const std::string& total);

  explicit PayResultViewController(const Json& payload);
  ~PayResultViewController() override;
  PayResultViewController(const PayResultViewController&) = delete;
  PayResultViewController& operator=(const PayResultViewController&) = delete;

  // A paid result with an order reads it ("getOrderDetail") for its code and total;
  // onLoaded follows. Anything else has nothing to read and reports false at once.
  void viewDidLoad();
  bool isLoading() const;

  bool paid() const { return paid_; }
  std::string title() const;       // "支付结果"
  std::string resultText() const;  // "支付成功" or "支付失败"
  const std::string& nameText() const { return name_; }
  std::string orderIdText() const;  // "订单号:%@"; empty without an order
  std::string amountText() const;   // "实付 ¥%@" when paid, "未支付 ¥%@" when not
  std::string codeText() const;     // "验证码:" and the grouped code; empty unless paid with one
  std::string noteText() const;     // the merchant note when paid; the way to pay again when not
  // 查看订单: the order's detail screen (store or activity, as the list opens it).
  // False, opening nothing, without an order id.
  bool viewOrder();

  std::function<void(bool loaded)> onLoaded;

 private:
  bool paid_ = false;
  std::string name_;
  std::string total_;
  OrderInfoModel order_;
  std::shared_ptr<OrderDetailNetApi> request_;
};

}  // namespace qmv
