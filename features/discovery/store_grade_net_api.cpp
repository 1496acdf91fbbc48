#include "features/discovery/store_grade_net_api.h"

#include <utility>

#include "core/common/dictionary.h"
#include "core/common/paged_list.h"

namespace qmv {

StoreGradeNetApi::StoreGradeNetApi(std::string storeId, std::string page, std::string star)
    : storeId(std::move(storeId)), page(std::move(page)), star(std::move(star)) {}

Json StoreGradeNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, storeId, "storeId");
  setCustomString(arguments, page, "page");
  setCustomString(arguments, star, "star");
  return arguments;
}

std::vector<GradeModel> StoreGradeNetApi::getGrades() const { return GradeModel::listWithArray(responseList()); }

std::string StoreGradeNetApi::getCount() const {
  return listCount(responseData());
}

}  // namespace qmv
