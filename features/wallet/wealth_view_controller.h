#pragma once
// The wallet tab ("钱包"), headless: the balance, the bound card's line and the ways to
// withdrawal, the bank card, the fund records and the vouchers.
//
// Choices: every appearance refreshes the member record (for the balance, read in place
// into selfInfo) and the bound card; onRefreshed follows once both have ended. The balance
// is "%.2f" of the fen balance ÷ 100, "0.00" without a member. The card line is the bank
// and the card's last four digits ("中国银行 尾号3446"), or "未绑定银行卡" once the answer
// said there is none; it stays "" until a card answer arrived, and a failed answer keeps
// what was shown. Every entry opens its screen whatever the card: the withdrawal and card
// screens say themselves what is missing. Signed out, an appearance sends nothing (the
// tab only looks; an unsent session must not force the login screen on the member) and
// forgets the card of the member before.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/session/base_view_controller.h"
#include "features/wallet/bank_model.h"
#include "features/wallet/wallet_refresh.h"
#include "features/wallet/wallet_texts.h"

namespace qmv {

class WealthViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = wallet_texts::kWealthTitle;
  static constexpr const char* kBalanceLabel = wallet_texts::kBalanceLabel;

  struct Entry {
    const char* title;
    const char* screen;
  };
  static constexpr Entry kEntries[] = {{wallet_texts::kWithDrawEntry, wallet_texts::kWithDrawScreen},
                                       {wallet_texts::kBankCardEntry, wallet_texts::kMyBankCardScreen},
                                       {wallet_texts::kFundRecordEntry, wallet_texts::kFundRecordScreen},
                                       {wallet_texts::kVoucherEntry, wallet_texts::kVoucherScreen}};

  WealthViewController() = default;
  WealthViewController(const WealthViewController&) = delete;
  WealthViewController& operator=(const WealthViewController&) = delete;

  const char* title() const { return kTitle; }
  // Refreshes the member record and the bound card; signed out, clears the card line and
  // sends nothing (onRefreshed does not follow).
  void viewWillAppear();

  std::string balanceText() const;
  const std::string& cardLine() const { return cardLine_; }
  const std::optional<BankModel>& bank() const { return bank_; }
  bool isRefreshing() const { return refresh_.isRunning(); }
  // Pushes the screen of kEntries[index]; nothing for an index out of range.
  void openEntry(std::size_t index);

  bool hasData() const override { return !cardLine_.empty(); }

  std::function<void()> onRefreshed;

 private:
  void cardAnswered(std::optional<BankModel> bank);

  std::optional<BankModel> bank_;
  std::string cardLine_;
  WalletRefresh refresh_{*this};
};

}  // namespace qmv
