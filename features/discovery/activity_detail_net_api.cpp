#include "features/discovery/activity_detail_net_api.h"

#include "core/common/dictionary.h"
#include "platform/env.h"
#include "platform/text_measurer.h"

namespace qmv {

Json ActivityDetailNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, activityId, "commodityId");
  return arguments;
}

std::optional<ActivityModel> ActivityDetailNetApi::getActivityDetail() const {
  const Json& data = responseData();
  if (!data.is_object()) return std::nullopt;
  ActivityModel activity(data);
  activity.setContentHeight(*Env::current().textMeasurer);
  return activity;
}

}  // namespace qmv
