#pragma once
// The two-column category picker of the store filter, headless: main categories on the
// left, the chosen one's sub-categories on the right. A choice is complete when a
// sub-category is tapped, or at once when the main category has none ("全部分类").
#include <string>
#include <vector>

#include "core/session/search_type_model.h"

namespace qmv {

class CategoryScreenView;

class CategoryScreenViewDelegate {
 public:
  virtual ~CategoryScreenViewDelegate() = default;
  virtual void screenViewDidSelected(CategoryScreenView& view) = 0;
};

class CategoryScreenView {
 public:
  // The categories shown (the name is the screen's own spelling).
  std::vector<SearchTypeModel> categoryList;  // the system's cagetoryDataList
  long selectedLeftIndex = 0;
  long selectedRightIndex = -1;                    // -1: no sub-category chosen
  CategoryScreenViewDelegate* delegate = nullptr;  // not owned

  // A tap on a main category row: selects it and clears the sub-category; completes the
  // choice when it has no sub-categories. Out-of-range rows are ignored.
  void selectLeftRow(long index);
  // A tap on a sub-category row of the selected main category; completes the choice.
  void selectRightRow(long index);

  // The text of the category filter button: the main name with no sub-category or with
  // "全部", "<main>-其他" for "其他", otherwise the sub-category's name. "" when the
  // selection does not point into the list.
  std::string getSelectedItem() const;
  // The id a search sends as "type": the sub-category's, else the main category's.
  std::string getSelectedTypeId() const;

  // Points the selection at the category with `typeId` (a main category, with its "全部"
  // entry when it has one, or else a sub-category). False, and nothing changes, when no
  // category has that id.
  bool resetCategory(const std::string& typeId);

 private:
  const SearchTypeModel* selectedMain() const;
  const SearchSubTypeModel* selectedSub() const;
};

}  // namespace qmv
