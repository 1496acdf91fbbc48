#pragma once
// One administrative area (province, city or district) as read from an `areas` row.
// Every field is text, read with strForKey, so a missing or NULL column gives "".
#include <string>

#include "core/common/base_model.h"

namespace qmv {

class AreaModel : public BaseModel {
 public:
  AreaModel() = default;
  // Reads "area_id", "parent_id", "area_name", "py_name" and "area_type".
  explicit AreaModel(const Json& dic);

  std::string areaID;
  std::string parentID;
  std::string areaName;
  std::string areaPY;
  std::string areaType;  // "2" for cities
};

}  // namespace qmv
