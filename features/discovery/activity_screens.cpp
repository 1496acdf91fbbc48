#include "features/discovery/activity_screens.h"

namespace qmv {

Json submitOrderPayload(const ActivityModel& activityInfo, const std::string& isFirst) {
  return {{"activityInfo",
           {{"commodityId", activityInfo.commodityID},
            {"name", activityInfo.name},
            {"imageURL", activityInfo.imageURL},
            {"nowPrice", activityInfo.nowPrice},
            {"firstPrice", activityInfo.firstPrice},
            {"storeId", activityInfo.storeId}}},
          {"isFirst", isFirst}};
}

}  // namespace qmv
