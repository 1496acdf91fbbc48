// The graphical client driven in-process as a member would, against the embedded sandbox,
// under a display (ctest runs this binary under Xvfb). Each test is one start of the
// application in a fresh home and walks a flow, asserting on what the widgets show.
#include <adwaita.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "apps/gtk/dialog_alerts.h"
#include "apps/gtk/gtk_client_test_support.h"
#include "apps/gtk/gtk_driver.h"
#include "apps/gtk/gtk_ports.h"
#include "apps/gtk/home_page.h"
#include "apps/gtk/main_view.h"
#include "apps/gtk/nearby_page.h"
#include "apps/gtk/order_pages.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/renderer_choice.h"
#include "apps/gtk/row_list.h"
#include "apps/gtk/screen_names.h"
#include "apps/gtk/tab_bar_page.h"
#include "apps/gtk/toast_status_overlay.h"
#include "apps/gtk/web_page_view.h"
#include "apps/gtk/wheel_page.h"
#include "apps/gtk/widget_finders.h"
#include "platform/linux/qr_png.h"
#include "shell/app_delegate.h"
#include "shell/h5_texts.h"
#include "shell/qx_h5_view_controller.h"
#include "shell/web_view_controller.h"
#if QMV_HAVE_WEBKIT
#include <webkit/webkit.h>
#endif

namespace qmv::gtk {
namespace {

using testsupport::GtkClientTest;

TEST(RendererChoice, OnlyARenderNodeCountsAsAGpu) {
  std::string pattern = (std::filesystem::temp_directory_path() / "qmv-dri-XXXXXX").string();
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  const std::filesystem::path dri = pattern;
  EXPECT_FALSE(hasRenderNode(dri / "missing"));
  std::filesystem::create_directory(dri / "card0");
  EXPECT_FALSE(hasRenderNode(dri)) << "a display controller alone renders nothing";
  std::filesystem::create_directory(dri / "renderD128");
  EXPECT_TRUE(hasRenderNode(dri));
  std::filesystem::remove_all(dri);
}

// A redraw hands the whole list again: rows whose key stays keep their objects (and so
// their widgets), only the changed stretch is spliced, and a row drawn differently under
// the same key is replaced so that its widget is bound again.
TEST(RowList, SplicesOnlyWhatChanged) {
  Gio::init();
  using Row = std::pair<std::string, std::string>;  // key, look
  RowList<Row> rows([](const Row& r) { return r.first; }, [](const Row& a, const Row& b) { return a.second == b.second; });
  std::vector<std::pair<guint, guint>> splices;  // removed, added
  rows.model()->signal_items_changed().connect([&](guint, guint removed, guint added) { splices.emplace_back(removed, added); });
  const auto objects = [&] {
    std::vector<GObject*> out;
    for (guint i = 0; i < rows.size(); ++i) out.push_back(G_OBJECT(rows.model()->get_object(i)->gobj()));
    return out;
  };
  const auto keys = [&] {
    std::string out;
    for (guint i = 0; i < rows.size(); ++i) out += rows.at(i).first;
    return out;
  };

  rows.assign({{"a", "1"}, {"b", "1"}, {"c", "1"}});
  const auto first = objects();
  splices.clear();
  rows.assign({{"a", "1"}, {"b", "1"}, {"c", "1"}});
  EXPECT_EQ(objects(), first);
  EXPECT_TRUE(splices.empty()) << "an unchanged list splices nothing";

  // A new first row, b gone, d appended (page 1 reloaded after a purchase): a and c stay.
  rows.assign({{"x", "1"}, {"a", "1"}, {"c", "1"}, {"d", "1"}});
  EXPECT_EQ(keys(), "xacd");
  const auto now = objects();
  EXPECT_EQ(now[1], first[0]);
  EXPECT_EQ(now[2], first[2]);

  splices.clear();
  rows.assign({{"x", "1"}, {"a", "2"}, {"c", "1"}, {"d", "1"}});  // a's look changed
  const auto changed = objects();
  EXPECT_NE(changed[1], now[1]);
  EXPECT_EQ(changed[0], now[0]);
  EXPECT_EQ(changed[2], now[2]);
  EXPECT_EQ(rows.at(1).second, "2");
  ASSERT_EQ(splices.size(), 1u);
  EXPECT_EQ(splices[0], std::make_pair(1u, 1u));

  // Moved rows and repeated keys end in the order given.
  rows.assign({{"d", "1"}, {"a", "2"}, {"a", "2"}, {"x", "1"}});
  EXPECT_EQ(keys(), "daax");
  EXPECT_EQ(rows.at(1).second, "2");
  rows.assign({});
  EXPECT_EQ(rows.size(), 0u);
}

TEST_F(GtkClientTest, BrowsesTheHomeSearchesAndOpensAStoreAndAnOffer) {
  // The home tab of the selected city with its sections, the tab bar in the start-up's order.
  EXPECT_EQ(driver_->topName(), kTabBarScreen);
  // The two store sections arrive on separate answers, in either order.
  ASSERT_TRUE(waitFor("名店推荐"));
  ASSERT_TRUE(waitFor("热门活动"));
  EXPECT_TRUE(finders::shows(top(), "临沂市"));
  // A redraw with the same data keeps the home page's widgets, so a row in hand is still
  // the one shown, and its tap still opens its store.
  auto& home = static_cast<HomePage&>(tabs_->tab(0));
  auto* popular = finders::findNamed(home, "popular");
  ASSERT_NE(popular, nullptr);
  auto* held = GTK_WIDGET(gtk_list_box_get_row_at_index(GTK_LIST_BOX(popular->gobj()), 0));
  ASSERT_NE(held, nullptr);
  const std::string heldTitle = adw_preferences_row_get_title(ADW_PREFERENCES_ROW(held));
  g_object_ref(held);
  home.refresh();
  ASSERT_EQ(finders::findNamed(home, "popular"), popular);
  EXPECT_TRUE(gtk_widget_get_parent(held) == GTK_WIDGET(popular->gobj()) &&
              GTK_WIDGET(gtk_list_box_get_row_at_index(GTK_LIST_BOX(popular->gobj()), 0)) == held);
  adw_action_row_activate(ADW_ACTION_ROW(held));
  g_object_unref(held);
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXRStoreDetailViewController"; }));
  EXPECT_TRUE(waitFor(heldTitle));
  ASSERT_TRUE(tap("back"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kTabBarScreen; }));
  for (const char* title : {"首页", "附近", "财富", "社区", "我的"}) EXPECT_TRUE(finders::shows(top(), title)) << title;
  // Every tab's icon is one the running icon theme can draw.
  GtkWidget* stack = firstBelow(GTK_WIDGET(tabs_->gobj()), [](GtkWidget* w) { return ADW_IS_VIEW_STACK(w); });
  ASSERT_NE(stack, nullptr);
  GtkSelectionModel* pages = adw_view_stack_get_pages(ADW_VIEW_STACK(stack));
  GtkIconTheme* theme = gtk_icon_theme_get_for_display(gdk_display_get_default());
  ASSERT_EQ(g_list_model_get_n_items(G_LIST_MODEL(pages)), 5u);
  for (guint i = 0; i < 5; ++i) {
    auto* page = static_cast<AdwViewStackPage*>(g_list_model_get_item(G_LIST_MODEL(pages), i));
    const char* iconName = adw_view_stack_page_get_icon_name(page);
    EXPECT_TRUE(iconName != nullptr && gtk_icon_theme_has_icon(theme, iconName)) << "tab " << i;
    g_object_unref(page);
  }
  g_object_unref(pages);

  // A keyword typed on the nearby tab's search face lists what the server found and is
  // kept in the history.
  tabs_->select(1);
  Gtk::Widget* nearby = &tabs_->tab(1);
  ASSERT_TRUE(tap("search"));
  EXPECT_TRUE(waitFor("暂无历史记录", nearby));
  auto* field = dynamic_cast<Gtk::SearchEntry*>(finders::findNamed(top(), "keyword"));
  ASSERT_NE(field, nullptr);
  field->set_text("火锅");
  g_signal_emit_by_name(field->gobj(), "activate");  // the return key
  auto& nearbyPage = static_cast<NearbyPage&>(tabs_->tab(1));
  ASSERT_TRUE(driver_->waitUntil([&] {
    const NearbyView& view = nearbyPage.screen().nearbyView();
    return view.isKeySearchModel && !view.isSearching() && finders::shows(*nearby, "沂蒙小调火锅(人民广场店)");
  }));
  driver_->settle();
  EXPECT_TRUE(finders::shows(*nearby, "火锅")) << "the keyword is the list's title";
  // One row per store the search returned, once the page has redrawn: the wait above can
  // end on a store the list before the search showed too.
  EXPECT_TRUE(driver_->waitUntil(
      [&] { return nearbyPage.rows().size() == nearbyPage.screen().nearbyView().storeList.size(); }))
      << nearbyPage.rows().size() << " rows for " << nearbyPage.screen().nearbyView().storeList.size() << " stores";
  ASSERT_TRUE(tap("search"));
  EXPECT_TRUE(waitFor("清空", nearby));
  EXPECT_TRUE(finders::activateRow(*nearby, "火锅")) << "the word is in the history";

  // A store row opens the store; an offer row the offer; back returns.
  ASSERT_TRUE(driver_->waitUntil([&] { return finders::activateRow(*nearby, "沂蒙小调火锅(人民广场店)"); }));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXRStoreDetailViewController"; }));
  ASSERT_TRUE(waitFor("优惠活动"));
  EXPECT_TRUE(finders::shows(top(), "查看更多评论"));
  auto* offers = finders::findNamed(top(), "offers");
  ASSERT_NE(offers, nullptr);
  GtkListBoxRow* firstOffer = gtk_list_box_get_row_at_index(GTK_LIST_BOX(offers->gobj()), 0);
  ASSERT_NE(firstOffer, nullptr);
  adw_action_row_activate(ADW_ACTION_ROW(firstOffer));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXActivitiesViewController"; }));
  ASSERT_TRUE(waitFor("购买须知"));
  EXPECT_TRUE(finders::shows(top(), "套餐"));
  ASSERT_TRUE(tap("back"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXRStoreDetailViewController"; }));
  ASSERT_TRUE(tap("back"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kTabBarScreen; })) << driver_->topName();

  // (A chosen city reaching the tabs is the flow fixes' test; its districts the core's.)
  // A payment application returning to the running instance.
  EXPECT_TRUE(driver_->app().openURL("qqqmmmvvv://uppayresult?code=success"));
  EXPECT_TRUE(toasted("支付成功"));
}

// A desktop window keeps the list beside what it opened; a phone's width folds back to one
// column with the detail on top and back working.
TEST_F(GtkClientTest, AWideWindowShowsTheStoreBesideItsListAndFoldsAtPhoneWidth) {
  MainView& view = driver_->app().view();
  const auto bounds = [&](Gtk::Widget& widget) {
    graphene_rect_t rect;
    EXPECT_TRUE(gtk_widget_compute_bounds(widget.gobj(), GTK_WIDGET(view.gobj()), &rect));
    return rect;
  };
  const auto besideEachOther = [&](Gtk::Widget& list, Gtk::Widget& detail) {
    if (!list.get_mapped() || !detail.get_mapped()) return false;
    const graphene_rect_t left = bounds(list);
    const graphene_rect_t right = bounds(detail);
    return left.origin.x + left.size.width <= right.origin.x && right.size.width > left.size.width;
  };
  ASSERT_TRUE(driver_->resize(1280, 800));
  ASSERT_TRUE(waitFor("名店推荐"));
  ASSERT_NO_FATAL_FAILURE(openFirstPopularStore());  // they load after the recommended ones
  Gtk::Widget* store = &top();
  ASSERT_TRUE(driver_->waitUntil([&] { return view.listPage() == tabs_ && besideEachOther(*tabs_, *store); }));
  EXPECT_EQ(bounds(*tabs_).size.width, MainView::kListWidth);
  // A tab first shown beside the store has the list's header: no second close button.
  tabs_->select(4);
  Gtk::Widget* header = finders::findNamed(tabs_->tab(4), "AdwHeaderBar");
  ASSERT_NE(header, nullptr);
  EXPECT_FALSE(adw_header_bar_get_show_end_title_buttons(ADW_HEADER_BAR(header->gobj())));
  tabs_->select(0);
  // An offer of the store: the store moves to the left, the tabs go behind it.
  ASSERT_TRUE(waitFor("优惠活动"));
  auto* offers = finders::findNamed(top(), "offers");
  ASSERT_NE(offers, nullptr);
  adw_action_row_activate(ADW_ACTION_ROW(gtk_list_box_get_row_at_index(GTK_LIST_BOX(offers->gobj()), 0)));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXActivitiesViewController"; }));
  Gtk::Widget* offer = &top();
  ASSERT_TRUE(driver_->waitUntil([&] { return view.listPage() == store && besideEachOther(*store, *offer); }));
  EXPECT_TRUE(driver_->waitUntil([&] { return !tabs_->get_mapped(); }));
  // Back is the right pane's alone; moved into its pane, a page's buttons still reach its actions.
  EXPECT_FALSE(finders::findNamed(*store, "back")->get_visible());
  EXPECT_TRUE(driver_->waitUntil([&] { return finders::findNamed(*offer, "buy")->is_sensitive(); }));

  // A phone's width: the offer alone, the whole width; back walks the same pages.
  ASSERT_TRUE(driver_->resize(360, 720));
  ASSERT_TRUE(driver_->waitUntil([&] {
    return view.listPage() == nullptr && !store->get_mapped() && offer->get_mapped() && offer->get_width() == 360;
  }));
  ASSERT_TRUE(tap("back"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXRStoreDetailViewController"; }));
  ASSERT_TRUE(driver_->waitUntil([&] { return store->get_mapped() && store->get_width() == 360 && !tabs_->get_mapped(); }));
  // Widened again, the store finds its list beside it.
  ASSERT_TRUE(driver_->resize(1280, 800));
  ASSERT_TRUE(driver_->waitUntil([&] { return besideEachOther(*tabs_, *store); }));
  ASSERT_TRUE(tap("back"));
  ASSERT_TRUE(driver_->waitUntil([&] { return view.listPage() == nullptr && tabs_->get_width() == 1280; }));

  // Every page fits a phone's width, the city picker with its longest names included.
  driver_->app().navigator().push(kCityScreen);
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kCityScreen; }));
  int minimum = 0, natural = 0, baseline = 0;
  top().measure(Gtk::Orientation::HORIZONTAL, -1, minimum, natural, baseline, baseline);
  EXPECT_LE(minimum, GtkDriver::kWidth);
}

TEST_F(GtkClientTest, SignsInBindsACardWithdrawsAndUnbinds) {
  // An invitation picture that cannot be read is named, not called an invalid code.
  bool scanned = false;
  FileChooserCamera::scanChosenPicture((home_ / "missing.png").string(), [&](auto) { scanned = true; });
  ASSERT_EQ(driver_->app().alerts().open().size(), 1u);
  EXPECT_EQ(driver_->app().alerts().open().front().title, "无法读取图片");
  EXPECT_NE(driver_->app().alerts().open().front().message.find("missing.png"), std::string::npos);
  EXPECT_TRUE(driver_->app().alerts().answer("知道了"));
  EXPECT_FALSE(scanned);

  // Signed out, the member tab offers the login screen in its own layer.
  signIn("13800000000", "qmv123");
  ASSERT_TRUE(waitFor("演示会员"));
  EXPECT_TRUE(finders::shows(top(), "￥500.00"));

  // Binding a card from the wallet: the checks, the SMS code, then the card panel.
  tabs_->select(2);
  ASSERT_TRUE(driver_->waitUntil([&] { return finders::activateRow(top(), "我的银行卡"); }));
  ASSERT_TRUE(driver_->waitUntil([&] { return finders::findButton(top(), "+ 添加银行卡") != nullptr; }));
  ASSERT_TRUE(tap("+ 添加银行卡"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXBindBankCardViewController"; }));
  EXPECT_TRUE(finders::shows(top(), "    138****0000"));
  for (const auto& [name, placeholder] : {std::pair{"holder", "请输入持卡人姓名"},
                                          {"id-number", "请输入身份证号码"},
                                          {"card-number", "请输入银行卡号"},
                                          {"code", "请输入验证码"}}) {
    ASSERT_NE(field(name), nullptr) << name;
    EXPECT_EQ(field(name)->get_placeholder_text(), placeholder) << name;
  }
  enter("holder");
  EXPECT_TRUE(focused("id-number")) << "Enter goes on to the next field";
  type("holder", "Zhang");
  type("id-number", "37130219900101123X");
  type("card-number", "6222020200112233446");
  EXPECT_TRUE(field("card-number")->get_visibility()) << "the member's own number, whole while he types it";
  EXPECT_FALSE(dynamic_cast<Gtk::Label*>(finders::findNamed(top(), "bank-name"))->get_text().empty());
  ASSERT_TRUE(tap("get-code"));
  EXPECT_TRUE(toasted("验证码发送成功"));
  EXPECT_TRUE(driver_->waitUntil([&] {
    auto* code = dynamic_cast<Gtk::Button*>(finders::findNamed(top(), "get-code"));
    return code != nullptr && !code->get_sensitive();
  })) << "the code button counts down";
  type("code", "123456");
  enter("code");  // Enter on the code field binds, checks first
  EXPECT_TRUE(toasted("持卡人姓名格式不正确"));
  type("holder", "张三");
  ASSERT_TRUE(tap("绑定银行卡"));
  EXPECT_TRUE(toasted("绑定成功"));
  ASSERT_TRUE(driver_->waitUntil([&] {
    return driver_->topName() == "MyBankCardViewController" && drawn("card");
  }));
  // Once bound, the number is masked on screen.
  EXPECT_TRUE(finders::shows(top(), "6222 *********** 3446"));
  EXPECT_FALSE(finders::shows(top(), "6222020200112233446"));

  // Withdrawal (its checks, and the card it names masked, are the screen's own test's).
  driver_->app().navigator().popToRoot();
  ASSERT_TRUE(driver_->waitUntil([&] { return finders::activateRow(top(), "提现"); }));
  ASSERT_TRUE(waitFor("500.00元"));
  EXPECT_FALSE(field("amount")->get_placeholder_text().empty());
  type("amount", "100");
  ASSERT_TRUE(tap("提现"));
  EXPECT_TRUE(toasted("您的提现申请已提交,申请将在1-3个工作日内处理完成"));

  // Unbinding asks first, in a message dialog; "确定" unbinds.
  driver_->app().navigator().popToRoot();
  driver_->app().navigator().push("MyBankCardViewController");
  ASSERT_TRUE(driver_->waitUntil([&] { return drawn("unbind"); }));
  ASSERT_TRUE(tap("unbind"));
  ASSERT_TRUE(driver_->waitUntil([&] { return !driver_->app().alerts().open().empty(); }));
  EXPECT_EQ(driver_->app().alerts().open().front().message, "是否确定解除银行卡绑定？");
  EXPECT_TRUE(driver_->app().alerts().answer("确定"));
  EXPECT_TRUE(toasted("解绑成功"));
  EXPECT_TRUE(driver_->waitUntil([&] { return finders::findButton(top(), "+ 添加银行卡") != nullptr; }));
}

// Three purchases of the demo voucher, then the newest order on the list, its code and
// its refund.
TEST_F(GtkClientTest, BuysAnOfferWithTheBalanceThenPartlyThenWithoutItThenSeesAndRefundsTheOrder) {
  signIn("13800000000", "qmv123");
  // The demo voucher, 88.00, against the member's 500.00.
  const auto buy = [&](long quantity) {
    driver_->app().navigator().push("QXActivitiesViewController", {{"commodityId", "2"}});
    ASSERT_TRUE(tap("buy"));
    ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXSubmitOderViewController"; }));
    EXPECT_TRUE(finders::shows(top(), "88.00元"));
    EXPECT_FALSE(finders::findNamed(top(), "minus")->get_sensitive()) << "never below one";
    for (long i = 1; i < quantity; ++i) ASSERT_TRUE(tap("plus"));
    EXPECT_EQ(shownAs("quantity"), std::to_string(quantity));
    ASSERT_TRUE(tap("submit"));
    ASSERT_TRUE(payNowReady());
  };
  const auto paidAndBack = [&](long times) {
    EXPECT_TRUE(toasted("支付成功", times));
    // The result opens over the offer; leaving it returns there.
    ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "PayResultViewController"; }))
        << driver_->topName();
    ASSERT_TRUE(tap("back"));
    EXPECT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXActivitiesViewController"; }))
        << "a payment returns to the offer: " << driver_->topName();
    const auto& shown = driver_->app().overlay().shown();
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "支付成功"), times) << "said once per payment";
  };

  // The balance covers it: no channels, the balance pays at once.
  buy(1);
  EXPECT_EQ(shownAs("total"), "¥88.00");
  EXPECT_TRUE(finders::shows(top(), "我的余额 ¥500.00"));
  EXPECT_TRUE(ticked("我的余额 ¥500.00"));
  EXPECT_FALSE(drawn("channels"));
  EXPECT_EQ(shownAs("confirm"), "确认支付");
  ASSERT_TRUE(tap("confirm"));
  paidAndBack(1);

  // Five against 412.00: the wallet is offered for the 28.00 left; the messaging
  // application's payment is chosen instead and returns to this instance.
  buy(5);
  ASSERT_TRUE(waitFor("我的余额 ¥412.00"));
  EXPECT_EQ(shownAs("total"), "¥440.00");
  EXPECT_TRUE(ticked("支付宝"));
  EXPECT_FALSE(ticked("微信支付"));
  EXPECT_EQ(shownAs("confirm"), "确认支付¥28.00");
  ASSERT_TRUE(finders::activateRow(top(), "微信支付"));
  ASSERT_TRUE(driver_->waitUntil([&] { return ticked("微信支付") && !ticked("支付宝"); }));
  ASSERT_TRUE(tap("confirm"));
  paidAndBack(2);

  // Nothing left: no balance row, the whole total through a channel.
  buy(1);
  ASSERT_TRUE(driver_->waitUntil([&] { return shownAs("confirm") == "确认支付¥88.00"; })) << shownAs("confirm");
  EXPECT_FALSE(drawn("balance"));
  ASSERT_TRUE(finders::activateRow(top(), "银联支付"));
  ASSERT_TRUE(driver_->waitUntil([&] { return ticked("银联支付"); }));
  ASSERT_TRUE(tap("confirm"));
  paidAndBack(3);
  driver_->app().navigator().popToRoot();
  tabs_->select(4);
  EXPECT_TRUE(waitFor("￥0.00"));

  // Newest first: the voucher just bought, to be used, with the refund button.
  ASSERT_TRUE(openFromMemberTab("我的订单", "QXMyOrderViewController"));
  auto* list = dynamic_cast<OrderListPage*>(&top());
  ASSERT_NE(list, nullptr);
  ASSERT_TRUE(driver_->waitUntil([&] { return list->rows().size() > 0 && !list->screen().isLoading(); }));
  const std::string orderId = list->screen().orderList.at(0).orderId;
  const auto firstRow = [&] { return finders::findNamed(top(), "order-" + orderId); };
  ASSERT_TRUE(driver_->waitUntil([&] { return firstRow() != nullptr; }));
  EXPECT_TRUE(finders::shows(*firstRow(), "100元代金券"));
  EXPECT_TRUE(finders::shows(*firstRow(), "订单号:" + orderId));
  EXPECT_TRUE(finders::shows(*firstRow(), "待使用"));
  Gtk::Button* refund = finders::findButton(*firstRow(), "退款");
  ASSERT_NE(refund, nullptr);
  EXPECT_TRUE(refund->has_css_class("destructive-action"));
  // A reload with unchanged data keeps the row's widget (held here, so that a rebuilt row
  // could not reuse its address). Ctrl+R is that reload.
  Gtk::Widget* before = firstRow();
  g_object_ref(before->gobj());
  ASSERT_TRUE(pressKey(GDK_KEY_r, GDK_CONTROL_MASK));
  EXPECT_TRUE(list->screen().isLoading()) << "Ctrl+R reloads";
  ASSERT_TRUE(driver_->waitUntil([&] { return !list->screen().isLoading(); }));
  driver_->settle();
  EXPECT_EQ(firstRow(), before) << "the row was rebuilt";
  g_object_unref(before->gobj());
  // The load-more button appends the next page.
  const std::size_t firstPage = list->screen().numberOfRows();
  ASSERT_TRUE(tap("load-more", true));
  EXPECT_TRUE(driver_->waitUntil([&] { return list->rows().size() > firstPage; }));
  // A pull past the top loads page 1 alone again.
  g_signal_emit_by_name(finders::findNamed(top(), "page-scroller")->gobj(), "edge-overshot", GTK_POS_TOP);
  EXPECT_TRUE(driver_->waitUntil([&] {
    return !list->screen().isLoading() && list->screen().pageNum == 1 && list->rows().size() == firstPage;
  }));
  // Another tab draws the rows its screen holds.
  ASSERT_TRUE(tap("order-tab1"));
  ASSERT_TRUE(driver_->waitUntil([&] {
    return !list->screen().isLoading() && list->screen().index == 1 && list->rows().size() > 0 &&
           list->rows().size() == list->screen().numberOfRows() && firstRow() != nullptr;
  }));

  // The detail shows the redemption code, and its QR code reads back as that code.
  ASSERT_TRUE(top().activate_action("page.open-row", Glib::Variant<guint32>::create(0)));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXMyActivityOrderDetailViewController"; }));
  // Drawn once it has a size, which a slow (sanitized) run gives it late.
  ASSERT_TRUE(driver_->waitUntil([&] {
    Gtk::Widget* qr = finders::findNamed(top(), "qr");
    return qr != nullptr && qr->get_width() > 0 && qr->get_height() > 0;
  }));
  driver_->settle();
  const std::string png = (home_ / "code.png").string();
  ASSERT_TRUE(driver_->renderToPng(*finders::findNamed(top(), "qr"), png));
  const auto decoded = decodeQrFromPng(png);
  ASSERT_TRUE(decoded.has_value());
  std::string shownCode = shownAs("code");
  ASSERT_TRUE(shownCode.starts_with("验证码:")) << shownCode;
  shownCode.erase(0, std::string("验证码:").size());
  std::erase(shownCode, ' ');
  EXPECT_FALSE(shownCode.empty());
  EXPECT_EQ(*decoded, shownCode);
  ASSERT_TRUE(tap("back"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXMyOrderViewController"; }));

  // The refund asks first through the alert port; "确定" refunds and the row says so.
  ASSERT_TRUE(driver_->waitUntil([&] { return finders::findButton(top(), "退款") != nullptr; }));
  ASSERT_TRUE(tap("退款"));
  ASSERT_TRUE(driver_->waitUntil([&] { return !driver_->app().alerts().open().empty(); }));
  EXPECT_EQ(driver_->app().alerts().open().front().message, "请确定是否退款，退款后优惠码失效！");
  EXPECT_TRUE(driver_->app().alerts().answer("确定"));
  ASSERT_TRUE(tap("order-tab0"));
  EXPECT_TRUE(driver_->waitUntil([&] {
    const auto& rows = list->screen().orderList;
    return !rows.empty() && rows[0].orderId == orderId && firstRow() != nullptr && finders::shows(*firstRow(), "已退款");
  }));
  // Its status reads so too, not 已完成 (a used voucher).
  const auto shown = finders::texts(*firstRow());
  EXPECT_EQ(std::count(shown.begin(), shown.end(), "已退款"), 2);
  EXPECT_EQ(std::count(shown.begin(), shown.end(), "已完成"), 0);
}

// Whether the label named `name` under `root` is drawn struck through.
bool struckThrough(Gtk::Widget& root, const std::string& name) {
  auto* label = dynamic_cast<Gtk::Label*>(finders::findNamed(root, name));
  PangoAttrList* attrs = label != nullptr ? gtk_label_get_attributes(label->gobj()) : nullptr;
  if (attrs == nullptr) return false;
  GSList* list = pango_attr_list_get_attributes(attrs);
  bool struck = false;
  for (GSList* a = list; a != nullptr; a = a->next) {
    const auto* attr = static_cast<PangoAttribute*>(a->data);
    struck =
        struck || (attr->klass->type == PANGO_ATTR_STRIKETHROUGH && reinterpret_cast<const PangoAttrInt*>(attr)->value);
  }
  g_slist_free_full(list, reinterpret_cast<GDestroyNotify>(pango_attribute_destroy));
  return struck;
}

TEST_F(GtkClientTest, AFirstPurchaseShowsLabelledPricesAndOneTotalThroughToItsResult) {
  signIn("13800000000", "qmv123");
  // 温泉汗蒸通票 (offer 25 of store 13): 88.00 now, 44.00 for a first purchase, 132.00
  // listed; the demo member has never bought it.
  driver_->app().navigator().push("QXRStoreDetailViewController", {{"storeId", "13"}});
  EXPECT_TRUE(waitFor("首单价 ¥44.00")) << "the store's row names the price it shows";
  driver_->app().navigator().push("QXActivitiesViewController", {{"commodityId", "25"}});
  ASSERT_TRUE(driver_->waitUntil([&] { return shownAs("price") == "¥44.00"; }));
  EXPECT_EQ(shownAs("price-label"), "首单价");
  EXPECT_EQ(shownAs("original-price"), "原价:¥132.00");
  EXPECT_TRUE(struckThrough(top(), "original-price"));

  // Two units: the first at its first-purchase price, the second at the current one.
  ASSERT_TRUE(tap("buy"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXSubmitOderViewController"; }));
  EXPECT_TRUE(finders::shows(top(), "现价") && finders::shows(top(), "88.00元"));
  EXPECT_TRUE(finders::shows(top(), "首单价") && finders::shows(top(), "44.00元"));
  ASSERT_TRUE(tap("plus"));
  ASSERT_TRUE(driver_->waitUntil([&] { return shownAs("quantity") == "2"; }));
  EXPECT_EQ(shownAs("breakdown"), "首单价 44.00元 x 1 + 现价 88.00元 x 1");
  EXPECT_EQ(shownAs("total"), "¥132.00");
  ASSERT_TRUE(tap("submit"));
  ASSERT_TRUE(payNowReady());
  EXPECT_EQ(shownAs("total"), "¥132.00");
  ASSERT_TRUE(tap("confirm"));

  // The result: paid, the same total, the redemption code once the order is read again.
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "PayResultViewController"; }))
      << driver_->topName();
  EXPECT_EQ(shownAs("result"), "支付成功");
  EXPECT_TRUE(waitFor("实付 ¥132.00"));
  ASSERT_TRUE(driver_->waitUntil([&] { return shownAs("code").size() > std::string("验证码:").size(); }));
  const std::string code = shownAs("code");
  ASSERT_TRUE(tap("view-order", true));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXMyActivityOrderDetailViewController"; }));
  ASSERT_TRUE(waitFor("总价:132.00"));
  EXPECT_TRUE(finders::shows(top(), "单价 ￥88.00 x 2件"));
  EXPECT_TRUE(finders::shows(top(), "首单优惠 -¥44.00")) << "what makes 2 x 88.00 come to 132.00";
  EXPECT_EQ(shownAs("code"), code);

  // The list shows the same total.
  ASSERT_TRUE(openFromMemberTab("我的订单", "QXMyOrderViewController"));
  auto* list = dynamic_cast<OrderListPage*>(&top());
  ASSERT_NE(list, nullptr);
  ASSERT_TRUE(driver_->waitUntil([&] { return list->rows().size() > 0 && !list->screen().isLoading(); }));
  const std::string orderId = list->screen().orderList.at(0).orderId;
  Gtk::Widget* row = nullptr;
  ASSERT_TRUE(driver_->waitUntil([&] { return (row = finders::findNamed(top(), "order-" + orderId)) != nullptr; }));
  EXPECT_TRUE(finders::shows(*row, "总价:¥132.00"));
  EXPECT_TRUE(finders::shows(*row, "数量:2"));
}

TEST_F(GtkClientTest, RatesAStoreOrderWhichThenLeavesTheToRateTab) {
  signIn("13800000000", "qmv123");
  ASSERT_TRUE(openFromMemberTab("我的订单", "QXMyOrderViewController"));
  auto* list = dynamic_cast<OrderListPage*>(&top());
  ASSERT_NE(list, nullptr);
  ASSERT_TRUE(tap("order-tab2"));
  Gtk::Button* rate = nullptr;
  ASSERT_TRUE(driver_->waitUntil([&] {
    return !list->screen().isLoading() && list->screen().index == 2 && (rate = finders::findButton(top(), "评价"));
  }));
  // Its button looks apart from a refund's.
  EXPECT_TRUE(rate->has_css_class("suggested-action"));
  EXPECT_FALSE(rate->has_css_class("destructive-action"));
  const OrderInfoModel order = list->screen().orderList.at(0);
  ASSERT_TRUE(tap("评价"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "GradeStoreViewController"; }));
  EXPECT_EQ(shownAs("store-name"), order.storeName);
  // Untouched, the form lights no star and sends nothing.
  for (int n = 1; n <= 5; ++n) {
    auto* star = dynamic_cast<Gtk::Button*>(finders::findNamed(top(), "star" + std::to_string(n)));
    ASSERT_NE(star, nullptr);
    EXPECT_EQ(star->get_icon_name(), "non-starred-symbolic") << n;
  }
  ASSERT_TRUE(tap("submit"));
  EXPECT_TRUE(toasted("请选择评分"));
  ASSERT_EQ(driver_->topName(), "GradeStoreViewController");
  ASSERT_TRUE(tap("star3"));
  auto* comment = dynamic_cast<Gtk::TextView*>(finders::findNamed(top(), "comment"));
  ASSERT_NE(comment, nullptr);
  comment->get_buffer()->set_text("上菜很快");
  EXPECT_EQ(shownAs("count"), "4/200");
  auto* page = dynamic_cast<GradeStorePage*>(&top());
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(page->screen().star(), 3);
  ASSERT_TRUE(tap("submit"));
  ASSERT_TRUE(toasted("评价成功"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXMyOrderViewController"; }));
  EXPECT_EQ(driver_->app().appDelegate().successOrderID, order.orderId);
  // Back on the list, the to-rate tab reloads without the rated order.
  EXPECT_TRUE(driver_->waitUntil([&] {
    const auto& rows = list->screen().orderList;
    return !list->screen().isLoading() &&
           std::none_of(rows.begin(), rows.end(), [&](const OrderInfoModel& o) { return o.orderId == order.orderId; });
  }));
}

TEST_F(GtkClientTest, WalksTheContactsAndSpinsTheWheel) {
  signIn("13800000000", "qmv123");
  // Three invited directly, three through them; a contact opens the ones he invited.
  ASSERT_TRUE(openFromMemberTab("我的人脉", "MyContactViewController"));
  ASSERT_TRUE(driver_->waitUntil([&] { return shownAs("num") == "3" && finders::shows(top(), "张三"); }));
  EXPECT_EQ(shownAs("sub-num"), "3");
  EXPECT_TRUE(finders::shows(top(), "邀请2人"));
  // Another member's phone is masked.
  const auto rowTexts = finders::texts(top());
  EXPECT_TRUE(std::any_of(rowTexts.begin(), rowTexts.end(),
                          [](const std::string& t) { return t.starts_with("手机号:138****0001"); }));
  EXPECT_FALSE(std::any_of(rowTexts.begin(), rowTexts.end(),
                           [](const std::string& t) { return t.find("13800000001") != std::string::npos; }));
  ASSERT_TRUE(finders::activateRow(top(), "张三"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "MySecondContactViewController"; }));
  ASSERT_TRUE(waitFor("赵六"));
  EXPECT_TRUE(finders::shows(top(), "张三的邀请"));
  EXPECT_FALSE(finders::activateRow(top(), "赵六")) << "the second level ends the tree";

  // The wheel turns and stops on the sector the server drew, then shows the prize.
  ASSERT_TRUE(openFromMemberTab("幸运大转盘", "WheelViewController"));
  auto* wheel = dynamic_cast<WheelPage*>(&top());
  ASSERT_NE(wheel, nullptr);
  // Its face is the wheel's picture, with each sector's prize on it.
  EXPECT_TRUE(driver_->waitUntil([&] { return wheel->face().showsPicture(); }));
  ASSERT_TRUE(waitFor("剩余抽奖次数: 3"));
  EXPECT_EQ(wheel->face().pointedSector(), wheel->screen().restSector());
  ASSERT_TRUE(tap("spin"));
  ASSERT_TRUE(driver_->waitUntil([&] { return wheel->face().spinning(); }));
  EXPECT_EQ(shownAs("prize"), "") << "no prize while the wheel turns";
  ASSERT_TRUE(driver_->waitUntil([&] { return !wheel->face().spinning() && !shownAs("prize").empty(); }));
  ASSERT_TRUE(wheel->screen().stopSector().has_value());
  EXPECT_EQ(wheel->face().pointedSector(), *wheel->screen().stopSector());
  EXPECT_EQ(shownAs("prize"), wheel->screen().prize());
  EXPECT_TRUE(waitFor("剩余抽奖次数: 2"));
}

TEST_F(GtkClientTest, OpensAPageWithTheSessionAndFollowsItsPayLink) {
  signIn("13800000000", "qmv123");
  // Taps the page's application link to pay, as the member would.
  const auto tapPayLink = [](WebView* view) {
#if QMV_HAVE_WEBKIT
    auto* drawn = dynamic_cast<DrawnWebView*>(view);
    ASSERT_NE(drawn, nullptr) << "WebKitGTK draws the page";
    webkit_web_view_evaluate_javascript(WEBKIT_WEB_VIEW(drawn->widget()),
                                        "document.querySelector('a[href^=\"qmv://pay\"]').click()", -1, nullptr,
                                        nullptr, nullptr, nullptr, nullptr);
#else
    const auto& links = view->page().links;
    const auto pay =
        std::find_if(links.begin(), links.end(), [](const WebLink& l) { return l.url.starts_with("qmv://pay"); });
    ASSERT_NE(pay, links.end());
    view->tapLink(static_cast<std::size_t>(pay - links.begin()));
#endif
  };
  ASSERT_TRUE(openFromMemberTab("一元夺宝", "QXH5ViewController"));
  auto* page = dynamic_cast<H5Page*>(&top());
  ASSERT_NE(page, nullptr);
  WebView* web = page->screen().webView();
  ASSERT_NE(web, nullptr);
  ASSERT_TRUE(driver_->waitUntil([&] { return web->hasShownPage(); },
                                 std::chrono::seconds(60)))
      << page->screen().loadError();
  EXPECT_EQ(page->screen().loadError(), "");
  // The page knows the member only from the session cookie the view was given.
  EXPECT_NE(web->page().text.find("会员: 演示会员"), std::string::npos) << web->page().text;
  EXPECT_TRUE(finders::shows(top(), "一元夺宝")) << "the page's own title";
  const std::string shownUrl = web->page().url;

  // A tap on the page's pay link: the core opens the pay-now screen for that draw and the
  // page stays where it was (which links are the application's is the core's own test).
  tapPayLink(web);
  ASSERT_TRUE(payNowReady());
  EXPECT_TRUE(waitFor("一元夺宝-第12期"));
  EXPECT_EQ(web->page().url, shownUrl);
  // The balance, and the one share's price.
  EXPECT_TRUE(finders::shows(top(), "我的余额 ¥500.00"));
  EXPECT_EQ(shownAs("total"), "¥1.00");

  // A home banner opens its page on the plain page screen under the banner's title.
  driver_->app().navigator().popToRoot();
  tabs_->select(0);
  ASSERT_TRUE(tap("banner1"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "WebViewController"; }));
  auto* plain = dynamic_cast<PlainWebPage*>(&top());
  ASSERT_NE(plain, nullptr);
  EXPECT_EQ(plain->screen().title(), "幸运大转盘");
  WebView* plainWeb = plain->screen().webView();
  ASSERT_NE(plainWeb, nullptr);
  ASSERT_TRUE(driver_->waitUntil([&] { return plainWeb->hasShownPage(); },
                                 std::chrono::seconds(60)))
      << plain->screen().loadError();
  EXPECT_EQ(plain->screen().loadError(), "");
  EXPECT_EQ(plainWeb->page().url, plain->screen().url());
  EXPECT_NE(plain->screen().url().find("/static/dial/index.html"), std::string::npos);

  // Its application link is not the plain page's to open: the load fails in the client's
  // words, and the member may open the draw's pay-now screen from there.
  tapPayLink(plainWeb);
  ASSERT_TRUE(waitFor(h5_texts::kAppLinkOnPlainPage));
  EXPECT_EQ(driver_->topName(), "WebViewController");
  ASSERT_TRUE(tap("open-app-link"));
  ASSERT_TRUE(payNowReady());
  EXPECT_TRUE(waitFor("一元夺宝-第12期"));
}

}  // namespace
}  // namespace qmv::gtk
