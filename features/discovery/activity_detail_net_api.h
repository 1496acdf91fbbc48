#pragma once
// One offer ("getCommodityDetailInfo"), for the offer screen. Sent with the session so
// that the answer says whether the member buys for the first time.
#include <optional>
#include <string>

#include "core/request/net_api.h"
#include "features/discovery/activity_model.h"

namespace qmv {

class ActivityDetailNetApi : public NetApi<ActivityDetailNetApi> {
 public:
  explicit ActivityDetailNetApi(std::string activityId) : activityId(std::move(activityId)) {}

  std::string requestUrl() const override { return "getCommodityDetailInfo"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // The offer of "data" (an object) with its description height measured with the
  // Env's text measurer (left 0 without one); nullopt when "data" is not an object.
  std::optional<ActivityModel> getActivityDetail() const;

  std::string activityId;
};

}  // namespace qmv
