// Commands of discovery: the home page, store search and history, categories, the map,
// store and offer screens, the city and its list, the member's position, the route
// hand-off and the coordinate converter. Each runs the headless screen of the app and
// prints what it shows.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <memory>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/cli_texts.h"
#include "apps/qmv/command_registry.h"
#include "apps/qmv/discovery_rows.h"
#include "core/common/log.h"
#include "core/session/global_data.h"
#include "features/discovery/area_select_view.h"
#include "features/discovery/category_catalogue.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/location_converter.h"
#include "features/discovery/main_view_controller.h"
#include "features/discovery/map_view_controller.h"
#include "features/discovery/near_by_map_view.h"
#include "features/discovery/nearby_view.h"
#include "features/discovery/qx_activities_view_controller.h"
#include "features/discovery/qxr_store_detail_view_controller.h"
#include "features/discovery/search_type_net_api.h"
#include "features/discovery/search_view.h"
#include "platform/location_source.h"
#include "platform/notification_center.h"
#include "shell/app_delegate.h"
#include "shell/launch_view_controller.h"

namespace qmv::cli {
namespace {

namespace texts = discovery_texts;

std::string coordinateText(Coordinate c) {
  char text[64];
  std::snprintf(text, sizeof text, "%.8f,%.8f", c.latitude, c.longitude);
  return text;
}

// The home screen locates the member at every start; commands other than home and
// locate wait for that first fix without the city prompts.
void locateQuietly(CliApp& app) {
  const auto location = Env::current().location;
  if (!location->locationServicesEnabled()) return;
  bool done = false;
  location->startUpdatingLocation(
      [&done](Coordinate wgs) {
        GlobalData::sharedInstance().setUserLocation(wgs);
        done = true;
      },
      [&done] { done = true; });
  app.waitUntil([&done] { return done; }, std::chrono::milliseconds(3000));
  location->stopUpdatingLocation();
}

// ---- home ----

int runHome(CliApp& app, long pages) {
  AppDelegate& delegate = app.appDelegate();
  // Asking for the home page leaves the first-run guide for the main tabs.
  if (delegate.mainCtrl() == nullptr) delegate.showMainTabs();
  MainViewController& home = *delegate.mainCtrl();
  // The screen outlives this command in the shell: its callbacks must not outlive our frame.
  struct Unhook {
    MainViewController& home;
    ~Unhook() {
      home.onLoaded = nullptr;
      home.onAreaRefreshed = nullptr;
      home.onLocated = nullptr;
      home.onPopularLoaded = nullptr;
    }
  } unhook{home};
  bool loaded = false;
  bool areaDone = false;
  std::optional<MainViewController::LocateOutcome> located;
  home.onLoaded = [&] { loaded = true; };
  home.onAreaRefreshed = [&](bool) { areaDone = true; };
  home.onLocated = [&](MainViewController::LocateOutcome outcome) {
    located = outcome;
    // Taking or switching to the located city reloads the home content.
    using enum MainViewController::LocateOutcome;
    if (outcome == Selected || outcome == Switched) loaded = false;
  };
  if (home.isViewLoaded()) {
    // Shown again in the same run (the shell): pulled down to refresh.
    home.refreshNet();
    if (!app.waitUntil([&] { return loaded; })) return timedOut("home");
  } else {
    home.viewDidLoad();
    // Four slots end the first load (and an alert may interrupt it), so it is no awaitSlot.
    if (!app.waitUntil([&] { return loaded && areaDone && (located || app.pendingAlerts() > 0); })) return timedOut("home");
  }
  // The area cache is written off the interface thread; the run ends once it is whole.
  if (home.areaRebuild().valid()) home.areaRebuild().wait_for(std::chrono::seconds(5));
  bool pageFailed = false;
  while (home.popularPage() < pages && !home.popularFooterHidden()) {
    bool asked = false;
    const auto page = awaitSlot(app, home.onPopularLoaded, [&] { return asked = home.loadMorePopular(); });
    if (!asked) break;
    if (!page) return timedOut("home");
    if (!*page) {
      pageFailed = true;
      break;
    }
  }
  CliOutput& out = app.output();
  out.line("city: " + home.addressButtonTitle());
  out.data("city", home.addressButtonTitle());
  // Nothing arrived to show: what went wrong was shown or reported on stderr.
  const bool shown = !home.popularStores().empty() || !home.recommendStores().empty();
  if (!shown) return kExitFailure;
  Json banners = Json::array();
  for (const ResourceModel& banner : home.resources()) {
    out.line("banner: " + banner.title + " " + banner.URL);
    banners.push_back({{"title", banner.title}, {"url", banner.URL}, {"image", banner.imgURL}});
  }
  out.data("banners", banners);
  printStores(out, texts::kRecommendSection, "recommended", home.recommendStores());
  std::vector<StoreInfoModel> popular;
  for (const StoreInfoModel& store : home.popularStores()) {
    if (!MainViewController::isPlaceholderRow(store)) popular.push_back(store);
  }
  printStores(out, texts::kPopularSection, "popular", popular);
  out.data("page", home.popularPage());
  out.data("total", home.popularTotal());
  return pageFailed ? kExitFailure : kExitOk;
}

// ---- search and history ----

struct SearchOptions {
  std::string keyword;
  std::string district;
  std::string category;
  int sort = -1;
  long page = 1;
};

int runSearch(CliApp& app, const SearchOptions& options) {
  locateQuietly(app);
  NearbyView view;
  if (!options.district.empty()) {
    if (std::find(view.areaList.begin(), view.areaList.end(), options.district) == view.areaList.end()) {
      std::cerr << "qmv: " << options.district << " is not a district of "
                << GlobalData::sharedInstance().getCurrentCityName() << '\n';
      return kExitUsage;
    }
    view.areaButton.title = options.district;
  }
  if (!options.category.empty()) {
    if (!view.categoryScreen.resetCategory(options.category)) {
      std::cerr << "qmv: no category has the id " << options.category << " (see qmv categories)\n";
      return kExitUsage;
    }
    view.categoryButton.title = view.categoryScreen.getSelectedItem();
  }
  if (options.sort >= 0) view.sortButton.title = view.sortList[static_cast<std::size_t>(options.sort)];

  // A page the answer held in an unreadable form is reported, not shown as empty.
  const std::size_t warnings = warningCount();
  auto answer = awaitSlot(app, view.onLoaded, [&] {
    if (!options.keyword.empty()) {
      view.searchKeyword(options.keyword);
    } else {
      view.startSearchNet();
    }
  });
  if (!answer) return timedOut("search");
  bool correct = *answer;
  while (correct && view.pageNum < options.page && !view.loadMoreFooterHidden) {
    answer = awaitSlot(app, view.onLoaded, [&view] { view.loadMore(); });
    if (!answer) return timedOut("search");
    correct = *answer;
  }
  const bool loaded = correct && warningCount() == warnings;
  // Nothing to show: what went wrong was shown or reported on stderr.
  if (!loaded && view.storeList.empty()) return kExitFailure;
  CliOutput& out = app.output();
  if (options.keyword.empty()) {
    out.line(view.areaButton.title + " | " + view.categoryButton.title + " | " + view.sortButton.title);
  }
  printStores(out, "", "stores", view.storeList);
  out.line("page " + std::to_string(view.pageNum));
  out.data("page", view.pageNum);
  out.data("filters", {{"area", view.areaButton.title},
                       {"category", view.categoryButton.title},
                       {"sort", view.sortButton.title},
                       {"keyword", options.keyword}});
  return loaded ? kExitOk : kExitFailure;
}

int runHistory(CliApp& app, bool clear) {
  SearchView view;
  if (clear) view.clearHistory();
  CliOutput& out = app.output();
  if (view.history().empty()) {
    out.line(view.emptyText());
  } else {
    out.line(view.headerText());
    for (const std::string& word : view.history()) out.line("  " + word);
  }
  out.data("history", view.history());
  return kExitOk;
}

int runCategories(CliApp& app) {
  // A correct catalogue is kept for the next start, as the app does.
  CategoryCatalogue catalogue;
  std::optional<bool> saved;
  catalogue.refresh([&saved](bool ok) { saved = ok; });
  if (!app.waitUntil([&] { return saved.has_value(); })) return timedOut("categories");
  CliOutput& out = app.output();
  Json list = Json::array();
  for (const SearchTypeModel& type : SearchTypeNetApi::getSearchTypes()) {
    out.line(type.typeId + " " + type.name);
    Json subs = Json::array();
    for (const auto& sub : type.list) {
      out.line("  " + sub.typeId + " " + sub.name);
      subs.push_back({{"id", sub.typeId}, {"name", sub.name}});
    }
    list.push_back({{"id", type.typeId}, {"name", type.name}, {"list", subs}});
  }
  out.data("categories", list);
  return kExitOk;
}

// ---- map, store, offer, route ----

int runMap(CliApp& app, const std::string& category) {
  locateQuietly(app);
  NearByMapView map;
  const auto loaded = awaitSlot(app, map.onLoaded, [&] {
    if (category.empty()) {
      map.getMapListNet();
    } else {
      map.mapViewChangedTypeID(category);
    }
  });
  if (!loaded) return timedOut("map");
  // Nothing to show: what went wrong was shown or reported on stderr.
  if (!*loaded) return kExitFailure;
  CliOutput& out = app.output();
  out.line(map.categoryTitle);
  Json pins = Json::array();
  for (const NearByMapView::Pin& pin : map.pins) {
    out.line("  " + pin.storeId + " " + pin.title + " @ " + coordinateText(pin.gcj) + " | " + pin.subtitle);
    pins.push_back({{"storeId", pin.storeId},
                    {"title", pin.title},
                    {"subtitle", pin.subtitle},
                    {"gcj02", {pin.gcj.latitude, pin.gcj.longitude}}});
  }
  out.data("category", {{"id", map.typeID}, {"name", map.categoryTitle}});
  out.data("pins", pins);
  return kExitOk;
}

// Loads one store; nullopt (after the screen said why) when it could not be shown.
std::optional<StoreInfoModel> loadStore(CliApp& app, QXRStoreDetailViewController& screen) {
  const auto loaded = awaitSlot(app, screen.onLoaded, [&screen] { screen.loadDetail(); });
  if (!loaded) {
    timedOut("store");
    return std::nullopt;
  }
  return *loaded ? screen.store() : std::nullopt;
}

int runStore(CliApp& app, const std::string& id) {
  locateQuietly(app);
  QXRStoreDetailViewController screen(id, "");
  const auto store = loadStore(app, screen);
  if (!store) return kExitFailure;
  CliOutput& out = app.output();
  out.line(store->storeName + " (" + screen.pictureCountText() + ")");
  out.line(store->address);
  out.line(screen.openingHoursText());
  out.line(screen.perPersonText());
  out.line(store->phone.empty() ? texts::kNoPhone : texts::kTelPrefix + store->phone);
  out.data("store", storeRowJson(*store, GlobalData::sharedInstance().userLocation()));
  out.data("texts", {{"pictures", screen.pictureCountText()},
                     {"hours", screen.openingHoursText()},
                     {"perPerson", screen.perPersonText()},
                     {"comments", screen.commentCountText()},
                     {"favorite", store->favorite},
                     {"phone", store->phone}});
  out.line(texts::kOffersSection);
  Json offers = Json::array();
  for (const ActivityModel& offer : store->activityList) {
    out.line("  " + offer.commodityID + " " + offer.name + " | " + offer.labelledPriceText() + " " +
             offer.originalPriceText() + " | " + offer.soldText());
    offers.push_back({{"commodityId", offer.commodityID},
                      {"name", offer.name},
                      {"priceLabel", offer.priceLabel()},
                      {"price", offer.priceText()},
                      {"originalPrice", offer.originalPriceText()},
                      {"sold", offer.soldText()}});
  }
  out.data("offers", offers);
  out.line(std::string(texts::kCommentsSection) + " " + screen.commentCountText());
  Json grades = Json::array();
  for (const GradeModel& grade : screen.gradeList()) {
    out.line("  " + grade.nickName + " " + grade.star + "★ " + grade.time + " " + grade.content);
    grades.push_back(
        {{"nickName", grade.nickName}, {"star", grade.star}, {"time", grade.time}, {"content", grade.content}});
  }
  out.data("comments", grades);
  out.line(texts::kMoreComments);
  return kExitOk;
}

int runActivity(CliApp& app, const std::string& id) {
  QXActivitiesViewController screen(id);
  const auto loaded = awaitSlot(app, screen.onLoaded, [&screen] { screen.loadDetail(); });
  if (!loaded) return timedOut("activity");
  if (!*loaded) return kExitFailure;
  const ActivityModel& offer = *screen.activity();
  CliOutput& out = app.output();
  out.line(offer.name + " | " + offer.storeName);
  out.line(screen.priceLabel() + " " + screen.priceText() + " " + screen.originalPriceText() + " " + screen.soldText());
  out.line(texts::kPackageSection);
  Json packages = Json::array();
  for (const auto& package : screen.packages()) {
    out.line("  " + package.title);
    Json items = Json::array();
    for (const auto& item : package.items) {
      out.line("    " + item.commodity + " " + item.amount + " " + item.price);
      items.push_back({{"commodity", item.commodity}, {"amount", item.amount}, {"price", item.price}});
    }
    packages.push_back({{"title", package.title}, {"items", items}});
  }
  out.line(texts::kNoticeSection);
  for (const std::string& line : screen.noticeLines()) out.line("  " + line);
  out.data("activity", {{"commodityId", offer.commodityID},
                        {"name", offer.name},
                        {"storeId", offer.storeId},
                        {"storeName", offer.storeName},
                        {"priceLabel", screen.priceLabel()},
                        {"price", screen.priceText()},
                        {"originalPrice", screen.originalPriceText()},
                        {"sold", screen.soldText()},
                        {"descImage", screen.showsDescImage()}});
  out.data("packages", packages);
  out.data("notice", screen.noticeLines());
  return kExitOk;
}

int runRoute(CliApp& app, const std::string& id) {
  locateQuietly(app);
  QXRStoreDetailViewController detail(id, "");
  const auto store = loadStore(app, detail);
  if (!store) return kExitFailure;
  MapViewController map(*store);
  map.viewDidLoad();  // says "位置信息错误" when the store cannot be placed
  const auto choices = map.navigationChoices();
  if (std::find(choices.begin(), choices.end(), texts::kBaiduMaps) == choices.end()) {
    std::cerr << "qmv: no application opens " << texts::kBaiduMapScheme << '\n';
    return kExitFailure;
  }
  const auto outcome = map.routeWithBaiduMap();
  if (const auto gcj = map.storeCoordinateGcj()) app.output().data("storeGcj02", coordinateText(*gcj));
  app.output().data("opened", outcome == MapViewController::RouteOutcome::Opened);
  return outcome == MapViewController::RouteOutcome::Opened ? kExitOk : kExitFailure;
}

// ---- city, cities, locate ----

int runCity(CliApp& app, const std::string& name) {
  GlobalData& session = GlobalData::sharedInstance();
  CliOutput& out = app.output();
  if (!name.empty()) {
    AreaSelectView picker;
    if (!picker.selectCity(name)) {
      std::cerr << "qmv: " << name << " is not a known city (see qmv cities)\n";
      return kExitFailure;
    }
  }
  const std::string city = session.getCurrentCityName();
  const std::string id = session.getCurrentCityId().value_or("");
  out.line(city + " " + id);
  out.data("city", {{"name", city}, {"id", id}});
  return kExitOk;
}

int runCities(CliApp& app, const std::string& key) {
  CliOutput& out = app.output();
  Json data = Json::object();
  if (key.empty()) {
    AreaSelectView picker;
    for (const auto& [letter, cities] : picker.sections()) {
      std::string line = letter + ":";
      Json names = Json::array();
      for (const AreaModel& city : cities) {
        line += " " + city.areaName;
        names.push_back(city.areaName);
      }
      out.line(line);
      data[letter] = names;
    }
  } else {
    Json names = Json::array();
    for (const AreaModel& city : AreaSelectView::search(key)) {
      out.line(city.areaID + " " + city.areaName + " " + city.areaPY);
      names.push_back({{"id", city.areaID}, {"name", city.areaName}, {"pinyin", city.areaPY}});
    }
    data = names;
  }
  out.data("cities", data);
  return kExitOk;
}

// The first-run guide's pages; with `locate`, its one position request; with `city`, the
// city its picker chooses. The guide is the graphical client's first screen; here it is
// a command a member may run at any time.
int runGuide(CliApp& app, bool locate, const std::string& city) {
  CliOutput& out = app.output();
  LaunchViewController guide;
  Json pages = Json::array();
  for (std::size_t i = 0; i < LaunchViewController::kPageCount; ++i) {
    const LaunchViewController::Page& page = LaunchViewController::page(i);
    out.line(std::to_string(i + 1) + ". " + page.title);
    out.line("   " + std::string(page.text));
    pages.push_back({{"title", page.title}, {"text", page.text}});
  }
  out.data("pages", pages);
  int exit = kExitOk;
  if (locate) {
    guide.askForLocation();
    if (!app.waitUntil([&] { return guide.location() != LaunchViewController::Location::Asking; },
                       std::chrono::milliseconds(5000))) {
      return timedOut("locate");
    }
    out.line(guide.locationText());
    out.data("location", guide.locationText());
    if (guide.location() != LaunchViewController::Location::Located) exit = kExitFailure;
  }
  if (!city.empty() && !AreaSelectView().selectCity(city)) {
    std::cerr << "qmv: " << city << " is not a known city (see qmv cities)\n";
    return kExitFailure;
  }
  out.line(LaunchViewController::cityText());
  out.data("city", GlobalData::sharedInstance().getCurrentCityName());
  return exit;
}

int runLocate(CliApp& app) {
  MainViewController home;
  std::optional<MainViewController::LocateOutcome> located;
  home.onLocated = [&](MainViewController::LocateOutcome outcome) { located = outcome; };
  home.startLocate();
  // An alert may end this wait instead of the slot.
  if (!app.waitUntil([&] { return located || app.pendingAlerts() > 0; }, std::chrono::milliseconds(5000))) {
    return timedOut("locate");
  }
  using enum MainViewController::LocateOutcome;
  if (located == Selected || located == Switched) {
    // The reload is already under way.
    awaitSlot(app, home.onLoaded, [] {});
  }
  CliOutput& out = app.output();
  const GlobalData& session = GlobalData::sharedInstance();
  if (const auto& position = session.userLocation()) {
    out.line("position: " + coordinateText(*position));
    out.data("position", {position->latitude, position->longitude});
  }
  if (!session.locationCity().empty()) out.line("located city: " + session.locationCity());
  out.line("city: " + session.getCurrentCityName());
  out.data("locatedCity", session.locationCity());
  out.data("city", session.getCurrentCityName());
  return located == ServicesDisabled || located == Failed || located == NoCity ? kExitFailure : kExitOk;
}

// ---- convert ----

// A finite angle of at most `limit` degrees either way: the converters give nothing
// meaningful outside the globe, and "%.8f" of 1e300 is not a coordinate.
CLI::Validator degrees(double limit) {
  return CLI::Validator(
      [limit](std::string& text) -> std::string {
        double value = 0;
        const char* end = text.data() + text.size();
        const auto [stop, ec] = std::from_chars(text.data(), end, value);
        if (ec != std::errc() || stop != end || !std::isfinite(value) || std::fabs(value) > limit) {
          return "expected degrees from " + std::to_string(static_cast<int>(-limit)) + " to " +
                 std::to_string(static_cast<int>(limit)) + ", got " + text;
        }
        return {};
      },
      "DEGREES");
}

int runConvert(CliApp& app, const std::string& direction, double latitude, double longitude) {
  const Coordinate in{latitude, longitude};
  Coordinate result;
  if (direction == "wgs-gcj") {
    result = LocationConverter::transformFromWGSToGCJ(in);
  } else if (direction == "gcj-wgs") {
    result = LocationConverter::transformFromGCJToWGS(in);
  } else if (direction == "gcj-bd") {
    result = LocationConverter::transformFromGCJToBaidu(in);
  } else {
    result = LocationConverter::transformFromBaiduToGCJ(in);
  }
  app.output().line(coordinateText(result));
  app.output().data("latitude", result.latitude);
  app.output().data("longitude", result.longitude);
  return kExitOk;
}

}  // namespace

void registerDiscoveryCommands(CommandRegistry& registry) {
  {
    auto pages = std::make_shared<long>(1);
    CLI::App* home = registry.add("home", "the home page of the selected city: banners, recommended and popular stores",
                                  [pages](CliApp& app) { return runHome(app, *pages); });
    home->add_option("--page", *pages, "load popular stores up to this page")->check(CLI::Range(1L, 1000L));
  }
  {
    auto options = std::make_shared<SearchOptions>();
    CLI::App* search = registry.add("search", "search the stores of the selected city by keyword or by filters",
                                    [options](CliApp& app) { return runSearch(app, *options); });
    search->add_option("KEYWORD", options->keyword, "keyword (saved in the history); filters are then ignored");
    search->add_option("--district", options->district, "district name of the selected city");
    search->add_option("--category", options->category, "category id (see qmv categories)");
    search->add_option("--sort", options->sort, "0 default, 1 nearest, 2 lowest spend, 3 most praised")
        ->check(CLI::Range(0, 3));
    search->add_option("--page", options->page, "load up to this page")->check(CLI::Range(1L, 1000L));
  }
  {
    auto clear = std::make_shared<bool>(false);
    CLI::App* history =
        registry.add("history", "the search history", [clear](CliApp& app) { return runHistory(app, *clear); });
    history->add_flag("--clear", *clear, "forget every word first");
  }
  registry.add("categories", "the store categories with their ids", [](CliApp& app) { return runCategories(app); });
  {
    auto category = std::make_shared<std::string>();
    CLI::App* map = registry.add("map", "stores around the member (needs a position, e.g. --at)",
                                 [category](CliApp& app) { return runMap(app, *category); });
    map->add_option("--category", *category, "category id");
  }
  {
    auto id = std::make_shared<std::string>();
    CLI::App* store = registry.add("store", "one store with its offers and comments",
                                   [id](CliApp& app) { return runStore(app, *id); });
    store->add_option("ID", *id, "store id")->required();
  }
  {
    auto id = std::make_shared<std::string>();
    CLI::App* activity = registry.add("activity", "one offer with its packages and notice",
                                      [id](CliApp& app) { return runActivity(app, *id); });
    activity->add_option("ID", *id, "offer (commodity) id")->required();
  }
  {
    auto name = std::make_shared<std::string>();
    CLI::App* city = registry.add("city", "show the selected city, or choose one",
                                  [name](CliApp& app) { return runCity(app, *name); });
    city->add_option("NAME", *name, cli_texts::kCityHelp);
  }
  {
    auto key = std::make_shared<std::string>();
    CLI::App* cities = registry.add("cities", "cities by initial letter, or those matching KEY",
                                    [key](CliApp& app) { return runCities(app, *key); });
    cities->add_option("KEY", *key, "part of a name or of its pinyin");
  }
  {
    struct GuideOptions {
      bool locate = false;
      std::string city;
    };
    auto options = std::make_shared<GuideOptions>();
    CLI::App* guide = registry.add("guide", "the first-run guide: its pages, the position request, the city",
                                   [options](CliApp& app) { return runGuide(app, options->locate, options->city); });
    guide->add_flag("--locate", options->locate, "ask for the device's position as the guide's button does");
    guide->add_option("--city", options->city, "choose the city as the guide's picker does");
  }
  registry.add("locate", "locate the member (see --at) and offer to switch to the located city",
               [](CliApp& app) { return runLocate(app); });
  {
    auto id = std::make_shared<std::string>();
    CLI::App* route = registry.add("route", "the Baidu map route from the member to a store",
                                   [id](CliApp& app) { return runRoute(app, *id); });
    route->add_option("STORE_ID", *id, "store id")->required();
  }
  {
    struct Convert {
      std::string direction;
      double latitude = 0;
      double longitude = 0;
    };
    auto args = std::make_shared<Convert>();
    CLI::App* convert = registry.addWithoutStart(
        "convert", "convert a coordinate between WGS-84, GCJ-02 and BD-09",
        [args](CliApp& app) { return runConvert(app, args->direction, args->latitude, args->longitude); });
    convert->add_option("DIRECTION", args->direction, "wgs-gcj, gcj-wgs, gcj-bd or bd-gcj")
        ->required()
        ->check(CLI::IsMember({"wgs-gcj", "gcj-wgs", "gcj-bd", "bd-gcj"}));
    convert->add_option("LAT", args->latitude, "latitude in degrees")->required()->check(degrees(90));
    convert->add_option("LON", args->longitude, "longitude in degrees")->required()->check(degrees(180));
  }
}

}  // namespace qmv::cli
