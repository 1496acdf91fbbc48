#include "features/wallet/my_bank_card_view_controller.h"

#include "core/session/global_data.h"
#include "features/wallet/my_bank_net_api.h"
#include "features/wallet/unbind_bank_net_api.h"
#include "features/wallet/wallet_texts.h"
#include "platform/alerts.h"
#include "platform/env.h"
#include "platform/navigator.h"
#include "platform/status_overlay.h"

namespace qmv {

MyBankCardViewController::~MyBankCardViewController() {
  detachRequest(myBankNet_);
  detachRequest(unbindNet_);
}

void MyBankCardViewController::viewWillAppear() {
  view_.hiddenSubView();
  if (onChange) onChange();
  myBankNet();
}

void MyBankCardViewController::myBankNet() {
  detachRequest(myBankNet_);
  myBankNet_ = std::make_shared<MyBankNetApi>();
  attachRequest(*myBankNet_);
  myBankNet_->startWithCompletionBlockWithSuccess(
      [this](BaseRequest&) {
        if (!myBankNet_->isCorrectResult()) {
          leave();
          return;
        }
        if (const auto bank = myBankNet_->getBank()) {
          view_.refreshWith(*bank);
          if (onChange) onChange();
        }
        if (onLoaded) onLoaded(true);
      },
      [this](BaseRequest&) { leave(); });
}

void MyBankCardViewController::leave() {
  Env::current().navigator->pop();
  if (onLoaded) onLoaded(false);
}

void MyBankCardViewController::addAction() { Env::current().navigator->push(wallet_texts::kBindScreen); }

void MyBankCardViewController::unbindAction() {
  const auto& alerts = Env::current().alerts;
  AlertSpec alert{wallet_texts::kUnbindAlertTitle,
                  wallet_texts::kUnbindAlertMessage,
                  {wallet_texts::kCancel, wallet_texts::kConfirm},
                  {}};
  // The alert may be answered after the screen has gone away.
  alerts->show(alert, [this, alive = std::weak_ptr<int>(alive_)](const AlertAnswer& answer) {
    if (!alive.lock()) return;
    if (answer.buttonIndex == 1) {
      unbindNet();
    } else {
      unbindFinished(UnbindOutcome::Cancelled);
    }
  });
}

void MyBankCardViewController::unbindNet() {
  detachRequest(unbindNet_);
  unbindNet_ = std::make_shared<UnbindBankNetApi>();
  attachRequest(*unbindNet_);
  unbindNet_->startWithCompletionBlockWithSuccess(
      [this](BaseRequest&) {
        if (!unbindNet_->isCorrectResult()) {
          unbindFinished(UnbindOutcome::Failed);
          return;
        }
        Env::current().overlay->showImage("", wallet_texts::kUnbound);
        if (const auto& self = GlobalData::sharedInstance().selfInfo()) self->bankCardNum = std::string(wallet_texts::kNoCard);
        viewWillAppear();
        unbindFinished(UnbindOutcome::Unbound);
      },
      [this](BaseRequest&) { unbindFinished(UnbindOutcome::Failed); });
}

void MyBankCardViewController::unbindFinished(UnbindOutcome outcome) {
  if (onUnbindFinished) onUnbindFinished(outcome);
}

}  // namespace qmv
