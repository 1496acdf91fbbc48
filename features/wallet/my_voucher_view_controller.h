#pragma once
// The vouchers screen ("我的代金券"), headless: the member's vouchers, paged like every
// list of the client, each row its value, store, days of validity and state.
//
// Choices: the list is shown in the server's order and every state is listed (used and
// expired vouchers too, marked by their state text), as the order list shows every status;
// the state is the server's ("0" unused, "1" used, "2" expired), never recomputed from the
// dates on the device, whose clock may be wrong. A row opens nothing.
#include <memory>
#include <vector>

#include "core/session/paged_list_controller.h"
#include "features/wallet/my_voucher.h"
#include "features/wallet/voucher_model.h"
#include "features/wallet/wallet_texts.h"

namespace qmv {

class MyVoucherViewController : public PagedListController<VoucherModel, MyVoucher> {
 public:
  static constexpr const char* kTitle = wallet_texts::kVoucherTitle;
  static constexpr const char* kEmptyText = wallet_texts::kNoVouchers;

  MyVoucherViewController() = default;
  ~MyVoucherViewController() override = default;

  const char* title() const { return kTitle; }

 protected:
  std::shared_ptr<MyVoucher> makeRequest(long page) override {
    return std::make_shared<MyVoucher>(std::to_string(page));
  }
  std::vector<VoucherModel> rowsOf(const MyVoucher& answered) override {
    return answered.getVouchers();
  }
};

}  // namespace qmv
