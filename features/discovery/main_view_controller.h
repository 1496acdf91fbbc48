#pragma once
// The home screen, headless: for the selected city the banners, the recommended stores,
// the paged popular stores and the category templates; the member's position at start,
// reverse-geocoded to a city with the offer to switch to it; and the refresh of the
// cached area database from the server.
//
// viewDidLoad runs, in order: the automatic login with the stored phone and password,
// startLocate, refreshNet and, once that first load has ended, the area refresh. Once
// loaded, the screen follows "city_changed_noti" whoever posts it (the city picker, the located city's switch): the
// address button names the new city at once and the content reloads for it. Outcome callbacks tell a front end (or a
// command waiting for the flow to end) when each part is done.
#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/session/auto_login.h"
#include "core/session/base_view_controller.h"
#include "core/session/search_type_model.h"
#include "core/common/status.h"
#include "features/discovery/resource_model.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class AreaNetApi;
class PopularStoreNetApi;
class RecommendStoreNetApi;
class ResourcesNetApi;
class TemplatesNetApi;

class MainViewController : public BaseViewController {
 public:
  enum class LocateOutcome {
    ServicesDisabled,  // "定位失败,请手动选择当前城市" shown
    Failed,            // no position arrived; the same alert shown
    NoCity,            // position stored, but no place known there
    Unchanged,         // the located city is the selected one
    Selected,          // nothing was selected: the located city was taken
    Switched,          // the member chose "切换"
    Declined,          // the member chose "取消"
  };

  MainViewController();
  ~MainViewController() override;
  MainViewController(const MainViewController&) = delete;
  MainViewController& operator=(const MainViewController&) = delete;

  // Runs autoLoginNet (unless this screen has sent it already), startLocate and
  // refreshNet; getAreaListNet follows areaRefreshDelay after that load has ended.
  void viewDidLoad();
  bool isViewLoaded() const { return viewLoaded_; }

  // The silent sign-in of every start: see AutoLogin. Returns whether a login was sent;
  // onAutoLoginFinished follows once it ends.
  bool autoLoginNet();
  // Why the automatic login did not sign the member in; empty when it did or was not sent.
  const std::string& autoLoginFailure() const { return autoLogin_.failureReason(); }

  // Restarts the popular list at page 1 and asks for the banners, the recommended
  // stores, popular page 1 and the templates of the current city, whose name the address
  // button then shows; onLoaded runs when all four have ended. A popular page still
  // loading is stopped: the refresh wins.
  void refreshNet();
  // Asks for the next popular page; a failed page is asked for again next time. Refused
  // (false) while a popular page, the refresh's first among them, is still loading.
  bool loadMorePopular();
  // Hidden once a page arrived without stores: there is nothing more to load.
  bool popularFooterHidden() const { return popularFooterHidden_; }
  // True while requests of the last refreshNet are out (onLoaded has not run yet).
  bool isLoading() const { return pendingHomeRequests_ > 0; }

  // Starts locating the member; see LocateOutcome for the ends, told through onLocated.
  void startLocate();

  // Asks for areas newer than the cached ones and, on a correct non-empty list, stores
  // its version and rebuilds the cache in the background (areaRebuild()). The answer (the
  // whole table at a first start) is read in the background too.
  void getAreaListNet();
  // The reading of the last area refresh's answer and the cache rebuild it started: running
  // or finished; invalid when no answer is being read and no rebuild was started.
  const std::shared_future<Status>& areaRebuild() const { return areaRebuild_; }
  // True once the last area refresh has ended: its answer arrived or failed, and the
  // rebuild it started, if any, is done.
  bool areaRefreshed() const;

  // A tap on banner `index`: its page on the plain page screen, under the banner's
  // title. Nothing (false) for an index out of range or a URL that is not http(s).
  bool didSelectBanner(std::size_t index) const;

  // The category id a home category entry hands to the nearby list. The home's templates
  // group the catalogue's categories under names and ids of their own (餐饮美食 holds
  // 美食's 火锅, 自助餐, ...), which the list's picker does not know: the entry's id when
  // the catalogue has it, else the catalogue's main category holding more of the entry's
  // sub-categories than any other; "0" (all categories) when none stands out.
  static std::string handoverTypeId(const SearchTypeModel& entry, const std::vector<SearchTypeModel>& catalogue);

  // One entry of the home's category section: a main category, whose picture is one of
  // the application's own (a name from the home list), or a sub-category, whose picture
  // the server serves (an address).
  struct CategoryEntry {
    std::string name;
    std::string typeId;  // what a tap hands to the nearby list
    std::string imageName;
    std::string imageUrl;
    friend bool operator==(const CategoryEntry&, const CategoryEntry&) = default;
  };
  struct CategoryGroup {
    CategoryEntry main;
    Color nameColor;
    std::vector<CategoryEntry> subs;
    friend bool operator==(const CategoryGroup&, const CategoryGroup&) = default;
  };
  // The home's categories: `homeList` (the session's home list, templates merged in) in
  // its order, without nameless groups or sub-categories. A main category hands over
  // handoverTypeId; a sub-category its own id when the catalogue knows it (as a main or a
  // sub-category), else its group's.
  static std::vector<CategoryGroup> categoryGroups(const std::vector<SearchTypeModel>& homeList,
                                                   const std::vector<SearchTypeModel>& catalogue);
  // categoryGroups of the session's home list and the saved (or built-in) catalogue.
  static std::vector<CategoryGroup> homeCategoryGroups();

  // True for the placeholder row shown when the city has no popular store.
  static bool isPlaceholderRow(const StoreInfoModel& store);

  const std::vector<ResourceModel>& resources() const { return resources_; }
  const std::vector<StoreInfoModel>& recommendStores() const { return recommendStores_; }
  // Popular stores; one placeholder row (storeId "-1") when page 1 had none.
  const std::vector<StoreInfoModel>& popularStores() const { return popularStores_; }
  long popularPage() const { return popularPage_; }
  long popularTotal() const { return popularTotal_; }
  const std::vector<SearchTypeModel>& templates() const { return templates_; }
  const std::string& addressButtonTitle() const { return addressButtonTitle_; }
  const std::string& lastSelectCity() const { return lastSelectCity_; }
  bool locationed() const { return locationed_; }

  bool hasData() const override { return !popularStores_.empty() || !recommendStores_.empty(); }

  // true when the automatic login signed the member in.
  std::function<void(bool signedIn)> onAutoLoginFinished;
  std::function<void()> onLoaded;
  std::function<void(bool correct)> onPopularLoaded;
  std::function<void(LocateOutcome)> onLocated;
  // true when a rebuild was started (areaRebuild() is valid), false otherwise.
  std::function<void(bool started)> onAreaRefreshed;
  // How long after the first load has ended the area refresh starts. A front end that then
  // still fetches, decodes and draws the load's pictures gives them this head start.
  std::chrono::milliseconds areaRefreshDelay{0};

 private:
  template <typename Api>
  void sendHomeRequest(std::shared_ptr<Api>& slot, std::shared_ptr<Api> request, std::function<void(Api&)> onCorrect);
  void homeRequestEnded();
  void sendPopular();
  void located(Coordinate wgs);
  void cityLocated(const std::string& city);
  void chooseCity(const std::string& city);
  void locateEnded(LocateOutcome outcome);
  void showLocateFailed();
  void cityChanged();

  std::vector<ResourceModel> resources_;
  std::vector<StoreInfoModel> recommendStores_;
  std::vector<StoreInfoModel> popularStores_;
  std::vector<SearchTypeModel> templates_;
  long popularPage_ = 1;
  long popularTotal_ = 0;
  bool popularFooterHidden_ = false;
  bool viewLoaded_ = false;
  bool autoLoginSent_ = false;
  int pendingHomeRequests_ = 0;
  std::string addressButtonTitle_;
  std::string lastSelectCity_;
  bool locationed_ = false;
  bool locating_ = false;
  std::uint64_t cityObserver_ = 0;

  std::shared_ptr<ResourcesNetApi> resourcesRequest_;
  std::shared_ptr<RecommendStoreNetApi> recommendRequest_;
  std::shared_ptr<PopularStoreNetApi> popularRequest_;
  std::shared_ptr<TemplatesNetApi> templatesRequest_;
  std::shared_ptr<AreaNetApi> areaRequest_;
  AutoLogin autoLogin_;
  std::shared_future<Status> areaRebuild_;
  bool areaAnswered_ = false;
  // Tells the answer being read of the last refresh from those of earlier ones.
  std::uint64_t areaRefreshes_ = 0;
  bool areaRefreshDue_ = false;
  std::uint64_t areaTimer_ = 0;
  // Cleared on destruction so that late position or alert callbacks do nothing.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace qmv
