#include "features/wallet/qx_with_draw_view_controller.h"

#include "core/common/control_util.h"
#include "core/common/dictionary.h"
#include "core/common/string_util.h"
#include "core/session/global_data.h"
#include "core/session/user_info_net_api.h"
#include "features/wallet/detail/wallet_status.h"
#include "features/wallet/my_bank_net_api.h"
#include "features/wallet/with_draw_net_api.h"
#include "platform/navigator.h"

namespace qmv {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Counts the ASCII digits of `text` from `at`, moving `at` past them.
std::size_t skipDigits(std::string_view text, std::size_t& at) {
  const std::size_t start = at;
  while (at < text.size() && isDigit(text[at])) ++at;
  return at - start;
}

bool isWholeFen(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

// The member's balance in fen, as exact text ("0" when there is no readable balance).
std::string balanceFen() {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  const std::string balance = self ? self->balance : std::string();
  const bool readable = StringUtil::stringCompareWithString(balance, "0").has_value();
  return readable ? balance : "0";
}

}  // namespace

QXWithDrawViewController::~QXWithDrawViewController() {
  detachRequest(userInfoNet_);
  detachRequest(myBankNet_);
  detachRequest(withDrawNet_);
}

std::string QXWithDrawViewController::leadingNumber(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && (text[at] == ' ' || text[at] == '\t' || text[at] == '\n')) ++at;
  const std::size_t start = at;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  std::size_t digits = skipDigits(text, at);
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skipDigits(text, at);
  }
  if (digits == 0) return "0";
  std::size_t end = at;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    std::size_t exponent = at + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    const std::size_t count = skipDigits(text, exponent);
    if (count > 0 && count <= 3) end = exponent;
  }
  return std::string(text.substr(start, end - start));
}

std::string QXWithDrawViewController::clampedAmount(std::string_view text) {
  const auto order = StringUtil::stringCompareWithString(leadingNumber(text), kFieldLimit);
  return order && *order >= 0 ? std::string(kFieldClamp) : std::string(text);
}

std::string QXWithDrawViewController::balanceText() const {
  std::string yuan = StringUtil::stringDividWithString(balanceFen(), "100", 2).value_or("0");
  // The division drops trailing zeros; the label always shows two places.
  const auto point = yuan.find('.');
  const std::size_t places = point == std::string::npos ? 0 : yuan.size() - point - 1;
  if (point == std::string::npos) yuan += '.';
  yuan.append(2 - places, '0');
  return yuan + wallet_texts::kBalanceSuffix;
}

void QXWithDrawViewController::viewWillAppear() {
  detachRequest(userInfoNet_);
  detachRequest(myBankNet_);
  refreshing_ = 2;

  userInfoNet_ = std::make_shared<UserInfoNetApi>();
  attachRequest(*userInfoNet_);
  userInfoNet_->startWithCompletionBlockWithSuccess(
      [this](BaseRequest&) {
        const auto& self = GlobalData::sharedInstance().selfInfo();
        if (userInfoNet_->isCorrectResult() && self) {
          const Json envelope = parseJson(userInfoNet_->responseString());
          if (envelope.is_object() && envelope.contains("data")) self->setWithDict(envelope["data"]);
          if (onChange) onChange();
        }
        refreshEnded();
      },
      [this](BaseRequest&) { refreshEnded(); });

  myBankNet_ = std::make_shared<MyBankNetApi>();
  attachRequest(*myBankNet_);
  myBankNet_->startWithCompletionBlockWithSuccess(
      [this](BaseRequest&) {
        if (myBankNet_->isCorrectResult()) {
          bank_ = myBankNet_->getBank();
          if (onChange) onChange();
        }
        refreshEnded();
      },
      [this](BaseRequest&) { refreshEnded(); });
}

void QXWithDrawViewController::refreshEnded() {
  if (refreshing_ > 0 && --refreshing_ == 0 && onRefreshed) onRefreshed();
}

bool QXWithDrawViewController::withDrawAction() {
  const char* refusal = nullptr;
  std::optional<std::string> fen;
  if (amountText.empty()) {
    refusal = wallet_texts::kNoAmount;
  } else if (StringUtil::stringCompareWithString(leadingNumber(amountText), kMinimumYuan).value_or(-1) < 0) {
    refusal = wallet_texts::kBelowMinimum;
  } else if (!ControlUtil::validateMoney(amountText)) {
    refusal = wallet_texts::kBadAmount;
  } else if (fen = StringUtil::stringMutiplyWithString(amountText, "100"); !fen || !isWholeFen(*fen)) {
    // The amount rule lets any character stand for the point ("12a50"); such a text
    // is no amount at all.
    refusal = wallet_texts::kBadAmount;
  } else if (StringUtil::stringCompareWithString(*fen, balanceFen()).value_or(1) > 0) {
    refusal = wallet_texts::kInsufficientBalance;
  }
  if (refusal != nullptr) {
    wallet_detail::showError(refusal);
    return false;
  }
  withDrawNet(*fen);
  return true;
}

void QXWithDrawViewController::withDrawNet(const std::string& amountFen) {
  detachRequest(withDrawNet_);
  withDrawNet_ = std::make_shared<WithDrawNetApi>(amountFen);
  attachRequest(*withDrawNet_);
  withDrawNet_->startWithCompletionBlockWithSuccess(
      [this](BaseRequest&) {
        const bool correct = withDrawNet_->isCorrectResult();
        if (correct) {
          wallet_detail::showStatus(wallet_texts::kWithDrawSubmitted);
          if (const auto& navigator = Env::current().navigator) navigator->pop();
        }
        if (onFinished) onFinished(correct);
      },
      [this](BaseRequest&) {
        if (onFinished) onFinished(false);
      });
}

}  // namespace qmv
