#include "features/discovery/main_view_controller.h"

#include <chrono>
#include <utility>

#include "core/common/notification_names.h"
#include "core/common/settings_keys.h"
#include "core/common/url_parts.h"
#include "core/request/request_operation.h"
#include "core/session/global_data.h"
#include "core/storage/db_util.h"
#include "features/discovery/area_net_api.h"
#include "features/discovery/detail_actions.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/popular_store_net_api.h"
#include "features/discovery/recommend_store_net_api.h"
#include "features/discovery/resources_net_api.h"
#include "features/discovery/search_type_net_api.h"
#include "features/discovery/templates_net_api.h"
#include "platform/alerts.h"
#include "platform/env.h"
#include "platform/location_source.h"
#include "platform/main_loop.h"
#include "platform/navigator.h"
#include "platform/notification_center.h"
#include "platform/reverse_geocoder.h"
#include "platform/settings_store.h"
#include "core/common/area_texts.h"

namespace qmv {
namespace {

std::string currentCityId() { return GlobalData::sharedInstance().getCurrentCityId().value_or(""); }

StoreInfoModel placeholderRow() {
  StoreInfoModel row;
  row.storeId = discovery_texts::kPlaceholderStoreId;
  return row;
}

}  // namespace

MainViewController::MainViewController()
    : addressButtonTitle_(GlobalData::sharedInstance().getCurrentCityName()), lastSelectCity_(addressButtonTitle_) {
  cityObserver_ = Env::current().notifications->addObserver(
      kCityChangedNotification, [this](const std::string&, const Json&) { cityChanged(); });
}

MainViewController::~MainViewController() {
  *alive_ = false;
  if (cityObserver_ != 0) Env::current().notifications->removeObserver(cityObserver_);
  if (locating_) {
    Env::current().location->stopUpdatingLocation();
  }
  detachRequest(resourcesRequest_);
  detachRequest(recommendRequest_);
  detachRequest(popularRequest_);
  detachRequest(templatesRequest_);
  detachRequest(areaRequest_);
  if (areaTimer_ != 0) Env::current().mainLoop->cancelTimer(areaTimer_);
}

void MainViewController::viewDidLoad() {
  viewLoaded_ = true;
  // A front end that signs in at start without drawing the home (the CLI) has sent it.
  if (!autoLoginSent_) autoLoginNet();
  startLocate();
  refreshNet();
  // The area table (the whole of it at a first start) waits for the home's content, whose
  // transfers, decoding and drawing it would otherwise slow down and add its memory to.
  areaRefreshDue_ = true;
}

bool MainViewController::autoLoginNet() {
  autoLogin_.onFinished = [this](bool signedIn) {
    if (onAutoLoginFinished) onAutoLoginFinished(signedIn);
  };
  autoLoginSent_ = autoLogin_.autoLoginNet();
  return autoLoginSent_;
}

bool MainViewController::didSelectBanner(std::size_t index) const {
  if (index >= resources_.size()) return false;
  const ResourceModel& banner = resources_[index];
  // The server's URL goes to a web view: nothing but a web page with a host is loaded.
  const std::string scheme = urlScheme(banner.URL);
  if ((scheme != "http" && scheme != "https") || urlHost(banner.URL).empty()) return false;
  const auto& navigator = Env::current().navigator;
  navigator->push(discovery_texts::kWebScreen, {{"title", banner.title}, {"url", banner.URL}});
  return true;
}

std::vector<MainViewController::CategoryGroup> MainViewController::categoryGroups(
    const std::vector<SearchTypeModel>& homeList, const std::vector<SearchTypeModel>& catalogue) {
  const auto known = [&catalogue](const std::string& id) {
    for (const SearchTypeModel& main : catalogue) {
      if (main.typeId == id) return true;
      for (const SearchSubTypeModel& sub : main.list) {
        if (sub.typeId == id) return true;
      }
    }
    return false;
  };
  std::vector<CategoryGroup> groups;
  for (const SearchTypeModel& type : homeList) {
    if (type.name.empty()) continue;
    CategoryGroup group;
    group.main = {type.name, handoverTypeId(type, catalogue), type.bigImageName, ""};
    group.nameColor = type.nameColor;
    for (const SearchSubTypeModel& sub : type.list) {
      if (sub.name.empty()) continue;
      const bool own = !sub.typeId.empty() && known(sub.typeId);
      group.subs.push_back({sub.name, own ? sub.typeId : group.main.typeId, "", sub.imgURL});
    }
    groups.push_back(std::move(group));
  }
  return groups;
}

std::vector<MainViewController::CategoryGroup> MainViewController::homeCategoryGroups() {
  return categoryGroups(GlobalData::sharedInstance().defaultTypeList(), SearchTypeNetApi::getSearchTypes());
}

std::string MainViewController::handoverTypeId(const SearchTypeModel& entry,
                                               const std::vector<SearchTypeModel>& catalogue) {
  for (const SearchTypeModel& main : catalogue) {
    if (!entry.typeId.empty() && main.typeId == entry.typeId) return entry.typeId;
  }
  std::size_t best = 0;
  std::size_t bestCount = 0;
  bool tied = false;
  for (std::size_t i = 0; i < catalogue.size(); ++i) {
    std::size_t count = 0;
    for (const SearchSubTypeModel& sub : entry.list) {
      for (const SearchSubTypeModel& known : catalogue[i].list) {
        if (!sub.typeId.empty() && known.typeId == sub.typeId) ++count;
      }
    }
    if (count > bestCount) {
      best = i;
      bestCount = count;
      tied = false;
    } else if (count > 0 && count == bestCount) {
      tied = true;
    }
  }
  if (bestCount == 0 || tied) return discovery_texts::kAllCategoriesId;
  return catalogue[best].typeId;
}

bool MainViewController::isPlaceholderRow(const StoreInfoModel& store) {
  return store.storeId == discovery_texts::kPlaceholderStoreId;
}

// ---- Home content ----

template <typename Api>
void MainViewController::sendHomeRequest(std::shared_ptr<Api>& slot, std::shared_ptr<Api> request,
                                         std::function<void(Api&)> onCorrect) {
  detachRequest(slot);
  attachRequest(*request, /*showLoading=*/false);
  slot = request;
  request->startWithCompletionBlockWithSuccess(
      [this, onCorrect](Api& api) {
        if (api.isCorrectResult()) onCorrect(api);
        homeRequestEnded();
      },
      [this](BaseRequest&) { homeRequestEnded(); });
}

void MainViewController::homeRequestEnded() {
  if (onChange) onChange();
  if (pendingHomeRequests_ == 0 || --pendingHomeRequests_ > 0) return;
  if (std::exchange(areaRefreshDue_, false)) {
    if (areaRefreshDelay.count() <= 0) {
      getAreaListNet();
    } else {
      std::weak_ptr<bool> alive = alive_;
      areaTimer_ = Env::current().mainLoop->postAfter(areaRefreshDelay, [this, alive] {
        if (!alive.lock()) return;
        areaTimer_ = 0;
        getAreaListNet();
      });
    }
  }
  if (onLoaded) onLoaded();
}

void MainViewController::refreshNet() {
  // The content is the selected city's, so the button names it too: the city may have
  // been chosen on another screen since this one was made.
  addressButtonTitle_ = GlobalData::sharedInstance().getCurrentCityName();
  lastSelectCity_ = addressButtonTitle_;
  popularPage_ = 1;
  pendingHomeRequests_ = 4;
  const std::string city = currentCityId();
  sendHomeRequest<ResourcesNetApi>(resourcesRequest_, std::make_shared<ResourcesNetApi>(),
                                   [this](ResourcesNetApi& api) { resources_ = api.getResources(); });
  sendHomeRequest<RecommendStoreNetApi>(
      recommendRequest_, std::make_shared<RecommendStoreNetApi>(city),
      [this](RecommendStoreNetApi& api) { recommendStores_ = api.getRecommendStores(); });
  sendPopular();
  sendHomeRequest<TemplatesNetApi>(templatesRequest_, std::make_shared<TemplatesNetApi>(),
                                   [this](TemplatesNetApi& api) {
                                     templates_ = api.templatesFromResponse();
                                     TemplatesNetApi::resetTemplates(templates_);
                                   });
}

bool MainViewController::loadMorePopular() {
  // A page still loading would be stopped by the next one, and a refresh's first page
  // must not be followed by a later page of whatever list it replaces.
  if (popularRequest_ && popularRequest_->isExecuting()) return false;
  ++popularPage_;
  sendPopular();
  return true;
}

void MainViewController::sendPopular() {
  detachRequest(popularRequest_);
  auto request = std::make_shared<PopularStoreNetApi>(currentCityId(), std::to_string(popularPage_));
  attachRequest(*request, /*showLoading=*/false);
  popularRequest_ = request;
  const auto ended = [this](PopularStoreNetApi& api, bool correct) {
    if (correct) {
      std::vector<StoreInfoModel> stores = api.getPopularStores();
      popularTotal_ = api.totalCount();
      popularFooterHidden_ = stores.empty();
      if (popularPage_ <= 1) {
        popularStores_ = std::move(stores);
        if (popularStores_.empty()) popularStores_.push_back(placeholderRow());
      } else {
        std::erase_if(popularStores_, isPlaceholderRow);
        popularStores_.insert(popularStores_.end(), stores.begin(), stores.end());
        if (popularStores_.empty()) popularStores_.push_back(placeholderRow());
      }
    } else if (popularPage_ >= 2) {
      --popularPage_;
    }
    if (onPopularLoaded) onPopularLoaded(correct);
    homeRequestEnded();
  };
  request->startWithCompletionBlockWithSuccess(
      [ended](PopularStoreNetApi& api) {
        ended(api, api.isCorrectResult());
      },
      [ended](PopularStoreNetApi& api) { ended(api, false); });
}

// ---- Location ----

void MainViewController::locateEnded(LocateOutcome outcome) {
  if (onLocated) onLocated(outcome);
}

void MainViewController::showLocateFailed() {
  Env::current().alerts->show(
      {discovery_texts::kLocateAlertTitle, discovery_texts::kLocateFailed, {discovery_texts::kConfirm}, {}},
      [](const AlertAnswer&) {});
}

void MainViewController::startLocate() {
  const auto& location = Env::current().location;
  if (!location->locationServicesEnabled()) {
    showLocateFailed();
    locateEnded(LocateOutcome::ServicesDisabled);
    return;
  }
  locationed_ = false;
  locating_ = true;
  std::weak_ptr<bool> alive = alive_;
  location->startUpdatingLocation(
      [this, alive](Coordinate wgs) {
        if (alive.lock()) located(wgs);
      },
      [this, alive](void) {
        if (!alive.lock() || locationed_) return;
        showLocateFailed();
        locateEnded(LocateOutcome::Failed);
      });
}

void MainViewController::located(Coordinate wgs) {
  GlobalData::sharedInstance().setUserLocation(wgs);
  if (locationed_) return;
  locationed_ = true;
  const std::optional<Placemark> placemark = Env::current().geocoder->reverseGeocode(wgs);
  if (!placemark) return locateEnded(LocateOutcome::NoCity);
  std::string city = placemark->locality.empty() ? placemark->administrativeArea : placemark->locality;
  if (!GlobalData::sharedInstance().cityExist(city)) city = kDefaultCity;
  cityLocated(city);
}

void MainViewController::cityLocated(const std::string& city) {
  GlobalData::sharedInstance().setLocationCity(city);
  const std::string selected = Env::current().settings->stringForKey(kSelectCityKey).value_or("");
  if (selected.empty()) {
    GlobalData::setCurrentCityName(city);
    lastSelectCity_ = city;
    addressButtonTitle_ = city;
    refreshNet();
    return locateEnded(LocateOutcome::Selected);
  }
  if (selected == city) return locateEnded(LocateOutcome::Unchanged);
  const auto& alerts = Env::current().alerts;
  AlertSpec alert{
      discovery_texts::kSwitchCityTitle,
      std::string(discovery_texts::kSwitchCityMessagePrefix) + city + discovery_texts::kSwitchCityMessageSuffix,
      {discovery_texts::kCancel, discovery_texts::kSwitch},
      {}};
  std::weak_ptr<bool> alive = alive_;
  alerts->show(alert, [this, alive, city](const AlertAnswer& answer) {
    if (!alive.lock()) return;
    if (answer.buttonIndex != 1) return locateEnded(LocateOutcome::Declined);
    chooseCity(city);
    locateEnded(LocateOutcome::Switched);
  });
}

void MainViewController::chooseCity(const std::string& city) {
  GlobalData::setCurrentCityName(city);
  lastSelectCity_ = city;
  addressButtonTitle_ = city;
  // The reload follows from the notification, as for a city chosen on the picker.
  Env::current().notifications->post(kCityChangedNotification);
  if (!viewLoaded_) refreshNet();
}

void MainViewController::cityChanged() {
  addressButtonTitle_ = GlobalData::sharedInstance().getCurrentCityName();
  lastSelectCity_ = addressButtonTitle_;
  // Before its first load the screen has nothing of the old city to replace.
  if (!viewLoaded_) return;
  if (onChange) onChange();
  refreshNet();
}

// ---- Area cache ----

void MainViewController::getAreaListNet() {
  detachRequest(areaRequest_);
  auto request = std::make_shared<AreaNetApi>();
  areaRequest_ = request;
  areaAnswered_ = false;
  const std::uint64_t refresh = ++areaRefreshes_;
  request->startWithCompletionBlockWithSuccess(
      [this, refresh](AreaNetApi& api) {
        areaAnswered_ = true;
        if (!api.isCorrectResult() || !api.requestOperation) {
          if (onAreaRefreshed) onAreaRefreshed(false);
          return;
        }
        // A first start's answer is the whole table: reading it here would hold the
        // interface for milliseconds. Its text moves to the reader, and is freed once read.
        std::weak_ptr<bool> alive = alive_;
        areaRebuild_ = DBUtil::applyAreaList(
            [text = api.requestOperation->takeBody()] { return AreaNetApi::readAreas(text); },
            [this, alive, refresh](bool started) {
              if (!alive.lock() || refresh != areaRefreshes_) return;
              if (!started) areaRebuild_ = {};
              if (onAreaRefreshed) onAreaRefreshed(started);
            });
      },
      [this](BaseRequest&) {
        areaAnswered_ = true;
        if (onAreaRefreshed) onAreaRefreshed(false);
      });
}

bool MainViewController::areaRefreshed() const {
  return areaAnswered_ &&
         (!areaRebuild_.valid() || areaRebuild_.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
}

}  // namespace qmv
