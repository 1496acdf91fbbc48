#include "features/wallet/bank_model.h"

#include "core/common/dictionary.h"

namespace qmv {

BankModel::BankModel(const Json& dic)
    : BaseModel(dic),
      cardId(strForKey(dic, "cardId")),
      certifId(strForKey(dic, "certifId")),
      name(strForKey(dic, "name")),
      cardBank(strForKey(dic, "cardBank")) {}

}  // namespace qmv
