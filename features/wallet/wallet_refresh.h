#pragma once
// What a wallet screen refreshes each time it appears: the member record (for the balance,
// read in place into selfInfo) and the bound card, asked for together. The screen waits
// for both before it says the refresh ended.
#include <functional>
#include <memory>
#include <optional>

#include "features/wallet/bank_model.h"

namespace qmv {

class BaseViewController;
class MyBankNetApi;
class UserInfoNetApi;

class WalletRefresh {
 public:
  struct Callbacks {
    std::function<void()> recordUpdated;                        // selfInfo took a new record
    std::function<void(std::optional<BankModel>)> cardAnswered;  // a correct card answer
    std::function<void()> ended;                                 // both requests ended
  };

  // The owner takes the requests' session, loading and no-network reactions.
  explicit WalletRefresh(BaseViewController& owner) : owner_(owner) {}
  // Stops both requests; their callbacks never arrive.
  ~WalletRefresh();
  WalletRefresh(const WalletRefresh&) = delete;
  WalletRefresh& operator=(const WalletRefresh&) = delete;

  // Stops a refresh still running and starts a new one.
  void start(Callbacks callbacks);
  bool isRunning() const { return pending_ > 0; }

 private:
  void stop();
  void oneEnded();

  BaseViewController& owner_;
  Callbacks callbacks_;
  int pending_ = 0;
  std::shared_ptr<UserInfoNetApi> userInfoNet_;
  std::shared_ptr<MyBankNetApi> myBankNet_;
};

}  // namespace qmv
