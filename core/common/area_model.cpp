#include "core/common/area_model.h"

namespace qmv {

AreaModel::AreaModel(const Json& dic)
    : BaseModel(dic),
      areaID(strForKey(dic, "area_id")),
      parentID(strForKey(dic, "parent_id")),
      areaName(strForKey(dic, "area_name")),
      areaPY(strForKey(dic, "py_name")),
      areaType(strForKey(dic, "area_type")) {}

}  // namespace qmv
