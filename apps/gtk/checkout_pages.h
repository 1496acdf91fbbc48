#pragma once
// Checkout: the submit screen (quantity and total) and the pay-now screen (the balance,
// one channel, confirm). The screens hand the payment to the payment applications and
// leave by themselves when it succeeds.
#include "apps/gtk/screen_page.h"
#include "features/orders/qx_pay_now_view_controller.h"
#include "features/orders/qx_submit_oder_view_controller.h"

namespace qmv::gtk {

class SubmitOrderPage : public ScreenPage {
 public:
  SubmitOrderPage(PageContext& context, const Json& payload);
  void refresh() override;

 private:
  QXSubmitOderViewController screen_;
  Gtk::Label* quantity_ = nullptr;
  Gtk::Label* total_ = nullptr;
  Gtk::Button* minus_ = nullptr;
};

class PayNowPage : public ScreenPage {
 public:
  PayNowPage(PageContext& context, const Json& payload);
  void refresh() override;
  QXPayNowViewController& screen() { return screen_; }

 private:
  QXPayNowViewController screen_;
};

}  // namespace qmv::gtk
