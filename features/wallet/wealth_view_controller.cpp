#include "features/wallet/wealth_view_controller.h"

#include <algorithm>
#include <iterator>

#include "core/common/json.h"
#include "core/session/global_data.h"
#include "core/session/login_screen.h"
#include "core/session/member_texts.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

void WealthViewController::viewWillAppear() {
  if (!hasSession()) {
    bank_.reset();
    cardLine_.clear();
    if (onChange) onChange();
    return;
  }
  refresh_.start({[this] {
                    if (onChange) onChange();
                  },
                  [this](std::optional<BankModel> bank) { cardAnswered(std::move(bank)); },
                  [this] {
                    if (onRefreshed) onRefreshed();
                  }});
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

std::string WealthViewController::balanceText() const {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  return self ? member_texts::balanceYuan(*self) : member_texts::balanceYuan(UserInfoModel());
}

void WealthViewController::openEntry(std::size_t index) {
  if (index < std::size(kEntries)) Env::current().navigator->push(kEntries[index].screen);
}

}  // namespace qmv
