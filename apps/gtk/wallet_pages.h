#pragma once
// The wallet screens: my bank card (with unbinding), binding a card with its SMS code,
// and withdrawal to the bound card.
#include <array>

#include "apps/gtk/screen_page.h"
#include "features/wallet/my_bank_card_view_controller.h"
#include "features/wallet/qx_bind_bank_card_view_controller.h"
#include "features/wallet/qx_with_draw_view_controller.h"

namespace qmv::gtk {

// Built once: the card panel or the add button, as the screen says.
class BankCardPage : public ScreenPage {
 public:
  explicit BankCardPage(PageContext& context);
  void refresh() override;
  void appeared() override { screen_.viewWillAppear(); }

 private:
  MyBankCardViewController screen_;
  Gtk::Box* card_ = nullptr;
  Gtk::Label* holder_ = nullptr;
  Gtk::Label* number_ = nullptr;
  Gtk::Button* unbind_ = nullptr;
  Gtk::Button* add_ = nullptr;
};

class BindCardPage : public ScreenPage {
 public:
  explicit BindCardPage(PageContext& context);
  ~BindCardPage() override;
  void refresh() override;

 private:
  QXBindBankCardViewController screen_;
  // By QXBindBankCardViewController::Field, the order the return key walks.
  std::array<Gtk::Entry*, 4> fields_{};
  Gtk::Button* codeButton_ = nullptr;
  Gtk::Label* bank_ = nullptr;
};

class WithdrawPage : public ScreenPage {
 public:
  explicit WithdrawPage(PageContext& context);
  void refresh() override;
  void appeared() override { screen_.viewWillAppear(); }

 private:
  QXWithDrawViewController screen_;
  Gtk::Label* balance_ = nullptr;
  Gtk::Label* card_ = nullptr;
};

}  // namespace qmv::gtk
