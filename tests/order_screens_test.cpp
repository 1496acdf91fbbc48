// The order screens against the sandbox's demo member: the list's tabs and pages, a refund
// moving an order out of the to-use tab, and both detail screens.
#include <algorithm>
#include <map>
#include <set>

#include "apps/sandbox/demo_data.h"
#include "features/orders/grade_store_view_controller.h"
#include "features/orders/qx_my_activity_order_detail_view_controller.h"
#include "features/orders/qx_my_order_view_controller.h"
#include "features/orders/qx_my_store_order_detail_view_controller.h"
#include "platform/fixed_metrics_text_measurer.h"
#include "platform/linux/qr_png.h"
#include "platform/linux/qrencode_generator.h"
#include "tests/discovery_sandbox_fixture.h"

namespace qmv {
namespace {

class OrderScreensTest : public testsupport::DiscoverySandboxTest {
 protected:
  void SetUp() override {
    DiscoverySandboxTest::SetUp();
    Env::current().qrGenerator = std::make_shared<QrencodeGenerator>();
    measurer_->setScreenWidth(100);
    Env::current().textMeasurer = measurer_;
    ASSERT_NE(login(), nullptr);
  }

  static std::set<std::string> statuses(const QXMyOrderViewController& list) {
    std::set<std::string> out;
    for (const auto& order : list.orderList) out.insert(order.status);
    return out;
  }
  static long selectedTab(const QXMyOrderViewController& list) {
    const auto& buttons = list.tabButtons;
    EXPECT_EQ(std::count_if(buttons.begin(), buttons.end(), [](const auto& b) { return b.selected; }), 1);
    return std::find_if(buttons.begin(), buttons.end(), [](const auto& b) { return b.selected; }) - buttons.begin();
  }
  bool loadDetail(OrderDetailViewController& screen) { return load(screen, [&] { screen.viewWillAppear(); }); }

  std::shared_ptr<FixedMetricsTextMeasurer> measurer_ = std::make_shared<FixedMetricsTextMeasurer>();
};

TEST_F(OrderScreensTest, TabsPageAndATabSwitchDropsTheRunningLoad) {
  QXMyOrderViewController list(2);
  list.viewDidLoad();
  EXPECT_EQ(selectedTab(list), 2);
  list.allBtnClick();
  ASSERT_TRUE(load(list, [] {}));
  EXPECT_EQ(selectedTab(list), 0);
  EXPECT_EQ(list.tabButtons[0].selectedImage, "order_all_s");
  ASSERT_EQ(list.orderList.size(), 10u);
  ASSERT_TRUE(load(list, [&] {
    list.footerRefresh();
    list.footerRefresh();  // pulled up twice before page 2 arrived
  }));
  EXPECT_EQ(list.pageNum, 2);
  EXPECT_EQ(list.orderList.size(), 15u);
  EXPECT_EQ(statuses(list), (std::set<std::string>{"1", "2", "3", "4"}));
  // The empty page after the last hides the footer and keeps every row.
  ASSERT_TRUE(load(list, [&] { list.footerRefresh(); }));
  EXPECT_TRUE(list.footerHidden);
  EXPECT_EQ(list.pageNum, 3);
  EXPECT_EQ(list.orderList.size(), 15u);

  // Tapping "done" and then "to rate" before any answer: only the last tab's page lands.
  int answers = 0;
  list.onLoaded = [&](bool) { ++answers; };
  list.doneBtnClick();
  list.waitCommentBtnClick();
  EXPECT_FALSE(list.footerHidden);
  ASSERT_TRUE(runUntil([&] { return answers > 0; }));
  drain();
  EXPECT_EQ(answers, 1);
  EXPECT_EQ(selectedTab(list), 2);
  EXPECT_EQ(list.pageNum, 1);
  EXPECT_EQ(statuses(list), (std::set<std::string>{"2"}));

  // A later page the server refuses (the session is gone) is asked for again; a refused
  // page 1 empties the list and shows the no-data view.
  ASSERT_TRUE(load(list, [&] { list.allBtnClick(); }));
  ASSERT_TRUE(load(list, [&] { list.footerRefresh(); }));
  GlobalData::sharedInstance().setSelfInfo(nullptr);
  EXPECT_FALSE(load(list, [&] { list.footerRefresh(); }));
  EXPECT_EQ(list.pageNum, 2);
  EXPECT_EQ(list.orderList.size(), 15u);
  EXPECT_FALSE(load(list, [&] { list.headerRefresh(); }));
  EXPECT_TRUE(list.orderList.empty());
  EXPECT_TRUE(list.noDataShown);
  EXPECT_EQ(navigator_->topScreen()->name, "LoginViewController");
}

TEST_F(OrderScreensTest, RowsFollowTheStatusTableAndARefundMovesTheOrderToDone) {
  QXMyOrderViewController all;
  all.viewDidLoad();
  ASSERT_TRUE(load(all, [&] { all.viewWillAppear(); }));
  ASSERT_TRUE(load(all, [&] { all.footerRefresh(); }));
  std::map<std::string, std::set<std::string>> looks;  // status -> "text/button/enabled"
  for (std::size_t row = 0; row < all.numberOfRows(); ++row) {
    const auto cell = all.cellForRow(row);
    looks[cell.orderInfo.status].insert(cell.look.statusText + "/" + cell.look.buttonTitle + "/" +
                                        (cell.look.buttonEnabled ? "on" : "off"));
    EXPECT_EQ(cell.numberHidden, cell.orderInfo.orderType == "1") << "store payments carry quantity 0";
    EXPECT_EQ(cell.priceText, "总价:¥" + cell.orderInfo.totalPrices) << "the total, as the detail shows it";
  }
  EXPECT_EQ(looks["1"], (std::set<std::string>{"待使用/退款/on"}));
  EXPECT_EQ(looks["2"], (std::set<std::string>{"待评价/评价/on"}));
  EXPECT_EQ(looks["3"], (std::set<std::string>{"已退款/已退款/off"}));
  EXPECT_EQ(looks["4"], (std::set<std::string>{"已完成/已完成/off"}));

  // A row to rate opens the rating screen; rows open the detail screen of their type.
  const auto toRate = std::find_if(all.orderList.begin(), all.orderList.end(),
                                   [](const OrderInfoModel& o) { return o.status == "2" && o.orderType == "1"; });
  ASSERT_NE(toRate, all.orderList.end());
  const std::size_t rateRow = toRate - all.orderList.begin();
  all.cellForRow(rateRow).rightBtnAction();
  EXPECT_EQ(navigator_->topScreen()->name, "GradeStoreViewController");
  EXPECT_EQ(navigator_->topScreen()->payload, (Json{{"orderId", toRate->orderId}, {"storeName", toRate->storeName}}));
  all.didSelectRow(rateRow);
  EXPECT_EQ(navigator_->topScreen()->name, "QXMyStoreOrderDetailViewController");
  all.didSelectRow(0);
  EXPECT_EQ(navigator_->topScreen()->name, "QXMyActivityOrderDetailViewController");
  EXPECT_EQ(navigator_->topScreen()->payload, (Json{{"orderId", all.orderList[0].orderId}}));

  QXMyOrderViewController toUse(1);
  toUse.viewDidLoad();
  ASSERT_TRUE(load(toUse, [&] { toUse.viewWillAppear(); }));
  ASSERT_FALSE(toUse.orderList.empty());
  const std::string refunded = toUse.orderList[0].orderId;
  auto cell = toUse.cellForRow(0);
  EXPECT_EQ(cell.buttonColor, QXMyOrderTableViewCell::kActiveColor);
  cell.rightBtnAction();
  ASSERT_EQ(alerts_->shown().size(), 1u);
  EXPECT_EQ(alerts_->shown()[0].title, "提示");
  EXPECT_EQ(alerts_->shown()[0].message, "请确定是否退款，退款后优惠码失效！");
  EXPECT_EQ(alerts_->shown()[0].buttons, (std::vector<std::string>{"取消", "确定"}));
  alerts_->script({0, {}});
  alerts_->flush();
  EXPECT_FALSE(toUse.isRefunding()) << "取消 sends nothing";

  std::optional<bool> accepted;
  toUse.onRefunded = [&](bool ok) { accepted = ok; };
  cell.rightBtnAction();
  alerts_->script({1, {}});
  alerts_->flush();
  ASSERT_TRUE(runUntil([&] { return accepted.has_value() && !toUse.isLoading(); }));
  EXPECT_TRUE(*accepted);
  for (const auto& order : toUse.orderList) EXPECT_NE(order.orderId, refunded) << "reloaded without it";

  ASSERT_TRUE(load(toUse, [&] { toUse.doneBtnClick(); }));
  const auto moved = std::find_if(toUse.orderList.begin(), toUse.orderList.end(),
                                  [&](const OrderInfoModel& o) { return o.orderId == refunded; });
  ASSERT_NE(moved, toUse.orderList.end());
  const auto done = toUse.cellForRow(moved - toUse.orderList.begin());
  EXPECT_EQ(done.look.statusText, "已退款");
  EXPECT_EQ(done.look.buttonTitle, "已退款");
  EXPECT_EQ(done.buttonColor, QXMyOrderTableViewCell::kInactiveColor);
}

TEST_F(OrderScreensTest, DetailScreensShowTheTextsOfBothOrderTypes) {
  // The demo's store payment waiting to be rated, then one already rated.
  QXMyStoreOrderDetailViewController store("SB20161000012");
  ASSERT_TRUE(loadDetail(store));
  EXPECT_EQ(store.nameText, "河东铜锅涮肉买单");
  EXPECT_EQ(store.priceText, "￥78.00");
  EXPECT_EQ(store.orderIdText, "订单号:SB20161000012");
  EXPECT_EQ(store.phoneText, std::string("手机号码:") + sandbox::kDemoPhone);
  EXPECT_GT(store.timeText.size(), std::string("付款时间:").size());
  EXPECT_FALSE(store.commentHidden);
  store.gotoCommentAction();
  EXPECT_EQ(navigator_->topScreen()->payload.value("orderId", ""), "SB20161000012");
  store.gotoProductDetailAction();
  EXPECT_EQ(navigator_->topScreen()->name, "QXRStoreDetailViewController");
  EXPECT_EQ(navigator_->topScreen()->payload.value("storeId", ""), store.orderInfo->storeId);
  QXMyStoreOrderDetailViewController rated("SB20161000008");
  ASSERT_TRUE(loadDetail(rated));
  EXPECT_TRUE(rated.commentHidden);

  // An offer order (the grouping of longer codes is OrderRecordsTest's).
  QXMyActivityOrderDetailViewController offer("SB20161000002");
  ASSERT_TRUE(loadDetail(offer));
  EXPECT_EQ(offer.priceText, "￥118.00 x 2件");
  EXPECT_EQ(offer.codeText, "验证码:5271 ");
  EXPECT_EQ(offer.numberText, "数量:2");
  EXPECT_EQ(offer.totalText, "总价:236.00");
  EXPECT_EQ(offer.contentText, "套餐内容：海鲜自助晚餐");
  // Eleven full-width characters at 14 points in 100 - 30 points: three lines of 1.2 em.
  EXPECT_DOUBLE_EQ(offer.contentHeight, 3 * 1.2 * 14);
  ASSERT_TRUE(offer.qrCode.has_value());
  const auto png = home_.home() / "code.png";
  ASSERT_TRUE(writeQrPng(*offer.qrCode, png));
  EXPECT_EQ(decodeQrFromPng(png), "5271");
  offer.gotoProductDetail();
  EXPECT_EQ(navigator_->topScreen()->name, "QXActivitiesViewController");
  EXPECT_EQ(navigator_->topScreen()->payload,
            (Json{{"commodityId", offer.orderInfo->commodityId}, {"name", "海鲜自助晚餐"}, {"isFirst", "1"}}));

  // An order the server does not know leaves the screen as it was; no id sends nothing.
  QXMyActivityOrderDetailViewController unknown("SB0");
  EXPECT_FALSE(loadDetail(unknown));
  EXPECT_FALSE(unknown.orderInfo.has_value());
  EXPECT_EQ(overlay_->statuses().back(), "订单不存在");
  QXMyStoreOrderDetailViewController none("");
  bool told = false;
  none.onLoaded = [&](bool ok) { told = !ok; };
  none.viewWillAppear();
  EXPECT_TRUE(told);
  EXPECT_EQ(NetworkAgent::sharedInstance().requestCount(), 0u);
}

TEST_F(OrderScreensTest, RatingAStoreOrderOnceMovesItOutOfTheToRateTab) {
  const std::string id = "SB20161000012";
  std::string successOrderID;
  navigator_->push("QXMyOrderViewController", {});
  navigator_->push("GradeStoreViewController", {{"orderId", id}});
  GradeStoreViewController screen(id, "河东铜锅涮肉", &successOrderID);
  std::optional<bool> finished;
  screen.onFinished = [&](bool correct) { finished = correct; };
  // Untouched, the form rates nothing: no star is lit and none is sent.
  EXPECT_EQ(screen.star(), 0);
  EXPECT_FALSE(screen.submitAction());
  EXPECT_EQ(overlay_->statuses().back(), "请选择评分");
  screen.selectStar(9);
  EXPECT_EQ(screen.star(), 5);
  screen.selectStar(0);
  EXPECT_EQ(screen.star(), 1);
  screen.selectStar(4);

  // Comments the server must never see: stray bytes, or one character too many.
  screen.contentText = "好\xff";
  EXPECT_FALSE(screen.submitAction());
  EXPECT_EQ(overlay_->statuses().back(), "评价内容含有无法识别的字符");
  std::string longest;
  for (std::size_t i = 0; i < GradeStoreViewController::kMaxContentChars; ++i) longest += "味";
  screen.contentText = longest + "!";
  EXPECT_EQ(screen.countText(), "201/200");
  EXPECT_FALSE(screen.submitAction());
  EXPECT_EQ(overlay_->statuses().back(), "评价内容不能超过200字");
  EXPECT_EQ(NetworkAgent::sharedInstance().requestCount(), 0u);

  screen.contentText = longest;
  ASSERT_TRUE(screen.submitAction());
  EXPECT_FALSE(screen.submitAction()) << "one rating at a time";
  ASSERT_TRUE(runUntil([&] { return finished.has_value(); }));
  EXPECT_TRUE(*finished);
  EXPECT_EQ(successOrderID, id);
  EXPECT_EQ(overlay_->statuses().back(), "评价成功");
  EXPECT_EQ(navigator_->topScreen()->name, "QXMyOrderViewController");

  // The server keeps the stars and refuses a second rating, whose message is shown.
  finished.reset();
  successOrderID.clear();
  ASSERT_TRUE(screen.submitAction());
  ASSERT_TRUE(runUntil([&] { return finished.has_value(); }));
  EXPECT_FALSE(*finished);
  EXPECT_EQ(overlay_->statuses().back(), "该订单不能评价");
  EXPECT_TRUE(successOrderID.empty());
  QXMyOrderViewController toRate(2);
  toRate.viewDidLoad();
  ASSERT_TRUE(load(toRate, [&] { toRate.viewWillAppear(); }));
  EXPECT_TRUE(std::none_of(toRate.orderList.begin(), toRate.orderList.end(),
                           [&](const OrderInfoModel& o) { return o.orderId == id; }));
  QXMyStoreOrderDetailViewController rated(id);
  ASSERT_TRUE(loadDetail(rated));
  EXPECT_TRUE(rated.commentHidden);
}

}  // namespace
}  // namespace qmv
