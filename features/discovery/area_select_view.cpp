#include "features/discovery/area_select_view.h"

#include <algorithm>

#include "core/common/notification_names.h"
#include "core/common/settings_keys.h"
#include "core/session/global_data.h"
#include "core/storage/db_util.h"
#include "platform/env.h"
#include "platform/notification_center.h"
#include "platform/settings_store.h"

namespace qmv {

AreaSelectView::AreaSelectView() : sections_(DBUtil::getAllCity()) {
  recent_ = Env::current().settings->stringArrayForKey(kRecordCityKey).value_or(std::vector<std::string>{});
}

std::vector<AreaModel> AreaSelectView::search(const std::string& key) {
  if (key.empty()) return {};
  return DBUtil::getCitiesWithKey(key);
}

bool AreaSelectView::selectCity(const std::string& name) {
  if (!GlobalData::sharedInstance().cityExist(name)) return false;
  Env& env = Env::current();
  recent_.erase(std::remove(recent_.begin(), recent_.end(), name), recent_.end());
  recent_.insert(recent_.begin(), name);
  if (recent_.size() > kMaxRecent) recent_.resize(kMaxRecent);
  env.settings->setString(name, kSelectCityKey);
  env.settings->setString(name, kSelectCityDisKey);
  env.settings->setStringArray(recent_, kRecordCityKey);
  env.settings->synchronize();
  env.notifications->post(kCityChangedNotification);
  return true;
}

}  // namespace qmv
