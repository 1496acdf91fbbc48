#include "core/session/user_info_net_api.h"

#include "core/common/dictionary.h"
#include "core/session/global_data.h"
#include "core/session/user_info_model.h"

namespace qmv {

Json UserInfoNetApi::requestArgument() const { return getBaseArgument(); }

bool UserInfoNetApi::updateSelfInfo() const {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  if (!isCorrectResult() || !self || !responseData().is_object()) return false;
  self->setWithDict(responseData());
  return true;
}

}  // namespace qmv
