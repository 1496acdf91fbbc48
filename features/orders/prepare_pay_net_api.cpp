#include "features/orders/prepare_pay_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

PreparePayNetApi::PreparePayNetApi(std::string amount, std::string type, std::string storeId, bool useBalance)
    : amount(std::move(amount)), type(std::move(type)), storeId(std::move(storeId)), useBalance(useBalance) {}

PreparePayNetApi::PreparePayNetApi(std::string amount, std::string type, std::string storeId, bool useBalance,
                                   std::string activityId, std::string activityCount, std::string isFirstOrder)
    : amount(std::move(amount)),
      type(std::move(type)),
      storeId(std::move(storeId)),
      useBalance(useBalance),
      activityId(std::move(activityId)),
      activityCount(std::move(activityCount)),
      isFirstOrder(std::move(isFirstOrder)) {}

PreparePayNetApi::PreparePayNetApi(std::string amount, std::string type, std::string productId, std::string series,
                                   std::string shareCount, bool useBalance)
    : amount(std::move(amount)),
      type(std::move(type)),
      useBalance(useBalance),
      productId(std::move(productId)),
      series(std::move(series)),
      shareCount(std::move(shareCount)) {}

std::string PreparePayNetApi::requestUrl() const {
  if (!productId.empty()) return "postPayForIndiana";
  if (!activityId.empty()) return "postPayForActivity";
  return "postPayForStore";
}

Json PreparePayNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, amount, "totalFee");
  setCustomString(arguments, type, "accountType");
  setCustomString(arguments, useBalance ? "true" : "false", "useBalance");
  if (!productId.empty()) {
    setCustomString(arguments, productId, "productId");
    setCustomString(arguments, series, "series");
    setCustomString(arguments, shareCount, "acount");
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
