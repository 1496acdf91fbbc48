#pragma once
// The bank card bound to the member's account. Every field is text; a missing key reads
// as "". identifying (the SMS code typed on the bind screen) is never read from JSON,
// only sent.
#include <string>

#include "core/common/base_model.h"
#include "core/common/json.h"

namespace qmv {

class BankModel : public BaseModel {
 public:
  BankModel() = default;
  // Reads "cardId", "certifId", "name" and "cardBank"; anything but an object gives a
  // record of empty texts.
  explicit BankModel(const Json& dic);

  std::string cardId;
  std::string certifId;
  std::string name;
  std::string cardBank;
  std::string identifying;
};

}  // namespace qmv
