#pragma once
// The my-bank-card screen ("我的银行卡"), headless. Every appearance hides the card and
// asks for the bound card again; a card arrives on the card panel, no card leaves the
// add panel, and a failed or refused answer closes the screen. The unbind button asks
// for confirmation first; a correct unbinding shows "解绑成功", marks the member as
// having no card and loads the screen again.
#include <functional>
#include <memory>

#include "core/session/base_view_controller.h"
#include "features/wallet/my_bank_card_view.h"

namespace qmv {

class MyBankNetApi;
class UnbindBankNetApi;

class MyBankCardViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = wallet_texts::kMyBankCardTitle;

  enum class UnbindOutcome { Cancelled, Unbound, Failed };

  MyBankCardViewController() = default;
  // Stops both requests; their callbacks, and the answer of an alert still open, never
  // arrive.
  ~MyBankCardViewController() override;
  MyBankCardViewController(const MyBankCardViewController&) = delete;
  MyBankCardViewController& operator=(const MyBankCardViewController&) = delete;

  const char* title() const { return kTitle; }
  const MyBankCardView& view() const { return view_; }

  // Each time the screen is shown: hides the card panel and runs myBankNet.
  void viewWillAppear();
  // Stops a card request still running and asks for the bound card. A transport failure
  // or an incorrect answer pops the screen.
  void myBankNet();
  // "+ 添加银行卡": pushes the bind screen.
  void addAction();
  // The unbind button: the alert "提示" / "是否确定解除银行卡绑定？" with "取消" and
  // "确定"; "确定" runs unbindNet.
  void unbindAction();
  // Stops an unbinding still running and unbinds the card.
  void unbindNet();

  bool hasData() const override { return view_.cardShown(); }

  // After each card answer: whether the screen stayed (false: it was popped).
  std::function<void(bool stayed)> onLoaded;
  // When what the unbind button began has ended: "取消", a correct unbinding (once the
  // reload has started), or a refused or failed one.
  std::function<void(UnbindOutcome outcome)> onUnbindFinished;

 private:
  void leave();
  void unbindFinished(UnbindOutcome outcome);

  MyBankCardView view_;
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
  std::shared_ptr<MyBankNetApi> myBankNet_;
  std::shared_ptr<UnbindBankNetApi> unbindNet_;
};

}  // namespace qmv
