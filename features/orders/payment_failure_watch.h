#pragma once
// Lets whoever waits for a payment (a front end running the pay-now screen with nobody to
// tap it) learn that a payment application came back without success, once its failure or
// cancel has been shown. The screens do not listen: on a phone the member simply stays on
// the pay-now screen and may confirm again. Interface thread only.
#include <cstdint>
#include <functional>

namespace qmv {

class PaymentFailureWatch {
 public:
  // Called for every failure reported while the watch lives.
  explicit PaymentFailureWatch(std::function<void()> onFailure);
  ~PaymentFailureWatch();
  PaymentFailureWatch(const PaymentFailureWatch&) = delete;
  PaymentFailureWatch& operator=(const PaymentFailureWatch&) = delete;

  // Tells every live watch. Called by the payment-result handling.
  static void report();
  // Whether a watch lives: a pay-now screen waits for the payment it handed over, and
  // says its success itself when "pay_success_noti" reaches it, so the payment-result
  // handling that posts it does not say it too.
  static bool anyWaiting();

 private:
  std::uint64_t id_;
};

}  // namespace qmv
