#pragma once
// One of the member's vouchers ("getMyVoucher"): its value, the store it is for, its days
// of validity and its state. Every field is text as sent; the texts below are what the
// voucher list shows of them.
#include <string>
#include <vector>

#include "core/common/base_model.h"
#include "core/common/json.h"

namespace qmv {

class VoucherModel : public BaseModel {
 public:
  // Values of `status`.
  static constexpr const char* kUnused = "0";
  static constexpr const char* kUsed = "1";
  static constexpr const char* kExpired = "2";

  VoucherModel() = default;
  // Reads "voucherId", "title", "price", "storeId", "storeName", "start", "date" and
  // "status"; anything but an object gives a record of empty texts.
  explicit VoucherModel(const Json& dic);

  static std::vector<VoucherModel> listWithArray(const Json& array);

  // "20.00元"; "" when the price is not a plain amount of yuan (at most two decimals).
  std::string valueText() const;
  // The store's name; "全部门店通用" for a voucher of no store.
  std::string storeText() const;
  // "2026-01-01至2026-03-31", or "有效期至2026-03-31" without a first day; "" without a last.
  std::string validityText() const;
  // "未使用", "已使用" or "已过期"; "" for a state the client does not know.
  std::string stateText() const;

  std::string voucherId;
  std::string title;
  std::string price;  // yuan
  std::string storeId;
  std::string storeName;
  std::string start;  // first day, yyyy-MM-dd
  std::string date;   // last day
  std::string status;
};

}  // namespace qmv
