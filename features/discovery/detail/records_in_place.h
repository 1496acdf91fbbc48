#pragma once
// The offer and store records read straight from a document read in place
// (core/common/fast_json.h): the same records as their Json constructors give.
#include "core/common/fast_json.h"
#include "features/discovery/activity_model.h"
#include "features/discovery/store_info_model.h"

namespace qmv::detail {

ActivityModel activityIn(fastjson::Element dic);
StoreInfoModel storeIn(fastjson::Element dic);

}  // namespace qmv::detail
