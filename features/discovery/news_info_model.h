#pragma once
// One message to the member. The server puts the message's title under "contact".
#include <string>

#include "core/common/base_model.h"
#include "core/common/json.h"

namespace qmv {

class NewsInfoModel : public BaseModel {
 public:
  NewsInfoModel() = default;
  explicit NewsInfoModel(const Json& dic);

  std::string title;  // from "contact", not "title"
  std::string time;
  std::string content;
  std::string isRead;
};

}  // namespace qmv
