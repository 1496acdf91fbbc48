#include "features/wallet/my_voucher.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

MyVoucher::MyVoucher(std::string page) : page(std::move(page)) {}

Json MyVoucher::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, page, "page");
  return arguments;
}

std::vector<VoucherModel> MyVoucher::getVouchers() const { return VoucherModel::listWithArray(responseList()); }

}  // namespace qmv
