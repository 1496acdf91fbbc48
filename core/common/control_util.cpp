#include "core/common/control_util.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <memory>

namespace qmv {
namespace {

struct CodeDeleter {
  void operator()(pcre2_code* code) const { pcre2_code_free(code); }
};
struct MatchDataDeleter {
  void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
};

// One compiled rule. Compiled code is immutable and may be shared between threads;
// each match uses its own match data.
class Rule {
 public:
  explicit Rule(std::string_view pattern) {
    int error = 0;
    PCRE2_SIZE offset = 0;
    code_.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(),
                              PCRE2_UTF | PCRE2_DOLLAR_ENDONLY, &error, &offset, nullptr));
  }

  // Whole-text match: anchored at both ends whatever the pattern says. Invalid UTF-8 makes
  // pcre2_match return an error code, which reads as "no match".
  bool matchesWhole(std::string_view text) const {
    if (!code_) return false;
    std::unique_ptr<pcre2_match_data, MatchDataDeleter> data(
        pcre2_match_data_create_from_pattern(code_.get(), nullptr));
    if (!data) return false;
    static const char kEmpty[] = "";
    const char* subject = text.data() != nullptr ? text.data() : kEmpty;
    const int rc = pcre2_match(code_.get(), reinterpret_cast<PCRE2_SPTR>(subject), text.size(), 0,
                               PCRE2_ANCHORED | PCRE2_ENDANCHORED, data.get(), nullptr);
    return rc >= 0;
  }

 private:
  std::unique_ptr<pcre2_code, CodeDeleter> code_;
};

constexpr std::string_view kPhonePattern = R"(^1[3-9]\d{9}$)";
constexpr std::string_view kPasswordPattern = R"(^[A-Z0-9a-z]{6,16}$)";
constexpr std::string_view kUserNamePattern = R"(^[A-Z0-9a-z]{5,15}$)";
constexpr std::string_view kEmailPattern = R"([A-Z0-9a-z._%+-]+@[A-Za-z0-9.-]+\.[A-Za-z]{2,4})";
constexpr std::string_view kIdNumPattern = R"(^(\d{14}|\d{17})(\d|[xX])$)";
constexpr std::string_view kBankNumPattern = R"(^(\d{16}|\d{19})$)";
// Han characters U+4E00 to U+9FA5 and the middle dot of foreign names.
constexpr std::string_view kBankMasterPattern = R"(^[\x{4e00}-\x{9fa5}\x{00b7}]+$)";
constexpr std::string_view kMoneyPattern = R"(^[0-9]+(.[0-9]{0,2})?$)";

// Function-local statics: compiled once, on first use, with thread-safe initialisation.
const Rule& phoneRule() {
  static const Rule rule(kPhonePattern);
  return rule;
}
const Rule& passwordRule() {
  static const Rule rule(kPasswordPattern);
  return rule;
}
const Rule& userNameRule() {
  static const Rule rule(kUserNamePattern);
  return rule;
}
const Rule& emailRule() {
  static const Rule rule(kEmailPattern);
  return rule;
}
const Rule& idNumRule() {
  static const Rule rule(kIdNumPattern);
  return rule;
}
const Rule& bankNumRule() {
  static const Rule rule(kBankNumPattern);
  return rule;
}
const Rule& bankMasterRule() {
  static const Rule rule(kBankMasterPattern);
  return rule;
}
const Rule& moneyRule() {
  static const Rule rule(kMoneyPattern);
  return rule;
}

}  // namespace

bool ControlUtil::validatePhone(std::string_view text) { return phoneRule().matchesWhole(text); }
bool ControlUtil::validatePWD(std::string_view text) { return passwordRule().matchesWhole(text); }
bool ControlUtil::validateUserName(std::string_view text) { return userNameRule().matchesWhole(text); }
bool ControlUtil::validateEmail(std::string_view text) { return emailRule().matchesWhole(text); }
bool ControlUtil::validateIdNum(std::string_view text) { return idNumRule().matchesWhole(text); }
bool ControlUtil::validateMoney(std::string_view text) { return moneyRule().matchesWhole(text); }
bool ControlUtil::validateBankMaster(std::string_view text) { return bankMasterRule().matchesWhole(text); }

bool ControlUtil::luhnValid(std::string_view digits) {
  if (digits.empty()) return false;
  int sum = 0;
  bool doubled = false;  // the check digit (rightmost) is not doubled; its neighbour is
  for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
    if (*it < '0' || *it > '9') return false;
    int value = *it - '0';
    if (doubled) {
      value *= 2;
      if (value > 9) value -= 9;
    }
    sum += value;
    doubled = !doubled;
  }
  return sum % 10 == 0;
}

int ControlUtil::validateBankNum(std::string_view text) {
  if (!bankNumRule().matchesWhole(text)) return 1;
  return luhnValid(text) ? 0 : 2;
}

}  // namespace qmv
