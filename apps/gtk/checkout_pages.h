#pragma once
// Checkout: the submit screen (labelled prices, quantity and total), the pay-now screen
// (the balance, one channel, confirm) and the payment result. The screens hand the
// payment to the payment applications and open the result by themselves when it ends.
#include <array>

#include "apps/gtk/boxed_rows.h"
#include "apps/gtk/screen_page.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/pay_result_view_controller.h"
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
  Gtk::Label* breakdown_ = nullptr;
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

// Where a payment ends, paid or failed: the order, the amount, the redemption code once
// paid, and 查看订单.
class PayResultPage : public ScreenPage {
 public:
  PayResultPage(PageContext& context, const Json& payload);
  void refresh() override;
  PayResultViewController& screen() { return screen_; }

 private:
  PayResultViewController screen_;
  Gtk::Label* name_ = nullptr;
  Gtk::ListBox* facts_ = nullptr;
  Gtk::Widget* amount_ = nullptr;
  Gtk::Widget* orderId_ = nullptr;
  Gtk::Label* code_ = nullptr;
  Gtk::Label* note_ = nullptr;
};

}  // namespace qmv::gtk
