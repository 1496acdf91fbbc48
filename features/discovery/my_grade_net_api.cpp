#include "features/discovery/my_grade_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

MyGradeNetApi::MyGradeNetApi(std::string page) : page(std::move(page)) {}

Json MyGradeNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, page, "page");
  return arguments;
}

std::vector<GradeModel> MyGradeNetApi::getGrades() const { return GradeModel::listWithArray(responseList()); }

}  // namespace qmv
