#include "apps/gtk/wallet_centre_pages.h"

namespace qmv::gtk {

namespace {

// The kind as the filter names it, or as sent when the client does not know it.
RowTexts recordTexts(const FundRecordModel& record) {
  const std::string kind = record.kindText().empty() ? record.type : record.kindText();
  return {record.title, record.time + "  " + kind, record.amountText(), false};
}

RowTexts voucherTexts(const VoucherModel& voucher) {
  return {voucher.title, voucher.storeText() + "  " + voucher.stateText() + "\n" + voucher.validityText(),
          voucher.valueText(), false};
}

}  // namespace

FundRecordsPage::FundRecordsPage(PageContext& context, long kind)
    : PagedListPage(context, [](const FundRecordModel& r) { return r.recordId; }, &recordTexts, kind) {
  addAction("select-kind", Glib::VariantType("i"), [this](const Glib::VariantBase& value) {
    screen().selectKind(Glib::VariantBase::cast_dynamic<Glib::Variant<gint32>>(value).get());
    refreshSoon();
  });
  body().append(*ui::filterBar(FundRecordViewController::kinds(), "page.select-kind", "kind", kinds_));
  start("fund-records");
}

void FundRecordsPage::refresh() {
  PagedListPage::refresh();
  ui::setActiveFilter(kinds_, screen().kind());
}

VouchersPage::VouchersPage(PageContext& context)
    : PagedListPage(context, [](const VoucherModel& v) { return v.voucherId; }, &voucherTexts) {
  start("vouchers");
}

}  // namespace qmv::gtk
