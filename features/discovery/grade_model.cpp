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

std::vector<GradeModel> GradeModel::listWithArray(const Json& array) {
  std::vector<GradeModel> grades;
  if (!array.is_array()) return grades;
  for (const Json& element : array) grades.emplace_back(element);
  return grades;
}

}  // namespace qmv
