#pragma once
// A store's comments ("用户评论"), headless: the screen the store screen's "查看更多评论"
// pushes with the store's id. Paged like every list of the client, with a star filter.
//
// Choices: the filter sends "star" "0" for every comment and "1".."5" for one star count;
// choosing a star forgets the rows shown and loads its page 1, as the order tabs do. The
// header reads "%@条评论" with "data"."count" when the answer carries a whole number. A
// screen pushed without a store id sends nothing and shows no rows.
#include <memory>
#include <string>
#include <vector>

#include "core/session/paged_list_controller.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/grade_model.h"
#include "features/discovery/store_grade_net_api.h"

namespace qmv {

class UserCommitViewController : public PagedListController<GradeModel, StoreGradeNetApi> {
 public:
  static constexpr const char* kTitle = discovery_texts::kCommentsTitle;
  static constexpr const char* kEmptyText = discovery_texts::kNoComments;
  static constexpr long kStarCount = 6;  // 0 every comment, 1..5 one star count

  // `storeId`: the pushed payload's "storeId".
  explicit UserCommitViewController(std::string storeId, long star = 0);
  ~UserCommitViewController() override = default;

  const char* title() const { return kTitle; }
  const std::string& storeId() const { return storeId_; }
  // The filter's labels, indexed by the star value.
  static std::vector<std::string> starFilters();
  long star() const { return star_; }
  // Selects the star (0..5) and loads its page 1; false, sending nothing, for another value.
  bool selectStar(long star);
  // The number of comments of the star as the last correct answer gave it; "" without one.
  const std::string& count() const { return count_; }
  // "%@条评论" of that count; "" without one.
  std::string countText() const;
  // A rating as stars, "★★★☆☆"; "" for a rating outside 0..5.
  static std::string starsText(const std::string& star);

 protected:
  std::shared_ptr<StoreGradeNetApi> makeRequest(long page) override;
  std::vector<GradeModel> rowsOf(const StoreGradeNetApi& answered) override { return answered.getGrades(); }
  void answered(const StoreGradeNetApi& answered) override { count_ = answered.getCount(); }

 private:
  std::string storeId_;
  long star_;
  std::string count_;
};

}  // namespace qmv
