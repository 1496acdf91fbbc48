#include "features/discovery/resource_model.h"

#include "core/common/dictionary.h"

namespace qmv {

ResourceModel::ResourceModel(const Json& dic)
    : BaseModel(dic), title(strForKey(dic, "title")), URL(strForKey(dic, "url")), imgURL(strForKey(dic, "imageURL")) {}

}  // namespace qmv
