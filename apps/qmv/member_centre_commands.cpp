// Commands of the member centre's bookmarks, messages and feedback: toggling a store's or
// an offer's bookmark from its screen, the bookmarks screen's two tabs, the messages
// (unread ones marked, then read) and sending feedback. The lists print page N ("--page
// N": page 1, then N-1 pulls up).
#include <memory>
#include <string>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/command_registry.h"
#include "apps/qmv/discovery_rows.h"
#include "core/session/global_data.h"
#include "features/discovery/my_favorite_view_controller.h"
#include "features/discovery/qx_activities_view_controller.h"
#include "features/discovery/qxr_store_detail_view_controller.h"
#include "features/member/feedback_view_controller.h"
#include "features/member/my_news_view_controller.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

// Loads `screen`'s record, taps its bookmark button and says the state that follows.
template <class Screen, class Name>
int toggleBookmark(CliApp& app, Screen& screen, Name name) {
  const auto loaded = awaitSlot(app, screen.onLoaded, [&screen] { screen.loadDetail(); });
  if (!loaded) return timedOut("the detail");
  if (!*loaded) return kExitFailure;
  const auto done = awaitSlot(app, screen.onBookmarked, [&screen] { screen.bookmark(); });
  if (!done) return timedOut("the bookmark");
  if (!*done) return kExitFailure;
  CliOutput& out = app.output();
  out.line(name() + " " + screen.bookmarkStateText());
  out.data("name", name());
  out.data("state", screen.bookmarkStateText());
  return kExitOk;
}

int runBookmark(CliApp& app, const std::string& kind, const std::string& id) {
  if (!memberSignedIn(app)) return kExitFailure;
  app.output().data("kind", kind);
  app.output().data("id", id);
  if (kind == "store") {
    QXRStoreDetailViewController screen(id, "");
    const int status = toggleBookmark(app, screen, [&screen] { return screen.storeName(); });
    if (status == kExitOk) app.output().data("favorite", screen.store()->favorite);
    return status;
  }
  QXActivitiesViewController screen(id);
  const int status = toggleBookmark(app, screen, [&screen] { return screen.activity()->name; });
  if (status == kExitOk) app.output().data("favorite", screen.activity()->favorite);
  return status;
}

int runFavorites(CliApp& app, bool offers, long pages) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(discovery_texts::kFavoritesScreen);
  using Tab = MyFavoriteViewController::Tab;
  MyFavoriteViewController screen(offers ? Tab::Offers : Tab::Stores);
  CliOutput& out = app.output();
  const std::string heading = std::string(screen.title()) + " - " + MyFavoriteViewController::tabTitle(screen.tab());
  Json rows = Json::array();
  if (offers) {
    auto& list = screen.offers();
    const auto from = loadListPages(app, list, pages);
    if (!from) return kExitFailure;
    out.line(heading);
    if (list.rows().empty()) out.line(screen.emptyText());
    for (std::size_t i = *from; i < list.rows().size(); ++i) {
      const ActivityModel& offer = list.rows()[i];
      out.line("  " + offer.commodityID + " " + offer.name + " | " + offer.storeName + " | " +
               offer.labelledPriceText() + " " + offer.originalPriceText() + " | " + offer.soldText());
      rows.push_back({{"commodityId", offer.commodityID},
                      {"name", offer.name},
                      {"storeId", offer.storeId},
                      {"storeName", offer.storeName},
                      {"priceLabel", offer.priceLabel()},
                      {"price", offer.priceText()},
                      {"originalPrice", offer.originalPriceText()},
                      {"sold", offer.soldText()},
                      {"favorite", offer.favorite}});
    }
    out.data("page", list.pageNum());
  } else {
    auto& list = screen.stores();
    const auto from = loadListPages(app, list, pages);
    if (!from) return kExitFailure;
    out.line(heading);
    if (list.rows().empty()) out.line(screen.emptyText());
    const auto member = GlobalData::sharedInstance().userLocation();
    for (std::size_t i = *from; i < list.rows().size(); ++i) {
      out.line("  " + storeRowText(list.rows()[i], member));
      rows.push_back(storeRowJson(list.rows()[i], member));
    }
    out.data("page", list.pageNum());
  }
  out.data("tab", offers ? "offers" : "stores");
  out.data(offers ? "offers" : "stores", rows);
  return kExitOk;
}

int runMessages(CliApp& app, long pages) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(member_centre_texts::kMessagesScreen);
  MyNewsViewController screen;
  const auto from = loadListPages(app, screen, pages);
  if (!from) return kExitFailure;
  // The reading follows page 1; a command that ended first would take it back.
  const std::size_t unread = screen.unreadCount();
  if (!app.waitUntil([&screen] { return !screen.isMarkingRead(); })) return timedOut("the reading of the messages");
  CliOutput& out = app.output();
  out.line(screen.title());
  if (screen.rows().empty()) out.line(MyNewsViewController::kEmptyText);
  Json rows = Json::array();
  for (std::size_t i = *from; i < screen.rows().size(); ++i) {
    const NewsInfoModel& news = screen.rows()[i];
    const bool isUnread = MyNewsViewController::isUnread(news);
    out.line("  " + (isUnread ? "[" + std::string(MyNewsViewController::kUnreadMark) + "] " : std::string()) +
             news.title + "  " + news.time);
    out.line("    " + news.content);
    rows.push_back({{"title", news.title},
                    {"time", news.time},
                    {"content", news.content},
                    {"isRead", news.isRead},
                    {"unread", isUnread}});
  }
  out.data("page", screen.pageNum());
  out.data("unread", unread);
  out.data("messages", rows);
  return kExitOk;
}

int runFeedback(CliApp& app, const std::string& text, const std::string& contact) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(member_centre_texts::kFeedbackScreen);
  FeedbackViewController screen;
  screen.contentText = text;
  screen.contactText = contact;
  CliOutput& out = app.output();
  out.line(std::string(screen.title()) + " (" + screen.countText() + ")");
  out.data("count", screen.countText());
  bool asked = false;
  const auto done = awaitSlot(app, screen.onFinished, [&] { return asked = screen.submitAction(); });
  if (!asked) return kExitFailure;
  if (!done) return timedOut("the feedback");
  return *done ? kExitOk : kExitFailure;
}

}  // namespace

void registerMemberCentreCommands(CommandRegistry& registry) {
  {
    auto kind = std::make_shared<std::string>();
    auto id = std::make_shared<std::string>();
    CLI::App* bookmark = registry.add("bookmark", "bookmark a store or an offer, or take its bookmark away",
                                      [kind, id](CliApp& app) { return runBookmark(app, *kind, *id); });
    bookmark->add_option("KIND", *kind, "store or offer")->required()->check(CLI::IsMember({"store", "offer"}));
    bookmark->add_option("ID", *id, "the store's or offer's id")->required();
  }
  {
    auto offers = std::make_shared<bool>(false);
    auto pages = std::make_shared<long>(1);
    CLI::App* favorites = registry.add("favorites", "your bookmarked stores, or offers",
                                       [offers, pages](CliApp& app) { return runFavorites(app, *offers, *pages); });
    favorites->add_flag("--offers", *offers, "the bookmarked offers instead of the stores");
    favorites->add_option("--page", *pages, "the page of bookmarks to show")->check(CLI::Range(1L, 1000L));
  }
  {
    auto pages = std::make_shared<long>(1);
    CLI::App* messages = registry.add("messages", "your messages, the unread ones marked (then read)",
                                      [pages](CliApp& app) { return runMessages(app, *pages); });
    messages->add_option("--page", *pages, "the page of messages to show")->check(CLI::Range(1L, 1000L));
  }
  {
    auto text = std::make_shared<std::string>();
    auto contact = std::make_shared<std::string>();
    CLI::App* feedback = registry.add("feedback", "send feedback, with how to reach you if you like",
                                      [text, contact](CliApp& app) { return runFeedback(app, *text, *contact); });
    feedback->add_option("TEXT", *text, "what you want to tell (at most 500 characters)")->required();
    feedback->add_option("--contact", *contact, "a phone, e-mail or QQ (at most 50 characters)");
  }
}

}  // namespace qmv::cli
