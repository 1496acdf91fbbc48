#pragma once
// The contacts screens: the member's own contacts with the two counts, and the members
// one contact invited. Both lists page with a load-more button; their rows are built
// once and kept across redraws.
#include "apps/gtk/row_list.h"
#include "apps/gtk/screen_page.h"
#include "features/referral/my_contact_view_controller.h"
#include "features/referral/my_second_contact_view_controller.h"

namespace qmv::gtk {

class ContactsPage : public ScreenPage {
 public:
  explicit ContactsPage(PageContext& context);
  void refresh() override;

 private:
  MyContactViewController screen_;
  RowList<ContactCell> rows_;
  Gtk::Label* num_ = nullptr;
  Gtk::Label* subNum_ = nullptr;
  Gtk::Button* more_ = nullptr;
};

class SecondContactsPage : public ScreenPage {
 public:
  SecondContactsPage(PageContext& context, const Json& payload);
  void refresh() override;

 private:
  MySecondContactViewController screen_;
  RowList<ContactCell> rows_;
  Gtk::Button* more_ = nullptr;
};

}  // namespace qmv::gtk
