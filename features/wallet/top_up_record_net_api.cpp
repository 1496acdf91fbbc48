#include "features/wallet/top_up_record_net_api.h"

#include <utility>

#include "core/common/dictionary.h"
#include "core/common/paged_list.h"

namespace qmv {

TopUpRecordNetApi::TopUpRecordNetApi(std::string page, std::string type)
    : page(std::move(page)), type(std::move(type)) {}

Json TopUpRecordNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, page, "page");
  setCustomString(arguments, type, "type");
  return arguments;
}

std::vector<FundRecordModel> TopUpRecordNetApi::getRecords() const {
  return FundRecordModel::listWithArray(responseList());
}

std::string TopUpRecordNetApi::getCount() const {
  return listCount(responseData());
}

}  // namespace qmv
