#pragma once
// The process-wide session: the logged-in member (null when logged out, whose
// "sessionId" every request carries), the device position and the located city, the
// five home categories, and the screen the payment flow returns to. Lives for the whole
// process; touched from the interface thread only.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/common/coordinate.h"
#include "core/session/search_type_model.h"
#include "core/session/user_info_model.h"
#include "platform/navigator.h"

namespace qmv {

class GlobalData {
 public:
  // Created on first call from the installed Env (settings for the stored templates,
  // clock for the built-in template choice).
  static GlobalData& sharedInstance();
  // Drops the shared instance; the next sharedInstance() builds a new one from the
  // Env installed then. For tests and for a front end that swaps its Env.
  static void resetSharedInstance();

  const std::shared_ptr<UserInfoModel>& selfInfo() const { return selfInfo_; }
  void setSelfInfo(std::shared_ptr<UserInfoModel> info) { selfInfo_ = std::move(info); }

  const std::string& locationCity() const { return locationCity_; }
  void setLocationCity(const std::string& city) { locationCity_ = city; }

  // WGS-84 device position; nullopt before the first fix.
  const std::optional<Coordinate>& userLocation() const { return userLocation_; }
  void setUserLocation(std::optional<Coordinate> location) { userLocation_ = location; }

  std::vector<SearchTypeModel>& defaultTypeList() { return defaultTypeList_; }
  const std::vector<SearchTypeModel>& defaultTypeList() const { return defaultTypeList_; }
  void setDefaultTypeList(std::vector<SearchTypeModel> list) { defaultTypeList_ = std::move(list); }

  // Not owning: the navigator may have closed that screen, in which case popTo fails.
  std::optional<ScreenId> popToAfterPayVC() const { return popToAfterPayVC_; }
  void setPopToAfterPayVC(std::optional<ScreenId> screen) { popToAfterPayVC_ = screen; }

  // The stored "select_city", or "临沂市" when none is stored.
  std::string getCurrentCityName() const;
  // Stores `city` as the browsed and the displayed city ("select_city",
  // "select_city_dis") in one write, so that a crash never leaves them apart, and
  // flushes. False when the store could not be written.
  static bool setCurrentCityName(const std::string& city);
  // Area id of the current city, falling back to "临沂市"; nullopt when neither is in
  // the area database.
  std::optional<std::string> getCurrentCityId() const;
  // True when the area database has a city of that name.
  bool cityExist(const std::string& name) const;

  // Copies typeId and list of each template into the default entry of the same name
  // and resets its scrollIndex. Order, colours and pictures of the defaults never change;
  // templates without a namesake are ignored.
  void mergeTemplates(const std::vector<SearchTypeModel>& templates);

  // First entry whose name equals `name` exactly, or null.
  static SearchTypeModel* getInfoWithName(const std::string& name, std::vector<SearchTypeModel>& list);
  static const SearchTypeModel* getInfoWithName(const std::string& name, const std::vector<SearchTypeModel>& list);

  // The five home categories with their colours and pictures, without ids or lists.
  static std::vector<SearchTypeModel> homeCategories();
  // The built-in template text in force at `unixSeconds`: the later one strictly after
  // 04-09-2016 00:00 local time, the earlier one before.
  static std::string_view builtInTemplatesAt(std::int64_t unixSeconds);

 private:
  GlobalData();

  std::shared_ptr<UserInfoModel> selfInfo_;
  std::string locationCity_;
  std::optional<Coordinate> userLocation_;
  std::vector<SearchTypeModel> defaultTypeList_;
  std::optional<ScreenId> popToAfterPayVC_;
};

}  // namespace qmv
