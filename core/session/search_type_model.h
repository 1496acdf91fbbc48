#pragma once
// A main category with its sub-categories, from the catalogue or the home templates.
// The home page's look (colour, pictures, page shown) is set by the session's default
// list, never read from the server.
#include <string>
#include <vector>

#include "core/common/base_model.h"
#include "core/common/color.h"
#include "core/session/search_sub_type_model.h"

namespace qmv {

class SearchTypeModel : public BaseModel {
 public:
  SearchTypeModel() = default;
  // Reads "name", "id" and one sub-category per element of the "list" array, in order
  // (a "list" that is not an array gives none).
  explicit SearchTypeModel(const Json& dic);

  std::string name;
  std::string typeId;
  std::vector<SearchSubTypeModel> list;
  Color nameColor;
  std::string bigImageName;
  std::string pageCtrlSelectedImageName;
  std::string pageCtrlUnselectImageName;
  long scrollIndex = 0;
};

}  // namespace qmv
