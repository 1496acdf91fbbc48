#pragma once
// The withdrawal screen ("提现"), headless: the bound card, the balance and one amount
// field. Appearing refreshes the member record (for the balance) and the card.
// Confirming runs four checks in order, each refusal shown as an error, and sends the
// amount in whole fen; a correct answer takes the amount off the member's record at once
// (the wallet must not show the old balance until its next refresh), shows that the
// request was submitted and pops the screen.
//
// Money never passes through binary floating point here: the amount is read, compared
// and multiplied by 100 as exact decimal text.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/session/base_view_controller.h"
#include "features/wallet/bank_model.h"
#include "features/wallet/wallet_refresh.h"
#include "features/wallet/wallet_texts.h"

namespace qmv {

class WithDrawNetApi;

class QXWithDrawViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = wallet_texts::kWithDrawTitle;
  static constexpr const char* kAmountLabel = wallet_texts::kAmountLabel;
  static constexpr const char* kChooseCardTitle = wallet_texts::kChooseCard;
  // Amounts below this many yuan are refused (not 10: the comparison is made so).
  static constexpr const char* kMinimumYuan = "9.9999999";
  // Values of kFieldLimit yuan or more become kFieldClamp when the field is left.
  static constexpr const char* kFieldLimit = "10000000";
  static constexpr const char* kFieldClamp = "9999999";

  QXWithDrawViewController() = default;
  // Stops the three requests; their callbacks never arrive.
  ~QXWithDrawViewController() override;
  QXWithDrawViewController(const QXWithDrawViewController&) = delete;
  QXWithDrawViewController& operator=(const QXWithDrawViewController&) = delete;

  const char* title() const { return kTitle; }

  // The amount field, in yuan, edited by the front end.
  std::string amountText;

  // Refreshes the member record and the bound card; onRefreshed follows once both
  // requests have ended.
  void viewWillAppear();
  // The amount field lost the focus: applies the clamp.
  void textFieldDidEndEditing() { amountText = clampedAmount(amountText); }
  // Confirm: the checks in order, then withDrawNet. Returns whether it was sent.
  bool withDrawAction();
  // Stops a withdrawal still running and asks for `amountFen` (whole fen).
  void withDrawNet(const std::string& amountFen);

  // The member's balance in yuan, "%.2f元" of the fen balance ÷ 100 ("0.00元" when
  // there is none).
  std::string balanceText() const;
  // The bound card, once its answer arrived with one.
  const std::optional<BankModel>& bank() const { return bank_; }
  // The bound card's number masked for the screen; "" without a card.
  std::string cardNumberText() const;
  bool isRefreshing() const { return refresh_.isRunning(); }

  // `text` unless its value is kFieldLimit or more, then kFieldClamp.
  static std::string clampedAmount(std::string_view text);
  // The leading number of `text` as a reader of numeric text sees it (blanks, sign,
  // digits with one point, an exponent of at most three digits); "0" when the text does
  // not start with a number. "12a50" reads as "12".
  static std::string leadingNumber(std::string_view text);

  bool hasData() const override { return bank_.has_value(); }

  std::function<void()> onRefreshed;
  // After each withdrawal ends: whether it was correct.
  std::function<void(bool correct)> onFinished;

 private:
  std::optional<BankModel> bank_;
  WalletRefresh refresh_{*this};
  std::shared_ptr<WithDrawNetApi> withDrawNet_;
};

}  // namespace qmv
