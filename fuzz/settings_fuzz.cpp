// The settings store's reading of its rows, and the readers of what it holds (the phone
// and password of the automatic login, the search history, the saved catalogue and
// templates, the city, the device identity). Input: a key, a newline, the row's kind, a
// newline, the row's bytes: one row as a damaged or foreign file may hold it.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/common/settings_keys.h"
#include "core/session/global_data.h"
#include "features/discovery/search_history.h"
#include "features/discovery/search_type_net_api.h"
#include "fuzz/fuzz_env.h"
#include "platform/linux/sqlite_settings_store.h"
#include "shell/device_identity.h"

namespace {
std::size_t g_read = 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmv;
  fuzz::FuzzEnv& env = fuzz::FuzzEnv::get();
  const auto [key, rest] = fuzz::splitFirstLine(fuzz::asText(data, size));
  const auto [kind, bytes] = fuzz::splitFirstLine(rest);
  const std::string name(key);
  const Json value = SqliteSettingsStore::decodeRow(std::string(kind), std::string(bytes));
  if (value.is_null()) return 0;
  env.settings->setObject(value, name);

  const SettingsStore& settings = *env.settings;
  g_read += settings.stringForKey(name).value_or("").size() + (settings.boolForKey(name) ? 1 : 0);
  g_read += settings.stringArrayForKey(name).value_or(std::vector<std::string>{}).size();
  g_read += settings.dataForKey(name).value_or(std::vector<std::uint8_t>{}).size();
  // Each reader runs for the key it reads, so that an input costs one reader.
  if (name == kSearchKeyWordsKey) g_read += SearchHistory::read().size();
  if (name == kSearchTypesKey) g_read += SearchTypeNetApi::getSearchTypes().size();
  if (name == kTemplatesKey || name == kSelectCityKey) {
    GlobalData::resetSharedInstance();
    g_read += GlobalData::sharedInstance().getCurrentCityName().size();
  }
  if (name == kDeviceIdKey) {
    // A stored identity that is not one is replaced: what comes back is always one.
    if (!isUuid(deviceIdentity())) __builtin_trap();
  }

  env.settings->removeObjectForKey(name);
  return 0;
}
