#include "features/orders/indiana_product_net_api.h"

#include <utility>

#include "core/common/dictionary.h"
#include "features/orders/amount_text.h"

namespace qmv {

IndianaProductNetApi::IndianaProductNetApi(std::string productId, std::string series)
    : productId(std::move(productId)), series(std::move(series)) {}

Json IndianaProductNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, productId, "productId");
  setCustomString(arguments, series, "series");
  return arguments;
}

std::optional<std::int64_t> IndianaProductNetApi::shareFen() const {
  return payableFen(strForKey(responseData(), "price"));
}

}  // namespace qmv
