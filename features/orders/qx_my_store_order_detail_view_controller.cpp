#include "features/orders/qx_my_store_order_detail_view_controller.h"

#include "features/discovery/store_info_model.h"
#include "features/discovery/store_screens.h"
#include "features/orders/order_screens.h"
#include "features/orders/order_texts.h"

namespace qmv {

void QXMyStoreOrderDetailViewController::refreshView() {
  OrderDetailViewController::refreshView();
  if (!orderInfo) return;
  priceText = order_texts::kDetailPricePrefix + orderInfo->price;
  commentHidden = orderInfo->star != "0";
}

void QXMyStoreOrderDetailViewController::gotoProductDetailAction() {
  if (!orderInfo || orderInfo->storeId.empty()) return;
  StoreInfoModel store;
  store.storeId = orderInfo->storeId;
  store.storeName = orderInfo->storeName;
  openStoreDetail(store);
}

void QXMyStoreOrderDetailViewController::gotoCommentAction() {
  if (orderInfo) openGradeStore(orderInfo->orderId, orderInfo->storeName);
}

}  // namespace qmv
