#pragma once
// The older my-orders screen, still part of the system, headless: one table of order rows
// with pull-down and pull-up refresh that loads nothing itself, whose rows open the store
// of the order, and which marks an order rated when the rating screen reports it.
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "core/session/base_view_controller.h"
#include "features/orders/order_info_model.h"
#include "features/orders/qx_my_order_table_view_cell.h"

namespace qmv {

class MyOrderViewController : public BaseViewController {
 public:
  std::string title() const;
  // `successOrderID`: the application delegate's, set by the rating screen after a
  // successful rating. When it is not empty the listed order with that id gets isComment
  // "1" and the table reloads.
  void viewWillAppear(const std::string& successOrderID);
  // Pull-down: page 1. Pull-up: the next page. Both then run myOrderNet.
  void headerRefresh();
  void footerRefresh();
  // Loads nothing: the screen's list is what its owner put in orderList.
  void myOrderNet() {}

  QXMyOrderTableViewCell cellForRow(std::size_t row) const;
  // Opens the store of the row's order; nothing without a storeId.
  void didSelectRow(std::size_t row) const;

  bool hasData() const override { return !orderList.empty(); }

  long pageNum = 1;
  std::vector<OrderInfoModel> orderList;
  // Told every time the table reloads.
  std::function<void()> onReload;
};

}  // namespace qmv
