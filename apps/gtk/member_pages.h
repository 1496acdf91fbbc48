#pragma once
// The wealth and member tabs. Neither has a screen of its own in the core: the wealth
// tab shows the balance with the ways into the wallet screens, and the member tab shows
// the member record (or the way to sign in) and signs out through LogoutFlow.
#include "apps/gtk/screen_page.h"
#include "core/session/logout_flow.h"

namespace qmv::gtk {

class WealthPage : public ScreenPage {
 public:
  explicit WealthPage(PageContext& context);
  void refresh() override;
};

class MinePage : public ScreenPage {
 public:
  explicit MinePage(PageContext& context);
  void refresh() override;

 private:
  LogoutFlow logout_;
};

// The first-run guide: one page, and the way on to the main tabs.
class GuidePage : public ScreenPage {
 public:
  explicit GuidePage(PageContext& context);
  void refresh() override {}
};

}  // namespace qmv::gtk
