#pragma once
// Ratings: a store's comments (the store screen's "more comments") with the star filter
// and their count, and the member's own ratings, whose rows open their stores. Both page
// with the load-more button and reload page 1 on a pull.
#include <string>
#include <vector>

#include "apps/gtk/paged_list_page.h"
#include "features/discovery/my_grade_view_controller.h"
#include "features/discovery/user_commit_view_controller.h"

namespace qmv::gtk {

class CommentsPage : public PagedListPage<UserCommitViewController, GradeModel> {
 public:
  // `storeId`: the pushed screen's store.
  CommentsPage(PageContext& context, const std::string& storeId);
  void refresh() override;

 private:
  std::vector<Gtk::ToggleButton*> stars_;
  Gtk::Label* count_ = nullptr;
};

class MyRatingsPage : public PagedListPage<MyGradeViewController, GradeModel> {
 public:
  explicit MyRatingsPage(PageContext& context);
};

}  // namespace qmv::gtk
