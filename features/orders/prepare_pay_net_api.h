#pragma once
// Prepares a payment on the server. What is bought picks the endpoint and the
// arguments: a draw product ("postPayForIndiana"), an activity offer
// ("postPayForActivity") or a direct payment to a store ("postPayForStore"). amount is
// the full total in whole fen; with useBalance the server takes the balance first.
// "useBalance" travels as the text "true" or "false"; "acount" is the server's spelling.
#include <optional>
#include <string>

#include "core/request/net_api.h"
#include "features/orders/order_info_model.h"

namespace qmv {

class PreparePayNetApi : public NetApi<PreparePayNetApi> {
 public:
  // Paying a store.
  PreparePayNetApi(std::string amount, std::string type, std::string storeId, bool useBalance);
  // Buying an activity offer.
  PreparePayNetApi(std::string amount, std::string type, std::string storeId, bool useBalance, std::string activityId,
                   std::string activityCount, std::string isFirstOrder);
  // Buying shares of a draw product.
  PreparePayNetApi(std::string amount, std::string type, std::string productId, std::string series,
                   std::string shareCount, bool useBalance);

  std::string requestUrl() const override;
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  // "data" of the answer as an order; nullopt when it is not a JSON object.
  std::optional<OrderInfoModel> getOrderInfo() const;
  // "data"."prepay_id", what every payment library is handed; empty when "data" is not
  // a JSON object or holds no usable "prepay_id".
  std::string prepayId() const;
  // What the server took from the balance and what is left for the channel, in yuan
  // ("data"."blance" and "data"."money"); empty when it did not say.
  std::string balancePart() const;
  std::string amountDue() const;

  std::string amount;
  std::string type;  // channel code: "0" Alipay, "1" WeChat, "2" UnionPay, "3" balance
  std::string storeId;
  bool useBalance = false;  // the system's useBlance
  std::string activityId;
  std::string activityCount;
  std::string isFirstOrder;
  std::string productId;
  std::string series;
  std::string shareCount;  // the system's acount
};

}  // namespace qmv
