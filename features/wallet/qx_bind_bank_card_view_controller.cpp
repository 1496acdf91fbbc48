#include "features/wallet/qx_bind_bank_card_view_controller.h"

#include "core/common/control_util.h"
#include "core/session/account_ports.h"
#include "core/session/global_data.h"
#include "core/storage/db_util.h"
#include "features/wallet/bind_bank_net_api.h"
#include "features/wallet/wallet_texts.h"
#include "platform/env.h"
#include "platform/main_loop.h"
#include "platform/navigator.h"
#include "platform/status_overlay.h"

namespace qmv {

QXBindBankCardViewController::QXBindBankCardViewController()
    : countdown_([this](const std::string&, bool) {
        if (onChange) onChange();
      }) {}

QXBindBankCardViewController::~QXBindBankCardViewController() {
  countdown_.stopTimer();
  viewWillDisappear();
}

std::string QXBindBankCardViewController::maskedPhone(std::string_view phone) {
  std::vector<std::size_t> starts;
  for (std::size_t i = 0; i < phone.size(); ++i) {
    if ((static_cast<unsigned char>(phone[i]) & 0xC0) != 0x80 || starts.empty()) starts.push_back(i);
  }
  const std::size_t count = starts.size();
  if (count < 7) return std::string(phone);
  std::string masked(phone.substr(0, starts[3]));
  masked.append(count - 7, '*');
  masked.append(phone.substr(starts[count - 4]));
  return masked;
}

std::string QXBindBankCardViewController::bankNameText() const { return DBUtil::getBankNameWithBankNum(cardNumText); }

void QXBindBankCardViewController::viewDidLoad() {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  phoneLabelText_ = wallet_texts::kPhoneLabelPrefix + maskedPhone(self ? self->phone : std::string());
  countdown_.startTimer(*Env::current().mainLoop);
  if (onChange) onChange();
}

void QXBindBankCardViewController::viewWillDisappear() {
  detachRequest(codeNet_);
  detachRequest(bindNet_);
}

void QXBindBankCardViewController::getCodeAction() {
  if (!codeButtonEnabled()) return;
  const auto& self = GlobalData::sharedInstance().selfInfo();
  account_detail::sendCodeRequest(
      codeNet_, *this, self ? self->phone : std::string(), codeSessionId_,
      [this] {
        countdown_.codeSent();
        if (onChange) onChange();
      },
      [this](bool correct) {
        if (onCodeFinished) onCodeFinished(correct);
      });
}

bool QXBindBankCardViewController::bindAction() {
  const char* refusal = nullptr;
  if (nameText.empty()) {
    refusal = wallet_texts::kNoHolderName;
  } else if (idNumText.empty()) {
    refusal = wallet_texts::kNoIdNumber;
  } else if (cardNumText.empty()) {
    refusal = wallet_texts::kNoCardNumber;
  } else if (!ControlUtil::validateBankMaster(nameText)) {
    refusal = wallet_texts::kBadHolderName;
  } else if (!ControlUtil::validateIdNum(idNumText)) {
    refusal = wallet_texts::kBadIdNumber;
  } else if (const int card = ControlUtil::validateBankNum(cardNumText); card == 1) {
    refusal = wallet_texts::kBadCardNumber;
  } else if (card == 2) {
    refusal = wallet_texts::kUnsupportedCard;
  } else if (codeText.empty()) {
    refusal = wallet_texts::kNoCode;
  }
  if (refusal != nullptr) {
    Env::current().overlay->showImage("", refusal);
    return false;
  }
  bindNet();
  return true;
}

void QXBindBankCardViewController::bindNet() {
  detachRequest(bindNet_);
  BankModel bank;
  bank.name = nameText;
  bank.cardId = cardNumText;
  bank.certifId = idNumText;
  bank.identifying = codeText;
  bindNet_ = std::make_shared<BindBankNetApi>(std::move(bank));
  attachRequest(*bindNet_);
  bindNet_->startWithCompletionBlockWithSuccess(
      [this](BaseRequest&) {
        const bool correct = bindNet_->isCorrectResult();
        if (correct) {
          Env::current().overlay->showImage("", wallet_texts::kBound);
          if (const auto& self = GlobalData::sharedInstance().selfInfo()) self->bankCardNum = std::string(wallet_texts::kCardBound);
          Env::current().navigator->pop();
        }
        if (onFinished) onFinished(correct);
      },
      [this](BaseRequest&) {
        if (onFinished) onFinished(false);
      });
}

const char* QXBindBankCardViewController::placeholder(Field field) {
  switch (field) {
    case Field::Name:
      return wallet_texts::kNoHolderName;
    case Field::IdNumber:
      return wallet_texts::kNoIdNumber;
    case Field::CardNumber:
      return wallet_texts::kNoCardNumber;
    case Field::Code:
      break;
  }
  return wallet_texts::kNoCode;
}

std::optional<QXBindBankCardViewController::Field> QXBindBankCardViewController::textFieldShouldReturn(Field field) {
  switch (field) {
    case Field::Name:
      return Field::IdNumber;
    case Field::IdNumber:
      return Field::CardNumber;
    case Field::CardNumber:
      return Field::Code;
    case Field::Code:
      break;
  }
  bindAction();
  return std::nullopt;
}

}  // namespace qmv
