#pragma once
// The detail of a store order, headless: the order's picture, name, price, order number, phone
// and payment time, the go-to-comment entry while the order is not rated, and the ways on
// to the store and to its rating.
#include <string>

#include "features/orders/order_detail_view_controller.h"

namespace qmv {

class QXMyStoreOrderDetailViewController : public OrderDetailViewController {
 public:
  explicit QXMyStoreOrderDetailViewController(std::string orderId) : OrderDetailViewController(std::move(orderId)) {}

  void refreshView() override;
  // The store screen of the order's store; nothing without a storeId.
  void gotoProductDetailAction();
  // The rating screen with the order id and store name; nothing without an orderId.
  void gotoCommentAction();

  std::string priceText;  // "￥%@" with price
  // The go-to-comment button, its label and arrow: shown only while star is "0".
  bool commentHidden = true;
};

}  // namespace qmv
