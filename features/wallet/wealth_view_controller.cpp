#include "features/wallet/wealth_view_controller.h"

#include <algorithm>
#include <iterator>

#include "core/common/json.h"
#include "core/session/global_data.h"
#include "core/session/login_screen.h"
#include "core/session/member_texts.h"
#include "core/session/user_info_net_api.h"
#include "features/wallet/my_bank_net_api.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

WealthViewController::~WealthViewController() {
  detachRequest(userInfoNet_);
  detachRequest(myBankNet_);
}

void WealthViewController::viewWillAppear() {
  if (!hasSession()) {
    bank_.reset();
    cardLine_.clear();
    if (onChange) onChange();
    return;
  }
  detachRequest(userInfoNet_);
  detachRequest(myBankNet_);
  refreshing_ = 2;

  userInfoNet_ = std::make_shared<UserInfoNetApi>();
  attachRequest(*userInfoNet_);
  userInfoNet_->startWithCompletionBlockWithSuccess(
      [this](UserInfoNetApi& api) {
        if (api.updateSelfInfo() && onChange) onChange();
        refreshEnded();
      },
      [this](UserInfoNetApi&) { refreshEnded(); });

  myBankNet_ = std::make_shared<MyBankNetApi>();
  attachRequest(*myBankNet_);
  myBankNet_->startWithCompletionBlockWithSuccess(
      [this](MyBankNetApi& api) {
        if (api.isCorrectResult()) cardAnswered(api.getBank());
        refreshEnded();
      },
      [this](MyBankNetApi&) { refreshEnded(); });
}

void WealthViewController::cardAnswered(std::optional<BankModel> bank) {
  bank_ = std::move(bank);
  if (!bank_) {
    cardLine_ = wallet_texts::kNoBoundCard;
  } else {
    const std::string& id = bank_->cardId;
    const bool tail = id.size() >= 4 && std::all_of(id.end() - 4, id.end(), [](char c) { return c >= '0' && c <= '9'; });
    cardLine_ = tail ? bank_->cardBank + wallet_texts::kCardTailPrefix + id.substr(id.size() - 4) : bank_->cardBank;
  }
  if (onChange) onChange();
}

void WealthViewController::refreshEnded() {
  if (refreshing_ > 0 && --refreshing_ == 0 && onRefreshed) onRefreshed();
}

std::string WealthViewController::balanceText() const {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  return self ? member_texts::balanceYuan(*self) : member_texts::balanceYuan(UserInfoModel());
}

void WealthViewController::openEntry(std::size_t index) {
  if (index < std::size(kEntries)) Env::current().navigator->push(kEntries[index].screen);
}

}  // namespace qmv
