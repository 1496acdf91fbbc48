#pragma once
// The member's own ratings ("我的评价"), headless: every store he rated, with its stars,
// comment and day, newest first as served, paged like every list of the client.
//
// Choices: a row opens its store's screen (nothing for a row without a store id), the way
// a rated order's detail leads back to its store.
#include <cstddef>
#include <memory>
#include <vector>

#include "core/session/paged_list_controller.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/grade_model.h"
#include "features/discovery/my_grade_net_api.h"

namespace qmv {

class MyGradeViewController : public PagedListController<GradeModel, MyGradeNetApi> {
 public:
  static constexpr const char* kTitle = discovery_texts::kMyRatingsTitle;
  static constexpr const char* kEmptyText = discovery_texts::kNoRatings;

  MyGradeViewController() = default;
  ~MyGradeViewController() override = default;

  const char* title() const { return kTitle; }
  // Whether a rating leads to its store: it names one.
  static bool leadsToStore(const GradeModel& grade) { return !grade.storeId.empty(); }
  // Pushes the store screen of the row's store; false when the row does not lead to one.
  bool openRow(std::size_t row);

 protected:
  std::shared_ptr<MyGradeNetApi> makeRequest(long page) override {
    return std::make_shared<MyGradeNetApi>(std::to_string(page));
  }
  std::vector<GradeModel> rowsOf(const MyGradeNetApi& answered) override { return answered.getGrades(); }
};

}  // namespace qmv
