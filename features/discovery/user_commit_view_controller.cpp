#include "features/discovery/user_commit_view_controller.h"

#include <iterator>
#include <utility>

namespace qmv {

UserCommitViewController::UserCommitViewController(std::string storeId, long star)
    : storeId_(std::move(storeId)), star_(star >= 0 && star < kStarCount ? star : 0) {}

std::vector<std::string> UserCommitViewController::starFilters() {
  return {std::begin(discovery_texts::kStarFilters), std::end(discovery_texts::kStarFilters)};
}

bool UserCommitViewController::selectStar(long star) {
  if (star < 0 || star >= kStarCount) return false;
  star_ = star;
  count_.clear();
  clearRows();
  refresh();
  return true;
}

std::string UserCommitViewController::countText() const {
  return count_.empty() ? std::string() : count_ + discovery_texts::kCommentCountSuffix;
}

std::string UserCommitViewController::starsText(const std::string& star) {
  if (star.size() != 1 || star[0] < '0' || star[0] > '5') return "";
  const int full = star[0] - '0';
  std::string text;
  for (int i = 0; i < 5; ++i) text += i < full ? discovery_texts::kStarFull : discovery_texts::kStarEmpty;
  return text;
}

std::shared_ptr<StoreGradeNetApi> UserCommitViewController::makeRequest(long page) {
  if (storeId_.empty()) return nullptr;
  return std::make_shared<StoreGradeNetApi>(storeId_, std::to_string(page), std::to_string(star_));
}

}  // namespace qmv
