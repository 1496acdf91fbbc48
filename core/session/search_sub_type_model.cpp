#include "core/session/search_sub_type_model.h"

namespace qmv {

SearchSubTypeModel::SearchSubTypeModel(const Json& dic)
    : BaseModel(dic), name(strForKey(dic, "name")), typeId(strForKey(dic, "id")), imgURL(strForKey(dic, "imgURL")) {}

}  // namespace qmv
