#include "features/orders/prepare_pay_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

PreparePayNetApi::PreparePayNetApi(std::string amount, std::string type, std::string storeId, bool useBlance)
    : amount(std::move(amount)), type(std::move(type)), storeId(std::move(storeId)), useBlance(useBlance) {}

PreparePayNetApi::PreparePayNetApi(std::string amount, std::string type, std::string storeId, bool useBlance,
                                   std::string activityId, std::string activityCount, std::string isFirstOrder)
    : amount(std::move(amount)),
      type(std::move(type)),
      storeId(std::move(storeId)),
      useBlance(useBlance),
      activityId(std::move(activityId)),
      activityCount(std::move(activityCount)),
      isFirstOrder(std::move(isFirstOrder)) {}

PreparePayNetApi::PreparePayNetApi(std::string amount, std::string type, std::string productId, std::string series,
                                   std::string acount, bool useBlance)
    : amount(std::move(amount)),
      type(std::move(type)),
      useBlance(useBlance),
      productId(std::move(productId)),
      series(std::move(series)),
      acount(std::move(acount)) {}

std::string PreparePayNetApi::requestUrl() const {
  if (!productId.empty()) return "postPayForIndiana";
  if (!activityId.empty()) return "postPayForActivity";
  return "postPayForStore";
}

Json PreparePayNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, amount, "totalFee");
  setCustomString(arguments, type, "accountType");
  setCustomString(arguments, useBlance ? "true" : "false", "useBalance");
  if (!productId.empty()) {
    setCustomString(arguments, productId, "productId");
    setCustomString(arguments, series, "series");
    setCustomString(arguments, acount, "acount");
  } else if (!activityId.empty()) {
    setCustomString(arguments, storeId, "storeId");
    setCustomString(arguments, activityId, "activityId");
    setCustomString(arguments, activityCount, "activityCount");
    setCustomString(arguments, isFirstOrder, "isFirstOrder");
  } else {
    setCustomString(arguments, storeId, "storeId");
  }
  return arguments;
}

std::optional<OrderInfoModel> PreparePayNetApi::getOrderInfo() const {
  const Json& data = responseData();
  if (!data.is_object()) return std::nullopt;
  return OrderInfoModel(data);
}

std::string PreparePayNetApi::prepayId() const { return strForKey(responseData(), "prepay_id"); }

std::string PreparePayNetApi::balancePart() const { return strForKey(responseData(), "blance"); }

std::string PreparePayNetApi::amountDue() const { return strForKey(responseData(), "money"); }

}  // namespace qmv
