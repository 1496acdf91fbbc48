#pragma once
// The offer screen (QXActivitiesViewController): price line, packages and the notice.
#include "apps/gtk/screen_page.h"
#include "features/discovery/qx_activities_view_controller.h"

namespace qmv::gtk {

class ActivityPage : public ScreenPage {
 public:
  ActivityPage(PageContext& context, const std::string& activityId, const std::string& name);
  void refresh() override;

 private:
  QXActivitiesViewController screen_;
};

}  // namespace qmv::gtk
