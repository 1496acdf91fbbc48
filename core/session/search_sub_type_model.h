#pragma once
// A sub-category of the category catalogue ("火锅" under "美食"). Its id is what a
// search sends as "type".
#include <string>

#include "core/common/base_model.h"

namespace qmv {

class SearchSubTypeModel : public BaseModel {
 public:
  SearchSubTypeModel() = default;
  // Reads "name", "id" and "imgURL"; num is not sent by the server.
  explicit SearchSubTypeModel(const Json& dic);

  std::string name;
  std::string typeId;
  std::string imgURL;
  std::string num;
};

}  // namespace qmv
