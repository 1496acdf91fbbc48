#include "features/wallet/wallet_refresh.h"

#include "core/session/base_view_controller.h"
#include "core/session/user_info_net_api.h"
#include "features/wallet/my_bank_net_api.h"

namespace qmv {

WalletRefresh::~WalletRefresh() { stop(); }

void WalletRefresh::stop() {
  detachRequest(userInfoNet_);
  detachRequest(myBankNet_);
  pending_ = 0;
}

void WalletRefresh::start(Callbacks callbacks) {
  stop();
  callbacks_ = std::move(callbacks);
  pending_ = 2;

  userInfoNet_ = std::make_shared<UserInfoNetApi>();
  owner_.attachRequest(*userInfoNet_);
  userInfoNet_->startWithCompletionBlockWithSuccess(
      [this](UserInfoNetApi& api) {
        if (api.updateSelfInfo() && callbacks_.recordUpdated) callbacks_.recordUpdated();
        oneEnded();
      },
      [this](UserInfoNetApi&) { oneEnded(); });

  myBankNet_ = std::make_shared<MyBankNetApi>();
  owner_.attachRequest(*myBankNet_);
  myBankNet_->startWithCompletionBlockWithSuccess(
      [this](MyBankNetApi& api) {
        if (api.isCorrectResult() && callbacks_.cardAnswered) callbacks_.cardAnswered(api.getBank());
        oneEnded();
      },
      [this](MyBankNetApi&) { oneEnded(); });
}

void WalletRefresh::oneEnded() {
  if (pending_ > 0 && --pending_ == 0 && callbacks_.ended) callbacks_.ended();
}

}  // namespace qmv
