#pragma once
// One purchase of a store offer or of an activity ("commodity"), as listed by the order
// list, shown by the order-detail screens and answered by payment preparation. A plain
// value holder: every field is text as sent (see strForKey), never validated when built.
#include <string>
#include <vector>

#include "core/common/base_model.h"
#include "core/common/json.h"

namespace qmv {

class OrderInfoModel : public BaseModel {
 public:
  OrderInfoModel() = default;
  // Reads one JSON object; anything else gives a record of empty texts. `balancePaid` and
  // `money` are never read from the dictionary.
  explicit OrderInfoModel(const Json& dic);

  // One record per element of `array`, in order; a non-array gives none.
  static std::vector<OrderInfoModel> listWithArray(const Json& array);

  std::string storeId;
  std::string storeName;
  std::string time;       // payment time
  std::string isComment;  // "1" once rated
  std::string orderId;
  std::string price;      // unit price; the order's total is totalPrices
  // The system's blance.
  std::string balancePaid;  // balance used; filled by whoever knows it, never from JSON
  std::string money;      // filled by whoever knows it, never from JSON
  std::string name;       // product / activity name (detail screens)
  std::string orderName;  // product name of the list row
  std::string commodityId;
  std::string imageURL;
  std::string star;  // "0" when not rated yet
  std::string promotionCode;
  std::string phone;
  std::string number;  // quantity
  std::string totalPrices;
  std::string content;  // package description
  std::string status;
  std::string orderType;  // "1" store order, anything else activity order

  bool isStoreOrder() const { return orderType == "1"; }
};

}  // namespace qmv
