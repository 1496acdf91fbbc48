#pragma once
// Reads what one share of a draw product costs. A page's pay link names the product and
// the number of shares but no amount; the pay-now screen shows shares × this price before
// anything is spent, and the server takes no other total for the draw.
#include <cstdint>
#include <optional>
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class IndianaProductNetApi : public NetApi<IndianaProductNetApi> {
 public:
  IndianaProductNetApi(std::string productId, std::string series);

  std::string requestUrl() const override { return "getIndianaProduct"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // "data"."price", the yuan of one share, in fen; nullopt unless it is a plain amount
  // that one checkout may take.
  std::optional<std::int64_t> shareFen() const;

  std::string productId;
  std::string series;
};

}  // namespace qmv
