#pragma once
// What an offer hands the screens it leads to, in the server's own keys, so that the
// opened screen can rebuild the record without the offer screen knowing its class.
#include <string>

#include "core/common/json.h"
#include "features/discovery/activity_model.h"

namespace qmv {

// {"activityInfo": the offer, "isFirst"}: what the submit screen is pushed with.
Json submitOrderPayload(const ActivityModel& activityInfo, const std::string& isFirst);

}  // namespace qmv
