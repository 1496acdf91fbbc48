#pragma once
// The view of the my-bank-card screen: either the card panel (the card picture, the line
// of holder name and bank, the card number and the unbind button) or the add panel with
// its "+ 添加银行卡" button, never both.
#include <optional>
#include <string>

#include "features/wallet/bank_model.h"
#include "features/wallet/wallet_texts.h"

namespace qmv {

class MyBankCardView {
 public:
  static constexpr const char* kAddButtonTitle = wallet_texts::kAddCardButton;

  // Hides the card panel and shows the add panel.
  void hiddenSubView();
  // Shows `bank` on the card panel and hides the add panel.
  void refreshWith(const BankModel& bank);

  bool cardShown() const { return bank_.has_value(); }
  bool addPanelShown() const { return !bank_; }
  // The card shown, while the card panel is.
  const std::optional<BankModel>& bank() const { return bank_; }
  // "%@   %@" of the holder's name and the bank; "" while the card panel is hidden.
  const std::string& nameText() const { return nameText_; }
  // The card number masked (display_mask::cardNumber); bank() keeps it whole.
  const std::string& cardNumberText() const { return cardNumberText_; }

 private:
  std::optional<BankModel> bank_;
  std::string nameText_;
  std::string cardNumberText_;
};

}  // namespace qmv
