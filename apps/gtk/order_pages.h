#pragma once
// The order screens: my orders (four status tabs over one paged list, each row with its
// refund or rating button) and the two order details, the activity order's with the
// redemption code as a QR code, and the rating of a store order.
#include <array>

#include "apps/gtk/screen_page.h"
#include "features/orders/grade_store_view_controller.h"
#include "features/orders/qx_my_activity_order_detail_view_controller.h"
#include "features/orders/qx_my_order_view_controller.h"
#include "features/orders/qx_my_store_order_detail_view_controller.h"

namespace qmv::gtk {

class OrderListPage : public ScreenPage {
 public:
  OrderListPage(PageContext& context, long type);
  void refresh() override;
  void appeared() override { screen_.viewWillAppear(); }
  QXMyOrderViewController& screen() { return screen_; }

 private:
  QXMyOrderViewController screen_;
};

class StoreOrderPage : public ScreenPage {
 public:
  StoreOrderPage(PageContext& context, const std::string& orderId);
  void refresh() override;
  void appeared() override { screen_.viewWillAppear(); }

 private:
  QXMyStoreOrderDetailViewController screen_;
};

class ActivityOrderPage : public ScreenPage {
 public:
  ActivityOrderPage(PageContext& context, const std::string& orderId);
  void refresh() override;
  void appeared() override { screen_.viewWillAppear(); }

 private:
  QXMyActivityOrderDetailViewController screen_;
};

// Built once: a redraw must not take the comment field from under the member's typing.
class GradeStorePage : public ScreenPage {
 public:
  GradeStorePage(PageContext& context, const std::string& orderId, const std::string& storeName);
  void refresh() override;
  GradeStoreViewController& screen() { return screen_; }

 private:
  GradeStoreViewController screen_;
  std::array<Gtk::Button*, GradeStoreViewController::kMaxStar> stars_{};
  Gtk::Label* count_ = nullptr;
  Gtk::Button* submit_ = nullptr;
};

}  // namespace qmv::gtk
