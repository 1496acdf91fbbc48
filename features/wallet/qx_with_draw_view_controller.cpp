#include "features/wallet/qx_with_draw_view_controller.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include "core/common/control_util.h"
#include "core/common/dictionary.h"
#include "core/common/display_mask.h"
#include "core/common/string_util.h"
#include "core/session/global_data.h"
#include "features/wallet/wallet_texts.h"
#include "features/wallet/with_draw_net_api.h"
#include "platform/env.h"
#include "platform/navigator.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Counts the ASCII digits of `text` from `at`, moving `at` past them.
std::size_t skipDigits(std::string_view text, std::size_t& at) {
  const std::size_t start = at;
  while (at < text.size() && isDigit(text[at])) ++at;
  return at - start;
}

// An optional sign, then digits with at most one point (at least one digit). Other texts
// ("NaN", "0x10", full-width digits, "12a50") are no amounts at all: they are refused for
// their form, not measured against the minimum.
bool isPlainNumber(std::string_view text) {
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  std::size_t digits = skipDigits(text, at);
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skipDigits(text, at);
  }
  return digits > 0 && at == text.size();
}

// The power of ten of the first significant digit of a number text in leadingNumber's
// form ("1" followed by 1,200 zeros: 1200); nullopt for zero and negative numbers. Exact
// at any length, where the decimal texts stop at 1000 characters.
std::optional<long> decimalMagnitude(std::string_view number) {
  std::size_t at = 0;
  if (at < number.size() && number[at] == '-') return std::nullopt;
  if (at < number.size() && number[at] == '+') ++at;
  const std::size_t integerStart = at;
  const std::size_t integerDigits = skipDigits(number, at);
  std::size_t fractionStart = at;
  if (at < number.size() && number[at] == '.') fractionStart = ++at;
  const std::size_t fractionDigits = skipDigits(number, at);
  long exponent = 0;
  if (at < number.size() && (number[at] == 'e' || number[at] == 'E')) {
    exponent = std::strtol(std::string(number.substr(at + 1)).c_str(), nullptr, 10);
  }
  for (std::size_t i = 0; i < integerDigits; ++i) {
    if (number[integerStart + i] != '0') return static_cast<long>(integerDigits - i - 1) + exponent;
  }
  for (std::size_t i = 0; i < fractionDigits; ++i) {
    if (number[fractionStart + i] != '0') return -static_cast<long>(i + 1) + exponent;
  }
  return std::nullopt;
}

// Whether the plain number `text` is below the minimum, at any length: two integer digits
// put it above, and digits past the eighth decimal cannot lift a value below 9.9999999
// to it.
bool belowMinimum(std::string_view text) {
  if (text.front() == '-') return true;
  if (text.front() == '+') text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string_view integer = text.substr(0, point);
  while (integer.size() > 1 && integer.front() == '0') integer.remove_prefix(1);
  if (integer.size() >= 2) return false;
  const std::string_view fraction = point < text.size() ? text.substr(point + 1, 8) : std::string_view();
  const std::string shortened = std::string(integer.empty() ? "0" : integer) + "." + std::string(fraction) + "0";
  return StringUtil::stringCompareWithString(shortened, QXWithDrawViewController::kMinimumYuan).value_or(-1) < 0;
}

// Whole fen of an amount the money rule accepts (digits, at most two decimals): the point
// moves two places, at any length.
std::string fenOf(std::string_view yuan) {
  const std::size_t point = std::min(yuan.find('.'), yuan.size());
  std::string fen(yuan.substr(0, point));
  std::string fraction(point < yuan.size() ? yuan.substr(point + 1) : std::string_view());
  fraction.resize(2, '0');
  fen += fraction;
  const std::size_t first = fen.find_first_not_of('0');
  return first == std::string::npos ? "0" : fen.substr(first);
}

// The member's balance in fen, as exact text ("0" when there is no readable balance).
std::string balanceFen() {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  const std::string balance = self ? self->balance : std::string();
  const bool readable = StringUtil::stringCompareWithString(balance, "0").has_value();
  return readable ? balance : "0";
}

bool exceedsBalance(const std::string& fen) {
  const std::string balance = balanceFen();
  if (const auto order = StringUtil::stringCompareWithString(fen, balance)) return *order > 0;
  // Too long to compare as text: then only a balance of a higher power of ten holds it.
  const auto amount = decimalMagnitude(fen);
  const auto held = decimalMagnitude(balance);
  return !held || (amount && *amount >= *held);
}

// Takes a granted withdrawal off the member's record at once, so that the wallet and
// every other screen show what is left before their next refresh reads it from the
// server. A balance or amount that is not plain fen is left to that refresh.
void takeFromBalance(const std::string& amountFen) {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  if (!self) return;
  const auto whole = [](const std::string& text) -> std::optional<long long> {
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0) return std::nullopt;
    return value;
  };
  const auto balance = whole(self->balance);
  const auto amount = whole(amountFen);
  if (balance && amount && *amount <= *balance) self->balance = std::to_string(*balance - *amount);
}

}  // namespace

QXWithDrawViewController::~QXWithDrawViewController() {
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
  // The limit is a power of ten: a value reaches it exactly when its magnitude does.
  static const long limit = *decimalMagnitude(kFieldLimit);
  const auto magnitude = decimalMagnitude(leadingNumber(text));
  return magnitude && *magnitude >= limit ? std::string(kFieldClamp) : std::string(text);
}

std::string QXWithDrawViewController::cardNumberText() const {
  return bank_ ? display_mask::cardNumber(bank_->cardId) : std::string();
}

std::string QXWithDrawViewController::balanceText() const {
  std::string yuan = StringUtil::divideDecimalTexts(balanceFen(), "100", 2).value_or("0");
  // The division drops trailing zeros; the label always shows two places.
  const auto point = yuan.find('.');
  const std::size_t places = point == std::string::npos ? 0 : yuan.size() - point - 1;
  if (point == std::string::npos) yuan += '.';
  yuan.append(2 - places, '0');
  return yuan + wallet_texts::kBalanceSuffix;
}

void QXWithDrawViewController::viewWillAppear() {
  refresh_.start({[this] {
                    if (onChange) onChange();
                  },
                  [this](std::optional<BankModel> bank) {
                    bank_ = std::move(bank);
                    if (onChange) onChange();
                  },
                  [this] {
                    if (onRefreshed) onRefreshed();
                  }});
}

bool QXWithDrawViewController::withDrawAction() {
  const char* refusal = nullptr;
  const bool plain = isPlainNumber(amountText);
  if (amountText.empty()) {
    refusal = wallet_texts::kNoAmount;
  } else if (plain && belowMinimum(amountText)) {
    refusal = wallet_texts::kBelowMinimum;
  } else if (!plain || !ControlUtil::validateMoney(amountText)) {
    // The amount rule alone lets any character stand for the point ("12a50").
    refusal = wallet_texts::kBadAmount;
  } else if (exceedsBalance(fenOf(amountText))) {
    refusal = wallet_texts::kInsufficientBalance;
  }
  if (refusal != nullptr) {
    Env::current().overlay->showImage(wallet_texts::kErrorImage, refusal);
    return false;
  }
  withDrawNet(fenOf(amountText));
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
          takeFromBalance(withDrawNet_->amount);
          Env::current().overlay->showImage("", wallet_texts::kWithDrawSubmitted);
          Env::current().navigator->pop();
        }
        if (onFinished) onFinished(correct);
      },
      [this](BaseRequest&) {
        if (onFinished) onFinished(false);
      });
}

}  // namespace qmv
