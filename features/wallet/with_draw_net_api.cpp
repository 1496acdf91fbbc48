#include "features/wallet/with_draw_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

WithDrawNetApi::WithDrawNetApi(std::string amount) : amount(std::move(amount)) {}

Json WithDrawNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, amount, "amount");
  return arguments;
}

}  // namespace qmv
