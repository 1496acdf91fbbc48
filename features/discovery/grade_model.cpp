#include "features/discovery/grade_model.h"

#include "core/common/dictionary.h"

namespace qmv {

GradeModel::GradeModel(const Json& dic)
    : BaseModel(dic),
      userName(strForKey(dic, "userName")),
      nickName(strForKey(dic, "nickName")),
      star(strForKey(dic, "star")),
      content(strForKey(dic, "content")),
      time(strForKey(dic, "time")),
      storeId(strForKey(dic, "storeId")),
      storeName(strForKey(dic, "storeName")) {}

std::vector<GradeModel> GradeModel::listWithArray(const Json& array) { return modelsWithArray<GradeModel>(array); }

}  // namespace qmv
