#include "features/discovery/grade_store_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

GradeStoreNetApi::GradeStoreNetApi(std::string orderId, std::string star, std::string content)
    : orderId(std::move(orderId)), star(std::move(star)), content(std::move(content)) {}

Json GradeStoreNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, orderId, "orderId");
  setCustomString(arguments, star, "star");
  setCustomString(arguments, content, "content");
  return arguments;
}

}  // namespace qmv
