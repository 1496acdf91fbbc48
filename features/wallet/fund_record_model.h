#pragma once
// One entry of the member's fund records ("getTopUpListForUser"): money in or out of the
// balance. Every field is text as sent; `amount` is signed whole fen (negative: money out).
#include <string>
#include <vector>

#include "core/common/base_model.h"
#include "core/common/json.h"

namespace qmv {

class FundRecordModel : public BaseModel {
 public:
  // The ledger's kinds, indexed by the filter's "type" value (0 is every kind).
  static constexpr const char* kKinds[] = {"", "topup", "pay", "withdraw", "refund", "prize"};
  static constexpr long kKindCount = 6;

  FundRecordModel() = default;
  // Reads "id", "amount", "type", "title", "orderId" and "time"; anything but an object
  // gives a record of empty texts.
  explicit FundRecordModel(const Json& dic);

  static std::vector<FundRecordModel> listWithArray(const Json& array);

  // The amount in yuan with its sign, "+12.00" or "-34.00" ("0.00" for zero); an amount
  // that is not a whole number of fen reads as zero.
  std::string amountText() const;
  // The kind as the filter names it ("充值", "消费", ...); "" for a kind it does not know.
  std::string kindText() const;

  std::string recordId;  // "id"
  std::string amount;
  std::string type;  // "topup", "pay", "withdraw", "refund" or "prize"
  std::string title;
  std::string orderId;  // the order, card or wheel the entry belongs to
  std::string time;
};

}  // namespace qmv
