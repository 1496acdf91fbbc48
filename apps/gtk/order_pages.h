#pragma once
// The order screens: my orders (four status tabs over one paged list, each row with its
// refund or rating button) and the two order details, the activity order's with the
// redemption code as a QR code, and the rating of a store order.
#include <array>

#include "apps/gtk/row_list.h"
#include "apps/gtk/screen_page.h"
#include "features/orders/grade_store_view_controller.h"
#include "features/orders/qx_my_activity_order_detail_view_controller.h"
#include "features/orders/qx_my_order_view_controller.h"
#include "features/orders/qx_my_store_order_detail_view_controller.h"

namespace qmv::gtk {

// The tabs and the rows are built once; a redraw hands the rows to the list's model,
// which keeps the widgets of rows that did not change.
class OrderListPage : public ScreenPage {
 public:
  OrderListPage(PageContext& context, long type);
  void refresh() override;
  void appeared() override { screen_.viewWillAppear(); }
  QXMyOrderViewController& screen() { return screen_; }
  // The rows the list draws, in its order.
  const RowList<QXMyOrderTableViewCell>& rows() const { return rows_; }

 private:
  // The row button of the order `orderId`: refund (after a question) or rating.
  void rowButton(const Glib::VariantBase& orderId);

  QXMyOrderViewController screen_;
  RowList<QXMyOrderTableViewCell> rows_;
  std::array<Gtk::ToggleButton*, QXMyOrderViewController::kTabCount> tabs_{};
  Gtk::Button* more_ = nullptr;
};

// The two details are built once and hidden until their order has been read.
class StoreOrderPage : public ScreenPage {
 public:
  StoreOrderPage(PageContext& context, const std::string& orderId);
  void refresh() override;
  void appeared() override { screen_.viewWillAppear(); }

 private:
  QXMyStoreOrderDetailViewController screen_;
  Gtk::Box* content_ = nullptr;
  Gtk::Widget* product_ = nullptr;
  std::array<Gtk::Widget*, 4> facts_{};  // status, order id, phone, time
  Gtk::ListBox* rate_ = nullptr;
};

class ActivityOrderPage : public ScreenPage {
 public:
  ActivityOrderPage(PageContext& context, const std::string& orderId);
  void refresh() override;
  void appeared() override { screen_.viewWillAppear(); }

 private:
  QXMyActivityOrderDetailViewController screen_;
  Gtk::Box* content_ = nullptr;
  Gtk::Widget* product_ = nullptr;
  Gtk::Label* code_ = nullptr;
  Gtk::Box* qr_ = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  Gtk::Widget* qrPicture_ = nullptr;  // in qr_ while there is a code
  std::string drawnCode_;
  std::array<Gtk::Widget*, 7> facts_{};  // status, number, saving, total, order id, phone, time
  Gtk::Label* note_ = nullptr;
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
