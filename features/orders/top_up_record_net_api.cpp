#include "features/orders/top_up_record_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

TopUpRecordNetApi::TopUpRecordNetApi(std::string page, std::string type)
    : page(std::move(page)), type(std::move(type)) {}

Json TopUpRecordNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, page, "page");
  setCustomString(arguments, type, "type");
  return arguments;
}

}  // namespace qmv
