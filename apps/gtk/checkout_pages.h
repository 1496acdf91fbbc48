#pragma once
// Checkout: the submit screen (quantity and total) and the pay-now screen (the balance,
// one channel, confirm). The screens hand the payment to the payment applications and
// leave by themselves when it succeeds.
#include <array>

#include "apps/gtk/boxed_rows.h"
#include "apps/gtk/screen_page.h"
#include "features/orders/checkout_texts.h"
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

// Built once; a redraw sets texts, ticks, what shows and whether confirm may run.
class PayNowPage : public ScreenPage {
 public:
  PayNowPage(PageContext& context, const Json& payload);
  void refresh() override;
  QXPayNowViewController& screen() { return screen_; }

 private:
  struct Channel {
    const char* key;  // page.select-channel's target
    const char* title;
    const char* icon;  // the channel's mark in front
    void (QXPayNowViewController::*select)();
    Gtk::CheckButton* check = nullptr;
  };

  QXPayNowViewController screen_;
  std::array<Channel, 3> channels_{{
      {"alipay", checkout_texts::kAlipayName, "qmv-pay-alipay-symbolic", &QXPayNowViewController::selectAlipay},
      {"wechat", checkout_texts::kWeChatName, "qmv-pay-wechat-symbolic", &QXPayNowViewController::selectWeChat},
      {"unionpay", checkout_texts::kUnionPayName, "qmv-pay-unionpay-symbolic", &QXPayNowViewController::selectUnionPay},
  }};
  Gtk::Label* name_ = nullptr;
  Gtk::Label* total_ = nullptr;
  Gtk::ListBox* balance_ = nullptr;
  Gtk::Widget* balanceRow_ = nullptr;
  Gtk::CheckButton* balanceCheck_ = nullptr;
  Gtk::ListBox* channelList_ = nullptr;
  Gtk::Button* confirm_ = nullptr;
  BoxedRows receipt_{"receipt"};
  Gtk::Label* note_ = nullptr;
  std::string shownReceipt_;
};

}  // namespace qmv::gtk
