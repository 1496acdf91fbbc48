#pragma once
// One home-page banner: its picture and the page opened when it is tapped.
#include <string>

#include "core/common/base_model.h"
#include "core/common/json.h"

namespace qmv {

class ResourceModel : public BaseModel {
 public:
  ResourceModel() = default;
  explicit ResourceModel(const Json& dic);

  std::string title;
  std::string URL;     // from "url"
  std::string imgURL;  // from "imageURL"
};

}  // namespace qmv
