#include "features/orders/pay_now_runner.h"

namespace qmv {

using Channel = QXPayNowViewController::Channel;
using PayStep = QXPayNowViewController::PayStep;

PayNowRunner::PayNowRunner(const Json& payload)
    : screen_(payload), failures_([this] {
        if (handedOver_) finish(Outcome::NotPaid);
      }) {
  screen_.onPayStep = [this](PayStep step) {
    if (step == PayStep::Paid) {
      finish(Outcome::Paid);
    } else if (step == PayStep::HandedOver) {
      handedOver_ = true;
    } else {
      finish(Outcome::Refused);
    }
  };
}

void PayNowRunner::appear() { screen_.viewDidLoad(); }

bool PayNowRunner::tap(const Choices& choices) {
  // No amount, no choice to make: confirm says so.
  if (!screen_.totalKnown()) return true;
  if (!choices.useBalance && screen_.balanceSelected()) screen_.toggleBalance();
  if (!choices.channel) return true;
  if (screen_.bottomHidden()) return false;
  switch (*choices.channel) {
    case Channel::Alipay:
      screen_.selectAlipay();
      break;
    case Channel::WeChat:
      screen_.selectWeChat();
      break;
    case Channel::UnionPay:
      screen_.selectUnionPay();
      break;
  }
  return true;
}

void PayNowRunner::confirm() {
  screen_.confirmAction();
  if (!screen_.isPreparing() && !finished()) finish(Outcome::NothingConfirmed);
}

void PayNowRunner::finish(Outcome outcome) {
  // The first ending stands: a success arriving again, or late, changes nothing.
  if (finished()) return;
  outcome_ = outcome;
  if (onFinished) onFinished(outcome);
}

}  // namespace qmv
