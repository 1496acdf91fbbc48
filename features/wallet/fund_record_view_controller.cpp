#include "features/wallet/fund_record_view_controller.h"

#include <iterator>

namespace qmv {

FundRecordViewController::FundRecordViewController(long kind)
    : kind_(kind >= 0 && kind < FundRecordModel::kKindCount ? kind : 0) {}

std::vector<std::string> FundRecordViewController::kinds() {
  return {std::begin(wallet_texts::kFundKinds), std::end(wallet_texts::kFundKinds)};
}

bool FundRecordViewController::selectKind(long kind) {
  if (kind < 0 || kind >= FundRecordModel::kKindCount) return false;
  kind_ = kind;
  count_.clear();
  clearRows();
  refresh();
  return true;
}

std::shared_ptr<TopUpRecordNetApi> FundRecordViewController::makeRequest(long page) {
  return std::make_shared<TopUpRecordNetApi>(std::to_string(page), std::to_string(kind_));
}

std::vector<FundRecordModel> FundRecordViewController::rowsOf(const TopUpRecordNetApi& answered) {
  return answered.getRecords();
}

void FundRecordViewController::answered(const TopUpRecordNetApi& answered) {
  count_ = answered.getCount();
}

}  // namespace qmv
