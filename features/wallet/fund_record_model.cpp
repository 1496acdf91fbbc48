#include "features/wallet/fund_record_model.h"

#include <charconv>
#include <cstdint>
#include <string_view>

#include "core/common/dictionary.h"
#include "features/wallet/wallet_texts.h"

namespace qmv {

FundRecordModel::FundRecordModel(const Json& dic)
    : BaseModel(dic),
      recordId(strForKey(dic, "id")),
      amount(strForKey(dic, "amount")),
      type(strForKey(dic, "type")),
      title(strForKey(dic, "title")),
      orderId(strForKey(dic, "orderId")),
      time(strForKey(dic, "time")) {}

std::vector<FundRecordModel> FundRecordModel::listWithArray(const Json& array) {
  return modelsWithArray<FundRecordModel>(array);
}

std::string FundRecordModel::amountText() const {
  // Exact integer arithmetic on the magnitude, so even the most negative fen prints.
  std::string_view text = amount;
  const bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  std::uint64_t fen = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), fen);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || fen > 1ULL << 63) fen = 0;
  std::string yuan = std::to_string(fen / 100) + "." + std::to_string(fen % 100 / 10) + std::to_string(fen % 10);
  if (fen == 0) return yuan;
  return (negative ? "-" : "+") + yuan;
}

std::string FundRecordModel::kindText() const {
  for (long kind = 1; kind < kKindCount; ++kind) {
    if (type == kKinds[kind]) return wallet_texts::kFundKinds[kind];
  }
  return "";
}

}  // namespace qmv
