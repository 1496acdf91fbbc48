#include "features/wallet/top_up_record_net_api.h"

#include <algorithm>
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

std::vector<FundRecordModel> TopUpRecordNetApi::getRecords() const {
  return FundRecordModel::listWithArray(responseList());
}

std::string TopUpRecordNetApi::getCount() const {
  const std::string count = strForKey(responseData(), "count");
  const bool digits = !count.empty() && count.size() <= 18 &&
                      std::all_of(count.begin(), count.end(), [](char c) { return c >= '0' && c <= '9'; });
  return digits ? count : std::string();
}

}  // namespace qmv
