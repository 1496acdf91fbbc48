#pragma once
// Runs the pay-now screen for a front end with nobody to tap it (the command line, a page
// followed by script): builds the screen from the payload it was pushed with, shows it,
// applies the buyer's choices as taps, confirms, and tells how the payment ended. The
// screen does the work; the runner only taps and watches. Interface thread only.
#include <functional>
#include <optional>

#include "core/common/json.h"
#include "features/orders/payment_failure_watch.h"
#include "features/orders/qx_pay_now_view_controller.h"

namespace qmv {

class PayNowRunner {
 public:
  enum class Outcome {
    Pending,           // still running (or handed to a library that never returns here)
    Paid,              // the screen reported success and went back
    Refused,           // nothing was paid: the server refused, or there was nothing to hand over
    NotPaid,           // the payment application came back without success
    NothingConfirmed,  // confirm started nothing (no channel selected)
  };
  struct Choices {
    bool useBalance = true;                                  // false taps the balance off when it is selected
    std::optional<QXPayNowViewController::Channel> channel;  // tapped when the channel list shows
  };

  // The payload of the "QXPayNowViewController" screen (see QXPayNowViewController).
  explicit PayNowRunner(const Json& payload);
  PayNowRunner(const PayNowRunner&) = delete;
  PayNowRunner& operator=(const PayNowRunner&) = delete;

  QXPayNowViewController& screen() { return screen_; }
  const QXPayNowViewController& screen() const { return screen_; }

  // The screen appears (its set-up and observer) and reads the member's record and any
  // share price; taps wait for ready().
  void appear();
  bool ready() const { return !screen_.isLoading(); }
  // Applies the choices. False when the chosen channel could not be tapped because the
  // channel list is hidden (the balance covers the total). REQUIRES: ready().
  bool tap(const Choices& choices);
  // confirmAction; outcome() and onFinished then follow the payment.
  void confirm();

  Outcome outcome() const { return outcome_; }
  bool finished() const { return outcome_ != Outcome::Pending; }
  // Whether a payment library was handed the payment.
  bool handedOver() const { return handedOver_; }
  std::function<void(Outcome)> onFinished;

 private:
  void finish(Outcome outcome);

  QXPayNowViewController screen_;
  PaymentFailureWatch failures_;
  Outcome outcome_ = Outcome::Pending;
  bool handedOver_ = false;
};

}  // namespace qmv
