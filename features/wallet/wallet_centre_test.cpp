// The wallet tab and its fund records against a scripted server: the paging every list
// shares (a failed or refused page steps back and keeps the rows, an empty page ends the
// list), the kind filter, the overview's balance and card line, amounts as they print, and
// the vouchers' texts.
#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/wallet/fund_record_view_controller.h"
#include "features/wallet/my_voucher_view_controller.h"
#include "features/wallet/wealth_view_controller.h"

namespace qmv {
namespace {

class WalletCentreTest : public testsupport::ApiServerTest {
 protected:
  void SetUp() override {
    ApiServerTest::SetUp();
    logIn("S1");
  }
  static std::string page(std::initializer_list<const char*> amounts) {
    Json list = Json::array();
    for (const char* amount : amounts) list.push_back({{"amount", amount}, {"type", "withdraw"}});
    return Json{{"success", "0"}, {"data", {{"dataList", list}, {"count", 12}}}}.dump();
  }
};

TEST_F(WalletCentreTest, FundRecordsPageByKindAndAFailedPageStepsBackKeepingTheRows) {
  FundRecordViewController screen(3);
  answer("getTopUpListForUser", page({"-5000", "-1000"}));
  EXPECT_EQ(load(screen, [&] { screen.refresh(); }), true);
  EXPECT_EQ(last().endpoint, "getTopUpListForUser");
  EXPECT_EQ(sent("sessionId"), "S1");
  EXPECT_EQ(sent("page"), "1");
  EXPECT_EQ(sent("type"), "3");
  EXPECT_EQ(screen.count(), "12");
  ASSERT_EQ(screen.rows().size(), 2u);
  EXPECT_EQ(screen.rows()[0].kindText(), "提现");

  answer("getTopUpListForUser", page({"-300"}));
  EXPECT_EQ(load(screen, [&] {
              screen.loadMore();
              screen.loadMore();
            }),
            true);
  EXPECT_EQ(sent("page"), "2") << "a pull-up while a page is on its way is ignored";
  EXPECT_EQ(screen.rows().size(), 3u);

  answer("getTopUpListForUser", "", 500);
  EXPECT_EQ(load(screen, [&] { screen.loadMore(); }), false);
  answer("getTopUpListForUser", R"({"success":"1","message":"系统繁忙"})");
  EXPECT_EQ(load(screen, [&] { screen.loadMore(); }), false);
  EXPECT_EQ(sent("page"), "3") << "a failed page is asked for again";
  EXPECT_EQ(overlay_->statuses().back(), "系统繁忙");
  EXPECT_EQ(screen.pageNum(), 2);
  EXPECT_EQ(screen.rows().size(), 3u);

  answer("getTopUpListForUser", page({}));
  EXPECT_EQ(load(screen, [&] { screen.loadMore(); }), true);
  EXPECT_TRUE(screen.loadMoreFooterHidden());
  EXPECT_EQ(screen.rows().size(), 3u);
  const std::size_t requests = received().size();
  screen.loadMore();
  EXPECT_EQ(received().size(), requests) << "an ended list asks for nothing";
  EXPECT_FALSE(screen.selectKind(6));
  EXPECT_EQ(screen.kind(), 3);

  // A new kind forgets the old rows even when its first page fails; the page it replaced
  // while still running never reaches the screen.
  int answers = 0;
  screen.onLoaded = [&](bool) { ++answers; };
  answer("getTopUpListForUser", "", 500);
  screen.refresh();
  ASSERT_TRUE(screen.selectKind(5));
  loop_->runUntil([&] { return answers > 0 && !screen.isLoading(); }, std::chrono::seconds(10));
  loop_->runUntil([] { return false; }, std::chrono::milliseconds(100));
  EXPECT_EQ(answers, 1);
  EXPECT_EQ(sent("type"), "5");
  EXPECT_TRUE(screen.rows().empty());
  EXPECT_EQ(screen.count(), "");
  EXPECT_EQ(screen.pageNum(), 1);
}

TEST_F(WalletCentreTest, FundRecordAmountsPrintExactlyWhateverTheServerSends) {
  const auto text = [](const char* amount) { return FundRecordModel(Json{{"amount", amount}}).amountText(); };
  EXPECT_EQ(text("-8800"), "-88.00");
  EXPECT_EQ(text("5"), "+0.05");
  EXPECT_EQ(text("123456"), "+1234.56");
  EXPECT_EQ(text("0"), "0.00");
  EXPECT_EQ(text("-9223372036854775808"), "-92233720368547758.08");
  for (const char* bad : {"", "-", "abc", "+5", "1e3", "12.5", "99999999999999999999", " 5"}) {
    EXPECT_EQ(text(bad), "0.00") << bad;
  }
  EXPECT_EQ(FundRecordModel(Json{{"amount", -150}}).amountText(), "-1.50");
  EXPECT_EQ(FundRecordModel(Json{{"type", "prize"}}).kindText(), "奖励");
  EXPECT_EQ(FundRecordModel(Json{{"type", "bonus"}}).kindText(), "");
  EXPECT_EQ(FundRecordModel(Json::array()).amountText(), "0.00");
}

TEST_F(WalletCentreTest, WealthShowsTheRefreshedBalanceAndTheCardLineAndOpensItsEntries) {
  WealthViewController screen;
  const auto appear = [&] {
    bool refreshed = false;
    screen.onRefreshed = [&] { refreshed = true; };
    screen.viewWillAppear();
    return loop_->runUntil([&] { return refreshed; }, std::chrono::seconds(10));
  };
  EXPECT_EQ(screen.balanceText(), "0.00");
  answer("getUserInfo", R"({"success":"0","data":{"balance":"1234505"}})");
  answer("getBoundBankCard", R"({"success":"0","data":{"cardId":"6222020200112233446","cardBank":"中国银行"}})");
  ASSERT_TRUE(appear());
  EXPECT_EQ(screen.balanceText(), "12345.05");
  EXPECT_EQ(GlobalData::sharedInstance().selfInfo()->sessionId, "S1") << "the record is updated in place";
  EXPECT_EQ(screen.cardLine(), "中国银行 尾号3446");

  // A failed refresh keeps what was shown; an answer without a card says so.
  answer("getUserInfo", "", 500);
  answer("getBoundBankCard", "", 500);
  ASSERT_TRUE(appear());
  EXPECT_EQ(screen.balanceText(), "12345.05");
  EXPECT_EQ(screen.cardLine(), "中国银行 尾号3446");
  answer("getBoundBankCard", R"({"success":"0","data":{"cardId":"","cardBank":"中国银行"}})");
  ASSERT_TRUE(appear());
  EXPECT_EQ(screen.cardLine(), "未绑定银行卡");
  answer("getBoundBankCard", R"({"success":"0","data":{"cardId":"62x","cardBank":"某银行"}})");
  ASSERT_TRUE(appear());
  EXPECT_EQ(screen.cardLine(), "某银行");

  // Signed out, the tab sends nothing and forgets the card shown.
  GlobalData::sharedInstance().setSelfInfo(nullptr);
  screen.viewWillAppear();
  EXPECT_FALSE(screen.isRefreshing());
  EXPECT_EQ(screen.cardLine(), "");
  EXPECT_EQ(screen.balanceText(), "0.00");

  screen.openEntry(2);
  EXPECT_EQ(topName(), "FundRecordViewController");
  screen.openEntry(3);
  EXPECT_EQ(topName(), "MyVoucherViewController");
  screen.openEntry(4);
  EXPECT_EQ(topName(), "MyVoucherViewController");
}

TEST_F(WalletCentreTest, VouchersShowTheirValueStoreDaysAndStateAsSent) {
  MyVoucherViewController screen;
  answer("getMyVoucher", R"({"success":"0","data":{"dataList":[
      {"price":"20.00","title":"满100减20","storeId":"3","storeName":"老街烧烤","start":"2026-01-01","date":"2026-03-31","status":"0"},
      {"price":"5","storeId":"","storeName":"","start":"","date":"2027-12-31","status":"1"},
      {"price":"1e9","date":"","status":"2"},
      {"price":"-5.00","status":"9"},
      {"price":"12.345"}]}})");
  std::optional<bool> loaded;
  screen.onLoaded = [&](bool c) { loaded = c; };
  screen.refresh();
  ASSERT_TRUE(loop_->runUntil([&] { return loaded.has_value(); }, std::chrono::seconds(10)));
  EXPECT_EQ(last().endpoint, "getMyVoucher");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"page", "1"}}));
  ASSERT_EQ(screen.rows().size(), 5u);
  const auto& rows = screen.rows();
  EXPECT_EQ(rows[0].valueText(), "20.00元");
  EXPECT_EQ(rows[0].storeText(), "老街烧烤");
  EXPECT_EQ(rows[0].validityText(), "2026-01-01至2026-03-31");
  EXPECT_EQ(rows[0].stateText(), "未使用");
  EXPECT_EQ(rows[1].valueText(), "5元");
  EXPECT_EQ(rows[1].storeText(), "全部门店通用");
  EXPECT_EQ(rows[1].validityText(), "有效期至2027-12-31");
  EXPECT_EQ(rows[1].stateText(), "已使用");
  EXPECT_EQ(rows[2].valueText(), "") << "only plain yuan amounts are shown";
  EXPECT_EQ(rows[2].validityText(), "");
  EXPECT_EQ(rows[2].stateText(), "已过期");
  EXPECT_EQ(rows[3].valueText(), "");
  EXPECT_EQ(rows[3].stateText(), "") << "a state the client does not know is not guessed";
  EXPECT_EQ(rows[4].valueText(), "");
}

}  // namespace
}  // namespace qmv
