#include "features/discovery/category_screen_view.h"

#include "features/discovery/discovery_texts.h"

namespace qmv {
namespace {

constexpr const char* kAllName = discovery_texts::kAllInCategory;
constexpr const char* kOtherName = discovery_texts::kOtherInCategory;

}  // namespace

const SearchTypeModel* CategoryScreenView::selectedMain() const {
  if (selectedLeftIndex < 0 || selectedLeftIndex >= static_cast<long>(categoryList.size())) return nullptr;
  return &categoryList[static_cast<std::size_t>(selectedLeftIndex)];
}

const SearchSubTypeModel* CategoryScreenView::selectedSub() const {
  const SearchTypeModel* main = selectedMain();
  if (!main || selectedRightIndex < 0 || selectedRightIndex >= static_cast<long>(main->list.size())) return nullptr;
  return &main->list[static_cast<std::size_t>(selectedRightIndex)];
}

void CategoryScreenView::selectLeftRow(long index) {
  if (index < 0 || index >= static_cast<long>(categoryList.size())) return;
  selectedLeftIndex = index;
  selectedRightIndex = -1;
  if (categoryList[static_cast<std::size_t>(index)].list.empty() && delegate) delegate->screenViewDidSelected(*this);
}

void CategoryScreenView::selectRightRow(long index) {
  const SearchTypeModel* main = selectedMain();
  if (!main || index < 0 || index >= static_cast<long>(main->list.size())) return;
  selectedRightIndex = index;
  if (delegate) delegate->screenViewDidSelected(*this);
}

std::string CategoryScreenView::getSelectedItem() const {
  const SearchTypeModel* main = selectedMain();
  if (!main) return {};
  if (selectedRightIndex < 0) return main->name;
  const SearchSubTypeModel* sub = selectedSub();
  if (!sub) return {};
  if (sub->name == kOtherName) return main->name + "-" + kOtherName;
  if (sub->name == kAllName) return main->name;
  return sub->name;
}

std::string CategoryScreenView::getSelectedTypeId() const {
  const SearchTypeModel* main = selectedMain();
  if (!main) return {};
  if (selectedRightIndex < 0) return main->typeId;
  const SearchSubTypeModel* sub = selectedSub();
  return sub ? sub->typeId : std::string();
}

bool CategoryScreenView::resetCategory(const std::string& typeId) {
  for (std::size_t i = 0; i < categoryList.size(); ++i) {
    const auto& main = categoryList[i];
    if (main.typeId != typeId) continue;
    selectedLeftIndex = static_cast<long>(i);
    selectedRightIndex = -1;
    for (std::size_t j = 0; j < main.list.size(); ++j) {
      if (main.list[j].typeId == typeId) {
        selectedRightIndex = static_cast<long>(j);
        break;
      }
    }
    return true;
  }
  for (std::size_t i = 0; i < categoryList.size(); ++i) {
    const auto& subs = categoryList[i].list;
    for (std::size_t j = 0; j < subs.size(); ++j) {
      if (subs[j].typeId != typeId) continue;
      selectedLeftIndex = static_cast<long>(i);
      selectedRightIndex = static_cast<long>(j);
      return true;
    }
  }
  return false;
}

}  // namespace qmv
