#pragma once
// The receipt panel of an order, headless: "消费金额" (price), "余额抵现" (balancePaid) and
// "还需支付" (money), each "%.2f元", the order number and the note
// "为了确保您成功消费，请尽快和商家确认".
#include <string>
#include <vector>

#include "features/orders/order_info_model.h"

namespace qmv {

class PayCashView {
 public:
  struct Row {
    std::string title;
    std::string value;
  };

  // initWithFrame:withOrder: without the frame, which is the front end's.
  explicit PayCashView(const OrderInfoModel& order);

  const std::vector<Row>& rows() const { return rows_; }
  const std::string& orderNumber() const { return orderNumber_; }
  static const char* note();

 private:
  std::vector<Row> rows_;
  std::string orderNumber_;
};

}  // namespace qmv
