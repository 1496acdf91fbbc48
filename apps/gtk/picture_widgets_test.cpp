// Pictures in the graphical client against the embedded sandbox's generated art: the
// launch picture, the thumbnails of store and offer rows, a picture view that changes its address before the
// first answer, the home banners turning on their timer, a store's and an offer's
// pictures opened in the browser and closed with Escape, and the home's category
// pictures, the contacts' portraits and the payment channels' marks.
#include <gtest/gtest.h>

#include <adwaita.h>

#include <functional>
#include <memory>
#include <vector>

#include "apps/gtk/activity_page.h"
#include "apps/gtk/banner_carousel.h"
#include "apps/gtk/gtk_client_test_support.h"
#include "apps/gtk/home_page.h"
#include "apps/gtk/image_browser_page.h"
#include "apps/gtk/picture_strip.h"
#include "apps/gtk/picture_view.h"
#include "apps/gtk/zoomable_picture.h"
#include "core/images/image_loader.h"

namespace qmv::gtk {
namespace {

class PictureWidgetsTest : public testsupport::GtkClientTest {
 protected:
  // Every picture view below `root` named `name`.
  static std::vector<PictureView*> views(Gtk::Widget& root, const std::string& name) {
    std::vector<PictureView*> found;
    for (GtkWidget* w : below(root.gobj(), [&](GtkWidget* w) { return name == gtk_widget_get_name(w); })) {
      if (auto* view = dynamic_cast<PictureView*>(Glib::wrap(w))) found.push_back(view);
    }
    return found;
  }
  // The size of the texture `view` draws; empty while it shows the placeholder.
  static ImageSize drawnSize(PictureView& view) {
    auto paintable = view.picture().get_paintable();
    if (!view.showsPicture() || !paintable || !GDK_IS_TEXTURE(paintable->gobj())) return {};
    return {paintable->get_intrinsic_width(), paintable->get_intrinsic_height()};
  }
  bool allDrawn(const std::vector<PictureView*>& shown) {
    return !shown.empty() && std::all_of(shown.begin(), shown.end(), [](PictureView* v) { return !drawnSize(*v).empty(); });
  }
  HomePage& home() { return static_cast<HomePage&>(tabs_->tab(0)); }
  // Taps picture `index` of the strip on top, then closes the browser as Escape does.
  void browseAndEscape(std::size_t index, std::size_t count) {
    auto* strip = dynamic_cast<PictureStrip*>(finders::findNamed(top(), "picture-strip"));
    ASSERT_NE(strip, nullptr);
    const std::string under = driver_->topName();
    ASSERT_TRUE(tap("picture" + std::to_string(index)));
    ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kImageBrowserScreen; }));
    auto* browser = dynamic_cast<ImageBrowserPage*>(&top());
    ASSERT_NE(browser, nullptr);
    ASSERT_EQ(browser->size(), count);
    EXPECT_TRUE(driver_->waitUntil([&] { return browser->shownIndex() == index; }));
    EXPECT_TRUE(driver_->waitUntil([&] { return !drawnSize(browser->picture(index).view()).empty(); }));
    EXPECT_EQ(shownAs("picture-count"), "图片 " + std::to_string(index + 1) + "/" + std::to_string(count));
    // A double click zooms in and stops the swipe (a drag pans), another fits it again.
    ZoomablePicture& picture = browser->picture(index);
    picture.toggleZoom();
    EXPECT_EQ(picture.zoom(), ZoomablePicture::kToggledZoom);
    auto* carousel = finders::findNamed(*browser, "browser-carousel");
    ASSERT_NE(carousel, nullptr);
    EXPECT_FALSE(adw_carousel_get_interactive(ADW_CAROUSEL(carousel->gobj())));
    picture.toggleZoom();
    EXPECT_EQ(picture.zoom(), 1.0);
    EXPECT_TRUE(adw_carousel_get_interactive(ADW_CAROUSEL(carousel->gobj())));
    ASSERT_TRUE(pressKey(GDK_KEY_Escape));
    ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == under; }));
  }
};

TEST_F(PictureWidgetsTest, RowsDrawThumbnailsPicturesOpenTheBrowserAndADroppedRequestNeverPaints) {
  // The launch view asked for the server's welcome picture (forgotten first, so fetched
  // anew) and draws it; it may arrive after the 3 s on a slow machine.
  auto* launch = dynamic_cast<PictureView*>(finders::findNamed(driver_->app().view(), "launch-picture"));
  ASSERT_NE(launch, nullptr);
  EXPECT_EQ(launch->url(), driver_->app().launch().config().welcomeImage());
  EXPECT_TRUE(driver_->waitUntil([&] { return drawnSize(*launch) == ImageSize{720, 1280}; }));

  // The home's store rows, then a store's offer rows: each a decoded picture, not the icon.
  ASSERT_TRUE(waitFor("热门活动"));
  ASSERT_TRUE(driver_->waitUntil([&] { return allDrawn(views(home(), "thumbnail")); }));
  openFirstPopularStore();
  ASSERT_TRUE(driver_->waitUntil([&] {
    Gtk::Widget* offers = finders::findNamed(top(), "offers");
    return offers != nullptr && allDrawn(views(*offers, "thumbnail"));
  }));

  // The store's pictures open in the browser, and Escape closes it.
  PictureStrip* strip = nullptr;
  ASSERT_TRUE(driver_->waitUntil([&] {
    strip = dynamic_cast<PictureStrip*>(finders::findNamed(top(), "picture-strip"));
    return strip != nullptr && strip->urls().size() >= 2;
  }));
  browseAndEscape(1, strip->urls().size());

  // The offer's strip ends with its description picture.
  Gtk::Widget* offers = finders::findNamed(top(), "offers");
  ASSERT_NE(offers, nullptr);
  adw_action_row_activate(ADW_ACTION_ROW(gtk_list_box_get_row_at_index(GTK_LIST_BOX(offers->gobj()), 0)));
  ASSERT_TRUE(driver_->waitUntil([&] {
    strip = driver_->topName() == "QXActivitiesViewController"
                ? dynamic_cast<PictureStrip*>(finders::findNamed(top(), "picture-strip"))
                : nullptr;
    return strip != nullptr && !strip->urls().empty();
  }));
  EXPECT_NE(strip->urls().back().find("/art/desc_"), std::string::npos);
  browseAndEscape(strip->urls().size() - 1, strip->urls().size());

  // A view asked for a store's picture, then at once for a banner already in memory: the
  // banner (whose proportions differ) is drawn, and the store's answer, fetched to the end
  // meanwhile, never replaces it.
  ImageLoader* loader = driver_->app().pictures();
  ASSERT_NE(loader, nullptr);
  const std::string art = driver_->app().launch().config().objectStorageHost + "/art/";
  const std::string banner = art + "banner_1.jpg?w=375";
  const std::string store = art + "store_2_1.jpg?w=375";
  const auto fetch = [&](const std::string& url) {
    bool done = false;
    ImageTicket ticket = loader->load(url, {}, [&done](ImageOutcome outcome) { done = outcome.ok(); });
    return driver_->waitUntil([&] { return done; });
  };
  ASSERT_TRUE(fetch(banner));
  PictureView view(loader, {}, "");
  view.setUrl(store);
  view.setUrl(banner);
  ASSERT_TRUE(driver_->waitUntil([&] { return view.showsPicture(); }));
  ASSERT_TRUE(fetch(store));
  driver_->settle();
  EXPECT_EQ(drawnSize(view), (ImageSize{375, 150}));
  // Cleared before its answer, a view keeps the placeholder; destroyed before it, nothing
  // is painted into the gone widget.
  view.setUrl(art + "store_3_1.jpg?w=256");
  view.setUrl("");
  auto doomed = std::make_unique<PictureView>(loader, ImageSize{}, "");
  doomed->setUrl(art + "store_3_2.jpg?w=256");
  doomed.reset();
  driver_->settle(std::chrono::milliseconds(800));
  EXPECT_FALSE(view.showsPicture());
}

TEST_F(PictureWidgetsTest, BannersTurnOnTheirTimerAndRestOffScreen) {
  BannerCarousel& banners = home().banners();
  ASSERT_TRUE(driver_->waitUntil([&] { return banners.size() >= 2 && allDrawn(views(banners, "banner-picture")); }));
  ASSERT_EQ(banners.shownIndex(), 0u);
  // The timer turns to the second banner by itself.
  ASSERT_TRUE(driver_->waitUntil([&] { return banners.shownIndex() == 1; }, BannerCarousel::kInterval * 2));
  driver_->settle(std::chrono::milliseconds(600));
  // A tick while a turn runs leaves it alone; the last banner turns back to the first.
  while (banners.shownIndex() + 1 < banners.size()) {
    const std::size_t from = banners.shownIndex();
    ASSERT_TRUE(banners.advance());
    EXPECT_FALSE(banners.advance());
    ASSERT_TRUE(driver_->waitUntil([&] { return banners.shownIndex() == from + 1; }));
    driver_->settle(std::chrono::milliseconds(600));
  }
  ASSERT_TRUE(banners.advance());
  ASSERT_TRUE(driver_->waitUntil([&] { return banners.shownIndex() == 0; }));
  // Off screen (another tab) it rests.
  tabs_->select(1);
  driver_->settle();
  EXPECT_FALSE(banners.advance());
}

TEST_F(PictureWidgetsTest, CategoriesPortraitsAndChannelMarksAreDrawn) {
  // Each main category's page: its own mark from the theme, and the server's picture for
  // every sub-category. Only the first two pages ask at start; the last page's pictures
  // arrive once the carousel is turned to it.
  auto* pages = finders::findNamed(home(), "category-pages");
  ASSERT_NE(pages, nullptr);
  AdwCarousel* carousel = ADW_CAROUSEL(pages->gobj());
  const guint count = adw_carousel_get_n_pages(carousel);
  ASSERT_GT(count, 2u);
  auto pagePictures = [&](guint i) {
    return views(*Glib::wrap(adw_carousel_get_nth_page(carousel, i)), "category-picture");
  };
  ASSERT_TRUE(driver_->waitUntil([&] { return allDrawn(pagePictures(0)) && allDrawn(pagePictures(1)); }));
  for (PictureView* view : pagePictures(count - 1)) EXPECT_TRUE(view->url().empty());
  adw_carousel_scroll_to(carousel, adw_carousel_get_nth_page(carousel, count - 1), FALSE);
  ASSERT_TRUE(driver_->waitUntil([&] { return allDrawn(pagePictures(count - 1)); }));
  auto* food = dynamic_cast<Gtk::Image*>(finders::findNamed(home(), "category-icon"));
  ASSERT_NE(food, nullptr);
  EXPECT_EQ(food->get_icon_name(), "emoji-food-symbolic");
  auto theme = Gtk::IconTheme::get_for_display(Gdk::Display::get_default());
  EXPECT_TRUE(theme->has_icon(food->get_icon_name()));

  // Every contact row shows the portrait drawn for that member, on both levels.
  signIn("13800000000", "qmv123");
  ASSERT_TRUE(openFromMemberTab("我的人脉", "MyContactViewController"));
  ASSERT_TRUE(driver_->waitUntil([&] { return views(top(), "portrait").size() == 3 && allDrawn(views(top(), "portrait")); }));
  ASSERT_TRUE(finders::activateRow(top(), "张三"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "MySecondContactViewController"; }));
  ASSERT_TRUE(driver_->waitUntil([&] { return views(top(), "portrait").size() == 2 && allDrawn(views(top(), "portrait")); }));

  // The pay-now screen marks the balance and each channel with the client's own icon,
  // found in its resources.
  driver_->app().navigator().push("QXPayNowViewController", {{"storeId", "1"}, {"totalFee", "888.00"}});
  ASSERT_TRUE(payNowReady());
  std::vector<std::string> marks;
  for (GtkWidget* w : below(top().gobj(), [](GtkWidget* w) {
         return GTK_IS_IMAGE(w) && std::string(gtk_widget_get_name(w)) == "channel-logo";
       })) {
    marks.push_back(gtk_image_get_icon_name(GTK_IMAGE(w)));
  }
  ASSERT_EQ(marks, (std::vector<std::string>{"qmv-pay-balance-symbolic", "qmv-pay-alipay-symbolic",
                                             "qmv-pay-wechat-symbolic", "qmv-pay-unionpay-symbolic"}));
  EXPECT_TRUE(drawn("channels")) << "888.00 is more than the balance";
  for (const std::string& mark : marks) {
    auto icon = theme->lookup_icon(mark, 32);
    ASSERT_TRUE(icon) << mark;
    auto file = icon->get_file();
    ASSERT_TRUE(file) << mark;
    EXPECT_EQ(file->get_uri(), "resource:///org/qmv/Client/icons/scalable/actions/" + mark + ".svg");
  }
}

}  // namespace
}  // namespace qmv::gtk
