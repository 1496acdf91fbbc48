#pragma once
// What the two order-detail screens share, headless: the order id they were opened with,
// the load of the order at every appearance, and the texts both show. A record that does
// not arrive (a refused answer, a "data" that is not an object, a failed connection)
// leaves what the screen showed.
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/session/base_view_controller.h"
#include "features/orders/order_info_model.h"

namespace qmv {

class OrderDetailNetApi;

class OrderDetailViewController : public BaseViewController {
 public:
  explicit OrderDetailViewController(std::string orderId);
  ~OrderDetailViewController() override;
  OrderDetailViewController(const OrderDetailViewController&) = delete;
  OrderDetailViewController& operator=(const OrderDetailViewController&) = delete;

  std::string title() const;
  // Every appearance reloads the order.
  void viewWillAppear() { orderDetailNet(); }
  // Stops a load still running and asks for the order; a record that arrives is kept in
  // orderInfo and refreshView runs. An empty orderId sends nothing (onLoaded(false)).
  void orderDetailNet();
  // Rebuilds the shown texts from orderInfo (nothing before it arrived). Subclasses
  // add their own labels after these.
  virtual void refreshView();

  bool hasData() const override { return orderInfo.has_value(); }

  std::string orderId;
  std::optional<OrderInfoModel> orderInfo;

  // Labels both screens show.
  std::string imageURL;
  std::string placeholderImage;
  std::string nameText;
  std::string orderIdText;  // "订单号:%@"
  std::string phoneText;    // "手机号码:%@"
  std::string timeText;     // "付款时间:%@"
  // "状态:" and the status as the order list shows it (a refunded order reads 已退款).
  std::string statusText;

  // After every answer: whether a record arrived.
  std::function<void(bool loaded)> onLoaded;

 private:
  std::shared_ptr<OrderDetailNetApi> request_;
};

}  // namespace qmv
