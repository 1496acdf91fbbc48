#include "features/wallet/voucher_model.h"

#include "core/common/dictionary.h"
#include "features/wallet/wallet_texts.h"

namespace qmv {
namespace {

bool plainYuan(const std::string& text) {
  const auto point = text.find('.');
  const std::string whole = text.substr(0, point);
  const std::string cents = point == std::string::npos ? "" : text.substr(point + 1);
  const auto digits = [](const std::string& s) {
    return s.find_first_not_of("0123456789") == std::string::npos;
  };
  return !whole.empty() && whole.size() <= 12 && digits(whole) && digits(cents) && cents.size() <= 2 &&
         (point == std::string::npos || !cents.empty());
}

}  // namespace

VoucherModel::VoucherModel(const Json& dic)
    : BaseModel(dic),
      voucherId(strForKey(dic, "voucherId")),
      title(strForKey(dic, "title")),
      price(strForKey(dic, "price")),
      storeId(strForKey(dic, "storeId")),
      storeName(strForKey(dic, "storeName")),
      start(strForKey(dic, "start")),
      date(strForKey(dic, "date")),
      status(strForKey(dic, "status")) {}

std::vector<VoucherModel> VoucherModel::listWithArray(const Json& array) { return modelsWithArray<VoucherModel>(array); }

std::string VoucherModel::valueText() const {
  return plainYuan(price) ? price + wallet_texts::kVoucherYuanSuffix : std::string();
}

std::string VoucherModel::storeText() const {
  return storeId.empty() && storeName.empty() ? std::string(wallet_texts::kVoucherAllStores) : storeName;
}

std::string VoucherModel::validityText() const {
  if (date.empty()) return "";
  if (start.empty()) return wallet_texts::kVoucherValidUntil + date;
  return start + wallet_texts::kVoucherDateSeparator + date;
}

std::string VoucherModel::stateText() const {
  if (status == kUnused) return wallet_texts::kVoucherUnused;
  if (status == kUsed) return wallet_texts::kVoucherUsed;
  if (status == kExpired) return wallet_texts::kVoucherExpired;
  return "";
}

}  // namespace qmv
