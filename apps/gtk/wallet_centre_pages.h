#pragma once
// The wallet tab's lists: the fund records with their kind filter, and the vouchers. Both
// page with the load-more button and reload page 1 on a pull.
#include <vector>

#include "apps/gtk/paged_list_page.h"
#include "features/wallet/fund_record_view_controller.h"
#include "features/wallet/my_voucher_view_controller.h"

namespace qmv::gtk {

// The kind filter over the list; choosing a kind shows only the rows of its page 1.
class FundRecordsPage : public PagedListPage<FundRecordViewController, FundRecordModel> {
 public:
  // `kind`: the filter to open on, as the screen takes it.
  FundRecordsPage(PageContext& context, long kind);
  void refresh() override;

 private:
  std::vector<Gtk::ToggleButton*> kinds_;
};

class VouchersPage : public PagedListPage<MyVoucherViewController, VoucherModel> {
 public:
  explicit VouchersPage(PageContext& context);
};

}  // namespace qmv::gtk
