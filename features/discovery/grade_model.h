#pragma once
// One member's rating of a store, as listed on the store screen and the comment list.
#include <string>
#include <vector>

#include "core/common/base_model.h"
#include "core/common/json.h"

namespace qmv {

class GradeModel : public BaseModel {
 public:
  GradeModel() = default;
  // Reads one JSON object; anything else gives a record of empty texts.
  explicit GradeModel(const Json& dic);
  // One record per element of `array`; a non-array gives none.
  static std::vector<GradeModel> listWithArray(const Json& array);

  std::string userName;  // masked phone
  std::string nickName;
  std::string star;
  std::string content;
  std::string time;
  std::string storeId;
  std::string storeName;
};

}  // namespace qmv
