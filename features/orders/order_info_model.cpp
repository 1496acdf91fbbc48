#include "features/orders/order_info_model.h"

#include "core/common/dictionary.h"

namespace qmv {

OrderInfoModel::OrderInfoModel(const Json& dic)
    : BaseModel(dic),
      storeId(strForKey(dic, "storeId")),
      storeName(strForKey(dic, "storeName")),
      time(strForKey(dic, "time")),
      isComment(strForKey(dic, "isComment")),
      orderId(strForKey(dic, "orderId")),
      price(strForKey(dic, "price")),
      name(strForKey(dic, "name")),
      orderName(strForKey(dic, "orderName")),
      commodityId(strForKey(dic, "commodityId")),
      imageURL(strForKey(dic, "imageURL")),
      star(strForKey(dic, "star")),
      promotionCode(strForKey(dic, "promotionCode")),
      phone(strForKey(dic, "phone")),
      number(strForKey(dic, "number")),
      totalPrices(strForKey(dic, "totalPrices")),
      content(strForKey(dic, "content")),
      status(strForKey(dic, "status")),
      orderType(strForKey(dic, "orderType")) {}

std::vector<OrderInfoModel> OrderInfoModel::listWithArray(const Json& array) {
  return modelsWithArray<OrderInfoModel>(array);
}

}  // namespace qmv
