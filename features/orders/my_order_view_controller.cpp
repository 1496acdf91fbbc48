#include "features/orders/my_order_view_controller.h"

#include "features/discovery/store_info_model.h"
#include "features/discovery/store_screens.h"
#include "features/orders/order_texts.h"

namespace qmv {

std::string MyOrderViewController::title() const { return order_texts::kMyOrdersTitle; }

void MyOrderViewController::viewWillAppear(const std::string& successOrderID) {
  if (successOrderID.empty()) return;
  static const std::string kRated = "1";
  for (OrderInfoModel& order : orderList) {
    if (order.orderId == successOrderID) order.isComment = kRated;
  }
  if (onReload) onReload();
}

void MyOrderViewController::headerRefresh() {
  pageNum = 1;
  myOrderNet();
}

void MyOrderViewController::footerRefresh() {
  ++pageNum;
  myOrderNet();
}

QXMyOrderTableViewCell MyOrderViewController::cellForRow(std::size_t row) const {
  QXMyOrderTableViewCell cell;
  cell.setData(orderList.at(row));
  return cell;
}

void MyOrderViewController::didSelectRow(std::size_t row) const {
  if (row >= orderList.size() || orderList[row].storeId.empty()) return;
  StoreInfoModel store;
  store.storeId = orderList[row].storeId;
  store.storeName = orderList[row].storeName;
  openStoreDetail(store);
}

}  // namespace qmv
