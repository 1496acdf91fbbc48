#include "features/discovery/store_grade_net_api.h"

#include <algorithm>
#include <utility>

#include "core/common/dictionary.h"

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
  const std::string count = strForKey(responseData(), "count");
  const bool digits = !count.empty() && count.size() <= 18 &&
                      std::all_of(count.begin(), count.end(), [](char c) { return c >= '0' && c <= '9'; });
  return digits ? count : std::string();
}

}  // namespace qmv
