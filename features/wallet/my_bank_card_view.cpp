#include "features/wallet/my_bank_card_view.h"

#include "core/common/display_mask.h"

namespace qmv {

void MyBankCardView::hiddenSubView() {
  bank_.reset();
  nameText_.clear();
  cardNumberText_.clear();
}

void MyBankCardView::refreshWith(const BankModel& bank) {
  bank_ = bank;
  nameText_ = bank.name + wallet_texts::kNameBankSeparator + bank.cardBank;
  cardNumberText_ = display_mask::cardNumber(bank.cardId);
}

}  // namespace qmv
