#pragma once
// The contacts screens: the member's own contacts with the two counts, and the members
// one contact invited. Both lists page with a load-more button.
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
};

class SecondContactsPage : public ScreenPage {
 public:
  SecondContactsPage(PageContext& context, const Json& payload);
  void refresh() override;

 private:
  MySecondContactViewController screen_;
};

}  // namespace qmv::gtk
