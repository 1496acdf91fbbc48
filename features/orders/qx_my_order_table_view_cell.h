#pragma once
// One row of the order lists, headless: the texts and the button it shows for an order,
// and the button's action (refund after a question, or rating).
#include <functional>
#include <string>

#include "core/common/color.h"
#include "features/orders/order_info_model.h"

namespace qmv {

class QXMyOrderTableViewCell {
 public:
  static constexpr Color kActiveColor{255, 0, 0};
  static constexpr Color kInactiveColor{170, 170, 170};
  static constexpr double kButtonBorderWidth = 1.0;
  static constexpr double kButtonCornerRadius = 3.0;

  // What a status shows: "1" 待使用 with an enabled 退款, "2" 待评价 with an enabled 评价,
  // "3" 已退款 with a disabled 已退款, anything else 已完成 with a disabled 已完成. A refunded
  // order reads as refunded wherever its status is shown: "已完成" there would tell the
  // member the voucher was used.
  struct StatusLook {
    std::string statusText;
    std::string buttonTitle;
    bool buttonEnabled = false;
  };
  static StatusLook lookOfStatus(const std::string& status);

  // Fills every text of the row from `order`, which the row keeps.
  void setData(const OrderInfoModel& order);
  // The button: status "1" asks "请确定是否退款，退款后优惠码失效！" and on "确定" hands the
  // orderId to `refund`; status "2" opens the rating screen; other statuses do nothing.
  // An empty orderId never reaches a request or a screen.
  void rightBtnAction();

  OrderInfoModel orderInfo;
  std::string imageURL;
  std::string placeholderImage;
  std::string nameText;       // orderName
  std::string orderIdText;    // "订单号:%@"
  // "总价:¥%@" with the order's total (totalPrices), which its detail shows too; with
  // price, the unit price, only when the server sends no total (a unit price read as the
  // total is wrong as soon as the quantity is 2).
  std::string priceText;
  std::string numberText;     // "数量:%@"
  bool numberHidden = false;  // when number is "0"
  StatusLook look;
  // Title and border colour of the button: red while enabled, light grey otherwise.
  Color buttonColor;

  // The list screen's refund (refundNet:).
  std::function<void(const std::string& orderId)> refund;
};

}  // namespace qmv
