#pragma once
// The fund records screen ("资金明细"), headless: the member's money in and out of the
// balance, newest first, filtered by kind and paged like every list of the client.
//
// Choices: the filter's kinds are the ledger's (全部, 充值, 消费, 提现, 退款, 奖励), sent as
// "type" "0".."5". Choosing a kind forgets the rows shown and loads its page 1, so a
// failed first page never shows another kind's rows under the new label. "count" of the
// answer, when it is a number, is the number of records of that kind.
#include <memory>
#include <string>
#include <vector>

#include "core/session/paged_list_controller.h"
#include "features/wallet/fund_record_model.h"
#include "features/wallet/top_up_record_net_api.h"
#include "features/wallet/wallet_texts.h"

namespace qmv {

class FundRecordViewController : public PagedListController<FundRecordModel, TopUpRecordNetApi> {
 public:
  static constexpr const char* kTitle = wallet_texts::kFundRecordTitle;
  static constexpr const char* kEmptyText = wallet_texts::kNoFundRecords;

  // `kind`: the filter to open on (0..5; anything else opens 全部).
  explicit FundRecordViewController(long kind = 0);
  ~FundRecordViewController() override = default;

  const char* title() const { return kTitle; }
  // The filter's labels, indexed by kind.
  static std::vector<std::string> kinds();
  long kind() const { return kind_; }
  // Selects the kind (0..5) and loads its page 1; false, sending nothing, for another value.
  bool selectKind(long kind);
  // The number of records of the kind as the last correct answer gave it; "" when it gave none.
  const std::string& count() const { return count_; }

 protected:
  std::shared_ptr<TopUpRecordNetApi> makeRequest(long page) override;
  std::vector<FundRecordModel> rowsOf(const TopUpRecordNetApi& answered) override;
  void answered(const TopUpRecordNetApi& answered) override;

 private:
  long kind_;
  std::string count_;
};

}  // namespace qmv
